#include "transfer/DocumentBuilder.h"

#include "core/HtmlTokens.h"

#include <algorithm>
#include <utility>

using Kind = Inline::Kind;

namespace
{
/// A break at the very end of a line shows nothing; it is what keeps an empty line open.
void dropLastBreak(std::vector<Inline> &inlines)
{
    if (!inlines.empty() && inlines.back().kind == Kind::lineBreak)
        inlines.pop_back();
}
} // namespace

void DocumentBuilder::addText(QStringView text, const TextContext &context)
{
    const bool isBlank = std::ranges::all_of(text, isHtmlSpace);
    if (!m_isLineOpen && isBlank)
        return;
    if (!m_isLineOpen)
        openLine(context);
    if (context.isPreformatted)
        addPreformatted(text, context);
    else
        addCollapsed(text, context.formats);
}

void DocumentBuilder::addBreak(const TextContext &context)
{
    if (!m_isLineOpen)
        openLine(context);
    m_document.blocks.back().inlines.push_back({.kind = Kind::lineBreak});
}

void DocumentBuilder::addPicture(const QString &source, const QString &alternative,
                                 const TextContext &context)
{
    if (!m_isLineOpen)
        openLine(context);
    m_document.blocks.back().inlines.push_back({.kind = Kind::picture,
                                                .text = alternative.simplified(),
                                                .source = source,
                                                .formats = context.formats});
}

void DocumentBuilder::separate(const TextContext &context)
{
    if (m_isLineOpen)
        addCollapsed(u" ", {.link = context.formats.link});
}

void DocumentBuilder::endLine()
{
    if (!m_isLineOpen)
        return;
    m_isLineOpen = false;
    dropLastBreak(m_document.blocks.back().inlines);
}

void DocumentBuilder::addDivider()
{
    endLine();
    m_document.blocks.push_back({.kind = Block::Kind::divider});
    m_lists.clear();
    m_itemSerial = 0;
}

void DocumentBuilder::ensureItem(const TextContext &context)
{
    if (m_newestItem >= context.itemSerial)
        return;
    endLine();
    openItem(context);
}

NoteDocument DocumentBuilder::take()
{
    endLine();
    // Not sooner: an item may go on for many lines.
    for (Block &block : m_document.blocks)
        block.inlines = normalized(std::move(block.inlines));
    return std::exchange(m_document, {});
}

void DocumentBuilder::openLine(const TextContext &context)
{
    m_isLineOpen = true;
    if (context.itemSerial == 0) {
        m_document.blocks.push_back({.headingLevel = context.headingLevel});
        m_lists.clear();
        m_itemSerial = 0;
        return;
    }
    if (m_itemSerial != context.itemSerial) {
        openItem(context);
        m_document.blocks.back().headingLevel = context.headingLevel;
        return;
    }
    // Another line of the same item.
    Block &item = m_document.blocks.back();
    if (item.inlines.empty()) {
        item.headingLevel = context.headingLevel;
        return;
    }
    if (item.headingLevel != context.headingLevel)
        item.headingLevel = 0;
    item.inlines.push_back({.kind = Kind::lineBreak});
}

void DocumentBuilder::openItem(const TextContext &context)
{
    int closedSerial = 0; // of the list that was open where this item stands
    Block::Marker closedMarker = context.marker;
    while (!m_lists.empty() && m_lists.back().depth >= context.listDepth) {
        closedSerial = m_lists.back().depth == context.listDepth ? m_lists.back().serial : 0;
        closedMarker = m_lists.back().marker;
        m_lists.pop_back();
    }
    const int depth = std::min(int(m_lists.size()), deepestList);
    const bool isSameKind = closedMarker == context.marker;
    m_document.blocks.push_back(
        {.kind = Block::Kind::item,
         .marker = context.marker,
         .depth = depth,
         .isTicked = context.marker == Block::Marker::box && context.isTicked,
         .startsList = closedSerial != 0 && isSameKind && closedSerial != context.listSerial});
    m_lists.push_back({context.listDepth, context.marker, context.listSerial});
    m_itemSerial = context.itemSerial;
    m_newestItem = std::max(m_newestItem, context.itemSerial);
}

bool DocumentBuilder::isAtLineStart() const
{
    const std::vector<Inline> &inlines = m_document.blocks.back().inlines;
    return inlines.empty() || inlines.back().kind == Kind::lineBreak;
}

QChar DocumentBuilder::lastCharacter() const
{
    if (isAtLineStart())
        return u' ';
    const Inline &last = m_document.blocks.back().inlines.back();
    return last.kind == Kind::text && !last.text.isEmpty() ? last.text.back() : QChar();
}

void DocumentBuilder::append(QStringView text, const InlineFormats &formats)
{
    std::vector<Inline> &inlines = m_document.blocks.back().inlines;
    const bool isJoined =
        !inlines.empty() && inlines.back().kind == Kind::text && inlines.back().formats == formats;
    if (isJoined)
        inlines.back().text += text;
    else
        inlines.push_back({.text = text.toString(), .formats = formats});
}

void DocumentBuilder::addCollapsed(QStringView text, const InlineFormats &formats)
{
    QString collapsed;
    collapsed.reserve(text.size());
    bool isBehindSpace = lastCharacter() == u' ';
    for (const QChar c : text) {
        const bool isSpace = isHtmlSpace(c);
        if (!isSpace || !isBehindSpace)
            collapsed += isSpace ? QChar(u' ') : c;
        isBehindSpace = isSpace;
    }
    if (!collapsed.isEmpty())
        append(collapsed, formats);
}

// A note shows white space as one blank, so those of code become no-break spaces where a plain one
// would be lost.
void DocumentBuilder::addPreformatted(QStringView text, const TextContext &context)
{
    constexpr int tabWidth = 4;
    QString line;
    const auto flush = [&] {
        if (!line.isEmpty())
            append(line, context.formats);
        line.clear();
    };
    for (const QChar c : text) {
        if (c == u'\n') {
            flush();
            addBreak(context);
            continue;
        }
        if (c == u'\r' || c == u'\f')
            continue;
        const QChar before = line.isEmpty() ? lastCharacter() : line.back();
        if (c == u'\t')
            line += QString(tabWidth, QChar::Nbsp);
        else if (c == u' ' && (before == u' ' || before == QChar::Nbsp))
            line += QChar::Nbsp;
        else
            line += c;
    }
    flush();
}
