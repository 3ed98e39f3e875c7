#include "mainwindow/SelectionManager.h"

#include <QQmlEngine>

SelectionManager &SelectionManager::shared()
{
    static SelectionManager manager(nullptr);
    return manager;
}

SelectionManager *SelectionManager::create(QQmlEngine *, QJSEngine *)
{
    QQmlEngine::setObjectOwnership(&shared(), QQmlEngine::CppOwnership);
    return &shared();
}

void SelectionManager::setSelectedNoteID(std::optional<QUuid> id)
{
    if (m_selectedNoteID == id)
        return;
    m_selectedNoteID = id;
    Q_EMIT selectedNoteIDChanged();
}

void SelectionManager::setSelectedTab(SidebarTab tab)
{
    if (m_selectedTab == tab)
        return;
    m_selectedTab = tab;
    Q_EMIT selectedTabChanged();
}
