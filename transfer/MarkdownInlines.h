#pragma once

#include "transfer/NoteDocument.h"

/// How bold, italic and struck text is written.
enum class MarkStyle {
    marks,      ///< with the marks of Markdown, wherever they may be used
    clearMarks, ///< with marks where they can be read in one way only, elsewhere with tags
    tags        ///< with tags, which every reader of Markdown takes as well
};

struct MarkdownInlineOptions {
    bool isHeading = false; ///< all on one line
    MarkStyle style = MarkStyle::marks;
};

/// The inlines of one block as Markdown, its lines separated by line feeds.
[[nodiscard]] QString markdownInlines(const std::vector<Inline> &inlines,
                                      MarkdownInlineOptions options);
