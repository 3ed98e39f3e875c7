#include "mainwindow/SidebarTab.h"

using namespace Qt::StringLiterals;

QString rawValue(SidebarTab tab)
{
    return tab == SidebarTab::archive ? u"ARCHIWUM"_s : u"NOTATKI"_s;
}

std::optional<SidebarTab> sidebarTabFromRawValue(QStringView text)
{
    for (const SidebarTab tab : {SidebarTab::notes, SidebarTab::archive}) {
        if (rawValue(tab) == text)
            return tab;
    }
    return std::nullopt;
}
