#pragma once

#include "transfer/HtmlInlines.h"

/// The document as Markdown: CommonMark with the task lists and the strikethrough of GitHub.
/// Underlining, which Markdown does not know, is a tag. Empty lines between paragraphs, and
/// headings of checklist items, have no Markdown and are left out.
[[nodiscard]] QString markdownText(const NoteDocument &document,
                                   const PictureAddress &pictureAddress);
