#pragma once

#include <QString>

#include <vector>

// What a note says, apart from how HTML or Markdown writes it. Blocks are a flat sequence, nested
// lists included: an item knows its depth. So no reader or writer ever needs recursion, however
// deep the markup that a file brings.

struct InlineFormats {
    bool isBold = false;
    bool isItalic = false;
    bool isStruck = false;
    bool isUnderlined = false;
    QString link = {}; ///< the address; empty when the text is no link

    [[nodiscard]] bool operator==(const InlineFormats &) const = default;
};

struct Inline {
    enum class Kind { text, lineBreak, picture };
    Kind kind = Kind::text;
    QString text = {};   ///< of a picture: what stands for it where it cannot be shown
    QString source = {}; ///< of a picture: its address
    InlineFormats formats = {};

    [[nodiscard]] bool operator==(const Inline &) const = default;
};

struct Block {
    enum class Kind { line, item, divider };
    enum class Marker { bullet, number, box };
    Kind kind = Kind::line;
    int headingLevel = 0; ///< 1 to 3; 0 for plain text

    // Of items
    Marker marker = Marker::bullet;
    int depth = 0;           ///< 0 for the outermost list
    bool isTicked = false;   ///< of boxes
    bool startsList = false; ///< a list of its own, though one of the same kind stands right above

    std::vector<Inline> inlines = {};

    [[nodiscard]] bool operator==(const Block &) const = default;
    /// A line of text without anything on it.
    [[nodiscard]] bool isEmptyLine() const;
    /// The words alone, line breaks as spaces.
    [[nodiscard]] QString plainText() const;
};

struct NoteDocument {
    std::vector<Block> blocks;

    [[nodiscard]] bool operator==(const NoteDocument &) const = default;
    /// The words of the heading that a note begins with; empty when it has none.
    [[nodiscard]] QString headingText() const;
};

/// Lists deeper than this are read as if they were this deep.
constexpr int deepestList = 31;

/// The inlines in the one form in which equal looks are equal values: neighbours of the same format
/// joined, no blanks at the ends of lines, no bold or italic blanks at the ends of a stretch, no
/// formats where nobody could see them.
[[nodiscard]] std::vector<Inline> normalized(std::vector<Inline> inlines);

/// The document as a note: it begins with a heading of level 1. Its first words are the heading
/// when they are one already; else `title`, when that is given; else the first line gives up its
/// words. A document that begins with a list, or has no words, gets an empty heading.
[[nodiscard]] NoteDocument withLeadingHeading(NoteDocument document, const QString &title = {});
