#include "transfer/NoteDocument.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace
{
using Kind = Inline::Kind;

bool isBlank(const Inline &part)
{
    return part.kind == Kind::text &&
           std::ranges::all_of(part.text, [](QChar c) { return c.isSpace(); });
}

/// Divides the text at the border of its leading or trailing white space.
void appendDivided(std::vector<Inline> &parts, const Inline &whole)
{
    const QStringView text(whole.text);
    qsizetype start = 0;
    while (start < text.size() && text[start].isSpace())
        ++start;
    qsizetype end = text.size();
    while (end > start && text[end - 1].isSpace())
        --end;
    for (const QStringView piece :
         {text.first(start), text.sliced(start, end - start), text.sliced(end)}) {
        if (piece.isEmpty())
            continue;
        parts.push_back(whole);
        parts.back().text = piece.toString();
    }
}

/// Takes a format from the blanks at both ends of each stretch that has it: there it shows nothing,
/// and Markdown cannot say it.
void trimStretches(std::vector<Inline> &parts, bool InlineFormats::*format)
{
    for (std::size_t i = 0; i < parts.size();) {
        if (!(parts[i].formats.*format)) {
            ++i;
            continue;
        }
        std::size_t end = i;
        while (end < parts.size() && parts[end].formats.*format)
            ++end;
        const std::size_t next = end;
        while (i < end && isBlank(parts[i]))
            parts[i++].formats.*format = false;
        while (end > i && isBlank(parts[end - 1]))
            parts[--end].formats.*format = false;
        i = next;
    }
}

void appendJoined(std::vector<Inline> &parts, Inline part)
{
    const bool isJoined = !parts.empty() && part.kind == Kind::text &&
                          parts.back().kind == Kind::text && parts.back().formats == part.formats;
    if (isJoined)
        parts.back().text += part.text;
    else
        parts.push_back(std::move(part));
}

/// Drops the plain blank at the end of a line.
void trimLineEnd(std::vector<Inline> &parts)
{
    while (!parts.empty() && parts.back().kind == Kind::text) {
        QString &text = parts.back().text;
        while (text.endsWith(u' '))
            text.chop(1);
        if (!text.isEmpty())
            return;
        parts.pop_back();
    }
}

Block heading(std::vector<Inline> inlines)
{
    Block block;
    block.headingLevel = 1;
    block.inlines = std::move(inlines);
    return block;
}
} // namespace

bool Block::isEmptyLine() const
{
    return kind == Kind::line && headingLevel == 0 && inlines.empty();
}

QString Block::plainText() const
{
    QString text;
    for (const Inline &part : inlines) {
        if (part.kind == Inline::Kind::text)
            text += part.text;
        else if (part.kind == Inline::Kind::lineBreak)
            text += u' ';
    }
    return text.simplified();
}

QString NoteDocument::headingText() const
{
    const bool hasHeading = !blocks.empty() && blocks.front().headingLevel > 0;
    return hasHeading ? blocks.front().plainText() : QString();
}

std::vector<Inline> normalized(std::vector<Inline> inlines)
{
    std::vector<Inline> parts;
    for (Inline &part : inlines) {
        switch (part.kind) {
        case Kind::lineBreak:
            part.formats = {};
            parts.push_back(std::move(part));
            break;
        case Kind::picture:
            part.formats = {.link = std::move(part.formats.link)};
            parts.push_back(std::move(part));
            break;
        case Kind::text:
            appendDivided(parts, part);
            break;
        }
    }
    trimStretches(parts, &InlineFormats::isBold);
    trimStretches(parts, &InlineFormats::isItalic);

    std::vector<Inline> joined;
    for (Inline &part : parts) {
        const bool isLineStart = joined.empty() || joined.back().kind == Kind::lineBreak;
        // Two blanks meet where a picture was taken out between them; they show as one.
        const bool isBehindBlank = !joined.empty() && joined.back().kind == Kind::text &&
                                   joined.back().text.endsWith(u' ');
        if (part.kind == Kind::text && (isLineStart || isBehindBlank)) {
            while (part.text.startsWith(u' '))
                part.text.remove(0, 1);
            if (part.text.isEmpty())
                continue;
        }
        if (part.kind == Kind::lineBreak)
            trimLineEnd(joined);
        appendJoined(joined, std::move(part));
    }
    trimLineEnd(joined);
    return joined;
}

NoteDocument withLeadingHeading(NoteDocument document, const QString &title)
{
    std::vector<Block> &blocks = document.blocks;
    const auto becomesHeading = [](const Block &block) {
        return block.kind == Block::Kind::line && block.headingLevel > 0;
    };
    if (!blocks.empty() && becomesHeading(blocks.front())) {
        blocks.front().headingLevel = 1;
        return document;
    }
    // All at once: there may be a million of them.
    blocks.erase(blocks.begin(),
                 std::ranges::find_if_not(blocks, [](const Block &b) { return b.isEmptyLine(); }));
    const auto first = std::ranges::find_if(
        blocks, [](const Block &block) { return !block.plainText().isEmpty(); });
    if (first != blocks.end() && becomesHeading(*first)) {
        first->headingLevel = 1;
        std::rotate(blocks.begin(), first, std::next(first));
        return document;
    }
    if (!title.trimmed().isEmpty()) {
        blocks.insert(blocks.begin(), heading({{.text = title.simplified()}}));
        return document;
    }
    if (first == blocks.end() || first->kind != Block::Kind::line) {
        blocks.insert(blocks.begin(), heading({}));
        return document;
    }

    // The first line with words; pictures among them stay with the text below.
    std::vector<Inline> words;
    std::vector<Inline> rest;
    bool isTaken = false;
    for (Inline &part : first->inlines) {
        if (isTaken || part.kind == Kind::picture) {
            rest.push_back(std::move(part));
        } else if (part.kind == Kind::lineBreak) {
            isTaken = !std::ranges::all_of(words, isBlank);
            if (!isTaken)
                words.clear();
        } else {
            words.push_back(std::move(part));
        }
    }
    first->inlines = normalized(std::move(rest));
    if (first->inlines.empty())
        blocks.erase(first);
    blocks.insert(blocks.begin(), heading(normalized(std::move(words))));
    return document;
}
