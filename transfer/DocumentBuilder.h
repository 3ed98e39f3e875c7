#pragma once

#include "transfer/NoteDocument.h"

#include <vector>

/// Where a word stands: what the elements around it say.
struct TextContext {
    InlineFormats formats;
    int headingLevel = 0;
    bool isPreformatted = false;
    // The item it belongs to, if any
    int itemSerial = 0; ///< tells items from one another; 0 outside of lists
    int listSerial = 0; ///< likewise for lists
    int listDepth = 0;  ///< how many lists are open
    Block::Marker marker = Block::Marker::bullet;
    bool isTicked = false;
};

/// Makes blocks out of words and the places where lines end, with white space as a browser shows
/// it.
class DocumentBuilder
{
public:
    void addText(QStringView text, const TextContext &context);
    void addBreak(const TextContext &context);
    void addPicture(const QString &source, const QString &alternative, const TextContext &context);
    /// A blank, where the next word must not run into the last one.
    void separate(const TextContext &context);

    /// What comes next begins a line.
    void endLine();
    void addDivider();
    /// An item is there even when it holds nothing. Items are to be told in the order of their
    /// serials.
    void ensureItem(const TextContext &context);

    [[nodiscard]] NoteDocument take();

private:
    struct OpenList {
        int depth;
        Block::Marker marker;
        int serial;
    };

    void openLine(const TextContext &context);
    void openItem(const TextContext &context);
    void addCollapsed(QStringView text, const InlineFormats &formats);
    void addPreformatted(QStringView text, const TextContext &context);
    void append(QStringView text, const InlineFormats &formats);
    [[nodiscard]] bool isAtLineStart() const;
    /// What a further text goes on behind: a space where a line begins, for there no other is
    /// shown.
    [[nodiscard]] QChar lastCharacter() const;

    NoteDocument m_document;
    std::vector<OpenList> m_lists; ///< of the item before, the outermost first
    bool m_isLineOpen = false;
    int m_itemSerial = 0; ///< of the last block, if that is an item
    int m_newestItem = 0; ///< the highest serial so far
};
