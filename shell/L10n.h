#pragma once

#include "core/NoteColor.h"
#include "shell/Texts.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

/// Texts of the user interface, in the current language. Views bind to them as properties.
class L10n : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
#define PLIM_TEXT_PROPERTY(name, polish, english) Q_PROPERTY(QString name READ name NOTIFY changed)
    PLIM_TEXTS(PLIM_TEXT_PROPERTY)
#undef PLIM_TEXT_PROPERTY

public:
    [[nodiscard]] static L10n &shared();
    static L10n *create(QQmlEngine *, QJSEngine *);

#define PLIM_TEXT_READER(name, polish, english) [[nodiscard]] static QString name();
    PLIM_TEXTS(PLIM_TEXT_READER)
#undef PLIM_TEXT_READER

    /// How many notes are ticked. Polish has one form for 2 to 4 and another for every other
    /// number.
    [[nodiscard]] static QString contentSelectedCount(int count);
    /// How many notes were just deleted.
    [[nodiscard]] static QString deletedCount(int count);
    /// "3 notes", as a quantity.
    [[nodiscard]] static QString noteCount(int count);
    /// "Restored notes.json.bak.1 from …".
    [[nodiscard]] static QString menuRestoredMessage(const QString &file, const QString &date);
    [[nodiscard]] static QString colorName(NoteColor color);

Q_SIGNALS:
    void changed();

private:
    L10n();
};
