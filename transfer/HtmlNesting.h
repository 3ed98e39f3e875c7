#pragma once

#include <QString>

/// The same text with no more than so many elements within one another: the tags of what lies
/// deeper are left out, and those that begin a line become line breaks. Parsers take time that
/// grows with the depth for every element, and their recursion has to end somewhere.
[[nodiscard]] QString withBoundedNesting(const QString &html, int deepest = 256);
