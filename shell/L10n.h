#pragma once

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

/// Texts of the user interface, in the current language.
class L10n : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString newNote READ newNote NOTIFY changed)
    Q_PROPERTY(QString selectOrAddNote READ selectOrAddNote NOTIFY changed)
    Q_PROPERTY(QString notesTab READ notesTab NOTIFY changed)
    Q_PROPERTY(QString archiveTab READ archiveTab NOTIFY changed)
    Q_PROPERTY(QString noNotes READ noNotes NOTIFY changed)
    Q_PROPERTY(QString enterURL READ enterURL NOTIFY changed)
    Q_PROPERTY(QString insert READ insert NOTIFY changed)
    Q_PROPERTY(QString cancel READ cancel NOTIFY changed)

public:
    [[nodiscard]] static L10n &shared();
    static L10n *create(QQmlEngine *, QJSEngine *);

    [[nodiscard]] static QString newNote();
    [[nodiscard]] static QString selectOrAddNote();
    [[nodiscard]] static QString notesTab();
    [[nodiscard]] static QString archiveTab();
    [[nodiscard]] static QString noNotes();
    [[nodiscard]] static QString noContent();
    [[nodiscard]] static QString untitled();
    [[nodiscard]] static QString enterURL();
    [[nodiscard]] static QString insert();
    [[nodiscard]] static QString cancel();

Q_SIGNALS:
    void changed();

private:
    L10n();
};
