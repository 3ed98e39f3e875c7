#pragma once

#include <QByteArray>
#include <QList>

/// Sees every address that this process turns to, the web engine included: its renderers have no
/// network of their own, they ask for it here. The calls of the system are replaced in the program,
/// so that it has to export its symbols.
namespace NetworkWatch
{
/// Whom the process connected or sent something to, or asked the name of, since the last time.
[[nodiscard]] QList<QByteArray> takeContacts();
} // namespace NetworkWatch
