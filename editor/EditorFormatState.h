#pragma once

#include <QObject>
#include <qqmlregistration.h>

#include <optional>

/// The formats at the caret, as the page last reported them.
struct EditorFormatState {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(bool bold MEMBER bold)
    Q_PROPERTY(bool italic MEMBER italic)
    Q_PROPERTY(bool underline MEMBER underline)
    Q_PROPERTY(bool strike MEMBER strike)
    Q_PROPERTY(bool bullet MEMBER bullet)
    Q_PROPERTY(bool ordered MEMBER ordered)
    Q_PROPERTY(bool h1 MEMBER h1)
    Q_PROPERTY(bool h2 MEMBER h2)
    Q_PROPERTY(bool h3 MEMBER h3)
    Q_PROPERTY(bool p MEMBER p)
    Q_PROPERTY(bool link MEMBER link)
    Q_PROPERTY(bool checklist MEMBER checklist)

public:
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    bool bullet = false;
    bool ordered = false;
    bool h1 = false;
    bool h2 = false;
    bool h3 = false;
    bool p = false;
    bool link = false;
    bool checklist = false;

    [[nodiscard]] bool operator==(const EditorFormatState &) const = default;

    /// Reads the page's report, a JSON object of booleans; an absent member is false.
    /// nullopt when the text is no object or a member is no boolean.
    [[nodiscard]] static std::optional<EditorFormatState> fromJson(const QString &text);
};
