#pragma once

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <optional>

namespace SidebarTabs
{
Q_NAMESPACE
QML_NAMED_ELEMENT(SidebarTab)

/// Which notes the list shows. QML knows enumerators by a capital only.
enum class SidebarTab { Notes, Archive };
Q_ENUM_NS(SidebarTab)
} // namespace SidebarTabs

using SidebarTabs::SidebarTab;

/// "NOTATKI" or "ARCHIWUM".
[[nodiscard]] QString rawValue(SidebarTab tab);
/// Exact match only.
[[nodiscard]] std::optional<SidebarTab> sidebarTabFromRawValue(QStringView text);
