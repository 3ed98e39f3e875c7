#include "transfer/MarkdownWriter.h"

#include "transfer/MarkdownInlines.h"
#include "transfer/MarkdownReader.h"

#include <algorithm>
#include <cstddef>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// The inlines as they can be said: the pictures where they are found, or their words, and no break
/// at the end, where it would show nothing.
std::vector<Inline> writable(std::vector<Inline> inlines, const PictureAddress &pictureAddress)
{
    for (Inline &part : inlines) {
        if (part.kind != Inline::Kind::picture)
            continue;
        part.source = pictureAddress(part.source);
        if (part.source.isEmpty())
            part.kind = Inline::Kind::text;
    }
    inlines = normalized(std::move(inlines));
    while (!inlines.empty() && inlines.back().kind == Inline::Kind::lineBreak) {
        inlines.pop_back();
        inlines = normalized(std::move(inlines));
    }
    return inlines;
}

/// Marks that touch one another or stand amid punctuation are read differently than they were meant
/// by one reader or another. So whatever has any is read back, and said more plainly if need be.
QString provenText(const std::vector<Inline> &inlines, bool isHeading)
{
    const bool hasMarks = std::ranges::any_of(
        inlines, [](const Inline &part) { return !(part.formats == InlineFormats{}); });
    for (const MarkStyle style : {MarkStyle::marks, MarkStyle::clearMarks}) {
        const QString text = markdownInlines(inlines, {.isHeading = isHeading, .style = style});
        if (!hasMarks)
            return text;
        const NoteDocument read = readMarkdown(isHeading ? u"# "_s + text : text);
        if (read.blocks.size() == 1 && read.blocks.front().inlines == inlines)
            return text;
    }
    return markdownInlines(inlines, {.isHeading = isHeading, .style = MarkStyle::tags});
}

class Writer
{
public:
    explicit Writer(const PictureAddress &pictureAddress) : m_pictureAddress(pictureAddress) {}

    void write(const Block &block)
    {
        switch (block.kind) {
        case Block::Kind::divider:
            writeLine(u"---"_s);
            break;
        case Block::Kind::line:
            if (const QString text = content(block); !text.isEmpty())
                writeLine(text);
            else
                m_isApart = true; // the lists above and below it are still two
            break;
        case Block::Kind::item:
            writeItem(block);
            break;
        }
    }

    QString take() { return std::move(m_markdown); }

private:
    struct OpenList {
        Block::Marker marker;
        bool isOther;     ///< written with the other sign, to tell it from the list above
        int number;       ///< of its next item
        qsizetype indent; ///< of what stands within its current item
    };

    void addBlankLine()
    {
        if (!m_markdown.isEmpty() && !m_markdown.endsWith("\n\n"_L1))
            m_markdown += u'\n';
    }

    void writeLine(const QString &text)
    {
        addBlankLine();
        m_markdown += text + u'\n';
        m_lists.clear();
        m_isApart = false;
    }

    [[nodiscard]] QString content(const Block &block) const
    {
        // A task is no heading.
        const bool isBox = block.kind == Block::Kind::item && block.marker == Block::Marker::box;
        const int level = isBox ? 0 : block.headingLevel;
        const std::vector<Inline> inlines = writable(block.inlines, m_pictureAddress);
        const QString text = provenText(inlines, level > 0);
        if (level == 0)
            return text;
        return QString(level, u'#') + (text.isEmpty() ? QString() : u' ' + text);
    }

    void writeItem(const Block &item)
    {
        const std::size_t depth = std::min(std::size_t(item.depth), m_lists.size());
        openList(item, depth);
        OpenList &list = m_lists[depth];
        const qsizetype outer = depth == 0 ? 0 : m_lists[depth - 1].indent;
        QString line = item.marker == Block::Marker::number
                           ? QString::number(list.number++) + (list.isOther ? u')' : u'.')
                           : QString(list.isOther ? u'*' : u'-');
        list.indent = outer + line.size() + 1;
        QString text = content(item);
        if (item.marker == Block::Marker::box)
            line += item.isTicked ? " [x]"_L1 : " [ ]"_L1;
        if (text.isEmpty())
            text = u"<!-- -->"_s; // a sign alone would underline the words above, or be no box
        line += u' ' + text.replace(u'\n', u'\n' + QString(list.indent, u' '));
        m_markdown += QString(outer, u' ') + line + u'\n';
    }

    void openList(const Block &item, std::size_t depth)
    {
        const auto isNumbered = [](Block::Marker marker) {
            return marker == Block::Marker::number;
        };
        if (m_lists.size() > depth + 1)
            m_lists.resize(depth + 1);
        if (m_lists.size() == depth) {
            if (depth == 0)
                addBlankLine();
            m_lists.push_back({item.marker, false, 1, 0});
            m_isApart = false;
            return;
        }
        OpenList &open = m_lists[depth];
        const bool isApart = (item.startsList || m_isApart) && open.marker == item.marker;
        const bool isSameKind = isNumbered(open.marker) == isNumbered(item.marker);
        if (isApart || !isSameKind) {
            if (depth == 0)
                addBlankLine();
            open = {item.marker, isSameKind && !open.isOther, 1, 0};
        }
        open.marker = item.marker;
        m_isApart = false;
    }

    const PictureAddress &m_pictureAddress;
    QString m_markdown;
    std::vector<OpenList> m_lists; ///< the outermost first
    bool m_isApart = false;        ///< an empty line of the note was left out
};
} // namespace

QString markdownText(const NoteDocument &document, const PictureAddress &pictureAddress)
{
    Writer writer(pictureAddress);
    for (const Block &block : document.blocks)
        writer.write(block);
    return writer.take();
}
