#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The text of a file, by its byte order mark, or as UTF-8, or else in the one of the two old
/// Polish encodings that it looks like. Line ends are line feeds, and control characters are left
/// out. Empty when it is no text.
[[nodiscard]] std::optional<QString> decodedText(const QByteArray &bytes);
/// The same, but what is not UTF-8 is read as the page itself says.
[[nodiscard]] std::optional<QString> decodedHtml(const QByteArray &bytes);
