#pragma once

#include <QString>

/// Where the program's own files lie. On a platform without application bundles the directory of
/// the executable stands for the bundle.
namespace Bundle
{
/// Contents/Resources in a macOS bundle, share/plim beside bin of an installation, otherwise the
/// directory of the executable.
[[nodiscard]] QString resourceDirectory();
/// The bundle itself.
[[nodiscard]] QString path();
/// The developers' source tree; empty in builds made without it.
[[nodiscard]] QString sourceDirectory();
} // namespace Bundle
