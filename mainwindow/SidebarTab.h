#pragma once

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <optional>

namespace SidebarTabs
{
Q_NAMESPACE
QML_NAMED_ELEMENT(SidebarTab)

/// Which notes the list shows.
enum class SidebarTab { notes, archive };
Q_ENUM_NS(SidebarTab)
} // namespace SidebarTabs

using SidebarTabs::SidebarTab;

/// "NOTATKI" or "ARCHIWUM".
[[nodiscard]] QString rawValue(SidebarTab tab);
/// Exact match only.
[[nodiscard]] std::optional<SidebarTab> sidebarTabFromRawValue(QStringView rawValue);
