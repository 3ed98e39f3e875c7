#pragma once

#include "transfer/NoteDocument.h"

/// Reads Markdown: CommonMark with GitHub's tables, task lists, strikethrough and bare links. Of
/// raw HTML it takes what a note can say. Quotes and code become lines.
[[nodiscard]] NoteDocument readMarkdown(const QString &markdown);
