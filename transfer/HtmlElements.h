#pragma once

#include "transfer/NoteDocument.h"

#include <gumbo.h>

#include <span>

// What the elements of a parsed HTML tree mean for a note.

[[nodiscard]] std::span<GumboNode *const> childrenOf(const GumboNode *node);
[[nodiscard]] bool isElement(const GumboNode *node);
/// GUMBO_TAG_UNKNOWN for what is no element, too.
[[nodiscard]] GumboTag tagOf(const GumboNode *node);
[[nodiscard]] QString attribute(const GumboNode *node, const char *name);
[[nodiscard]] bool hasAttribute(const GumboNode *node, const char *name);
[[nodiscard]] bool hasClass(const GumboNode *node, QStringView name);

/// What such elements hold is not a text's words.
[[nodiscard]] bool isDropped(GumboTag tag);
/// Elements that begin and end a line.
[[nodiscard]] bool isBlock(GumboTag tag);
/// Elements whose white space counts.
[[nodiscard]] bool isPreformatted(GumboTag tag);
[[nodiscard]] bool isList(GumboTag tag);
[[nodiscard]] bool isItem(const GumboNode *node);
/// The deepest level that notes know stands for all below it; 0 for other elements.
[[nodiscard]] int headingLevel(GumboTag tag);

/// Adds what the element's name says.
void applyTag(const GumboNode *node, InlineFormats &formats);
/// Adds what the element's style says, or takes it back. False for an element that the style hides.
/// That a heading is bold goes without saying.
[[nodiscard]] bool applyStyle(const GumboNode *node, InlineFormats &formats);

/// The box at the beginning of an item: directly in it, or in the paragraph or label it begins
/// with.
[[nodiscard]] const GumboNode *boxOf(const GumboNode *item);
/// `box` is the item's own, or null.
[[nodiscard]] bool isTicked(const GumboNode *item, const GumboNode *box);
