#pragma once

#include <QString>

/// Where a piece of text stands within its line of Markdown.
struct MarkdownPlace {
    bool isLineStart = false;
    bool isHeadingEnd = false; ///< nothing follows it on the line of a heading
};

/// The text so that Markdown (with the extensions that are in general use) shows it as it is.
[[nodiscard]] QString escapedMarkdown(QStringView text, MarkdownPlace place = {});

/// An address between the parentheses of a link or picture.
[[nodiscard]] QString markdownDestination(const QString &address);

/// As Markdown looks at them: what stands beside a mark decides whether it is one.
[[nodiscard]] bool isMarkdownSpace(char32_t c);
[[nodiscard]] bool isMarkdownPunctuation(char32_t c);
