#pragma once

#include "mainwindow/SidebarTab.h"

#include <QObject>
#include <QUuid>
#include <qqmlregistration.h>

#include <optional>

class QJSEngine;
class QQmlEngine;

/// The note shown in the editor pane and the tab shown in the list.
class SelectionManager : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString selectedNoteID READ selectedNoteIDText NOTIFY selectedNoteIDChanged)
    Q_PROPERTY(SidebarTabs::SidebarTab selectedTab READ selectedTab WRITE setSelectedTab NOTIFY
                   selectedTabChanged)

public:
    [[nodiscard]] static SelectionManager &shared();
    static SelectionManager *create(QQmlEngine *, QJSEngine *);

    /// Without a default parent: of a class that it can make by itself QML makes one of its own.
    explicit SelectionManager(QObject *parent) : QObject(parent) {}

    [[nodiscard]] std::optional<QUuid> selectedNoteID() const { return m_selectedNoteID; }
    void setSelectedNoteID(std::optional<QUuid> id);
    [[nodiscard]] SidebarTab selectedTab() const { return m_selectedTab; }
    void setSelectedTab(SidebarTab tab);

Q_SIGNALS:
    void selectedNoteIDChanged();
    void selectedTabChanged();

private:
    [[nodiscard]] QString selectedNoteIDText() const
    {
        return m_selectedNoteID.value_or(QUuid()).toString();
    }

    std::optional<QUuid> m_selectedNoteID;
    SidebarTab m_selectedTab = SidebarTab::Notes;
};
