#pragma once

#include <QIcon>

/// The icon of the program's windows, the same that an installation shows in menus.
[[nodiscard]] QIcon applicationIcon();
