#pragma once

#include <QString>
#include <QStringView>

/// The text as a double-quoted script string literal that evaluates to exactly that text.
[[nodiscard]] QString jsString(QStringView text);

/// Shortest decimal form that reads back as the same double and always shows a fraction ("15.0").
[[nodiscard]] QString shortestDecimal(double value);
