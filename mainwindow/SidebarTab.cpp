#include "mainwindow/SidebarTab.h"

using namespace Qt::StringLiterals;

QString rawValue(SidebarTab tab)
{
    return tab == SidebarTab::Archive ? u"ARCHIWUM"_s : u"NOTATKI"_s;
}

std::optional<SidebarTab> sidebarTabFromRawValue(QStringView text)
{
    for (const SidebarTab tab : {SidebarTab::Notes, SidebarTab::Archive}) {
        if (rawValue(tab) == text)
            return tab;
    }
    return std::nullopt;
}
