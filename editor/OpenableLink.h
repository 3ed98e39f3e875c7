#pragma once

#include <QString>
#include <QUrl>

/// Whether an address in a note may be handed to the desktop: of the web and for mail, with a host
/// or a receiver. A file or a program is never opened from a note.
[[nodiscard]] bool isOpenableLink(const QUrl &url);

/// The system starts no program with a longer word, and a page could keep us busy with one.
constexpr qsizetype longestOpenableLink = 32768;

/// The address as the page tells it; empty when it may not be opened, or is longer than the longest.
[[nodiscard]] QUrl openableLink(const QString &address);
