#pragma once

#include <QString>

/// Repairs markup that earlier editors stored: blocks wrapped inside a heading, inline styles and
/// classes other than a checklist's. It changes markup, never words: what merely looks like markup
/// in a note's text stays. Repairing twice equals repairing once.
[[nodiscard]] QString sanitizeStoredHTML(const QString &html);
