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
/// Where the libraries lie that are loaded only when they are needed: Contents/PlugIns in a macOS
/// bundle, lib/plim/modules beside bin of an installation, plim-modules in a build directory; empty when
/// there is none.
[[nodiscard]] QString moduleDirectory();
/// The developers' source tree, for a program that lies in a build directory; empty elsewhere.
[[nodiscard]] QString sourceDirectory();
} // namespace Bundle
