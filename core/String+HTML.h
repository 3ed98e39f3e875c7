#pragma once

#include <QString>

#include <optional>

class QRegularExpression;

// Plain text out of note HTML, in time linear in the text, whatever the text holds.

[[nodiscard]] const QRegularExpression &tagRegex();    ///< any tag
[[nodiscard]] const QRegularExpression &h1Regex();     ///< a heading; captures its inner HTML
[[nodiscard]] const QRegularExpression &h1FullRegex(); ///< a whole heading element

/// The first heading of a text; the view stays valid as long as the text does.
struct FirstHeading {
    qsizetype start;
    qsizetype length;
    QStringView innerHTML;
};
[[nodiscard]] std::optional<FirstHeading> firstHeading(const QString &html);

/// Cheap, for lists and search: tags become spaces and the common references characters. The result
/// is not trimmed.
[[nodiscard]] QString fastStrippingHTML(const QString &html);
/// Faithful, for one note at a time: every reference is decoded and blocks become lines.
[[nodiscard]] QString slowStrippingHTML(const QString &html);

/// Decimal references first, then hexadecimal ones; what names no character stays as it is.
[[nodiscard]] QString decodeNumericEntities(const QString &text);

/// Replaces every occurrence in one pass from the left, so a run of the pattern is not revisited.
void replaceEach(QString &text, QLatin1StringView pattern, QChar replacement);
