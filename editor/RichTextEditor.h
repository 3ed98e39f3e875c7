#pragma once

#include <QObject>
#include <QString>
#include <QUuid>
#include <qqmlregistration.h>

#include <optional>

/// What an editor is to show. One value, so that a note's id and its text never change apart.
struct RichTextEditor {
    Q_GADGET
    QML_ANONYMOUS

public:
    std::optional<QUuid> noteID;
    QString html;                ///< the note's stored HTML
    double bodyFontSize = 15.0;  ///< px
    double rightPadding = 0.0;   ///< px; used when the page is built, not later

    [[nodiscard]] bool operator==(const RichTextEditor &) const = default;
};
