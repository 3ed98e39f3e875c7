#pragma once

#include "core/SearchQuery.h"

#include <QString>

class QColor;

/// The text as markup for a view of styled text, what the query finds in it bold and in the colour;
/// empty when it finds nothing.
[[nodiscard]] QString markedText(const QString &text, const SearchQuery &query,
                                 const QColor &color);
