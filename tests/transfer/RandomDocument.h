#pragma once

#include "transfer/NoteDocument.h"

#include <QStringList>

#include <random>

/// Documents as a note may hold them, with all the characters that mean something somewhere.
class RandomDocument
{
public:
    explicit RandomDocument(quint32 seed) : m_random(seed) {}

    [[nodiscard]] NoteDocument make()
    {
        NoteDocument document;
        Block heading;
        heading.headingLevel = 1;
        heading.inlines = inlines(false);
        document.blocks.push_back(std::move(heading));
        for (int count = below(12); count > 0; --count)
            addBlocks(document.blocks);
        return document;
    }

private:
    int below(int limit) { return int(m_random() % quint32(limit)); }
    bool isOneIn(int count) { return below(count) == 0; }

    void addBlocks(std::vector<Block> &blocks)
    {
        // clang-tidy 14 takes the first two branches for the same.
        // NOLINTNEXTLINE(bugprone-branch-clone)
        if (isOneIn(8)) {
            blocks.push_back({.kind = Block::Kind::divider});
        } else if (isOneIn(2)) {
            addList(blocks);
        } else {
            Block line;
            line.headingLevel = isOneIn(3) ? 1 + below(3) : 0;
            line.inlines = inlines(true);
            if (line.headingLevel > 0 || !line.isEmptyLine())
                blocks.push_back(std::move(line));
        }
    }

    void addList(std::vector<Block> &blocks)
    {
        std::vector<Block::Marker> open; // the kind of the last item at each depth
        for (int count = 1 + below(8); count > 0; --count) {
            Block item;
            item.kind = Block::Kind::item;
            item.depth = below(std::min(int(open.size()), 5) + 1);
            open.resize(std::size_t(item.depth) + (int(open.size()) > item.depth ? 1 : 0));
            item.marker = Block::Marker(below(3));
            const bool hasAbove = int(open.size()) > item.depth;
            item.startsList = hasAbove && open.back() == item.marker && isOneIn(4);
            if (!hasAbove)
                open.push_back(item.marker);
            open.back() = item.marker;
            if (item.depth == 0 && open.size() == 1 && isBehindItem(blocks, item.marker))
                item.startsList = item.startsList || !hasAbove;
            item.isTicked = item.marker == Block::Marker::box && isOneIn(2);
            item.headingLevel = item.marker != Block::Marker::box && isOneIn(5) ? 1 + below(3) : 0;
            if (!isOneIn(6))
                item.inlines = inlines(true);
            if (item.inlines.empty() && item.marker != Block::Marker::box && isOneIn(2))
                item.headingLevel = 0;
            blocks.push_back(std::move(item));
        }
    }

    /// Whether the list right above ends with such items at its outermost level.
    static bool isBehindItem(const std::vector<Block> &blocks, Block::Marker marker)
    {
        for (auto block = blocks.rbegin(); block != blocks.rend(); ++block) {
            if (block->kind != Block::Kind::item)
                return false;
            if (block->depth == 0)
                return block->marker == marker;
        }
        return false;
    }

    std::vector<Inline> inlines(bool mayHaveBreaks)
    {
        std::vector<Inline> parts;
        for (int count = below(6); count > 0; --count) {
            Inline part;
            if (isOneIn(10)) {
                part.kind = Inline::Kind::picture;
                part.text = isOneIn(2) ? text().simplified() : QString();
                part.source = QStringLiteral("pictures/%1 (%2).png").arg(below(9)).arg(below(9));
            } else if (mayHaveBreaks && isOneIn(6)) {
                part.kind = Inline::Kind::lineBreak;
            } else {
                part.text = text();
            }
            part.formats = {.isBold = isOneIn(3),
                            .isItalic = isOneIn(3),
                            .isStruck = isOneIn(5),
                            .isUnderlined = isOneIn(5),
                            .link = isOneIn(5) ? link() : QString()};
            if (part.kind == Inline::Kind::text && !part.formats.link.isEmpty() && isOneIn(3))
                part.text = part.formats.link;
            parts.push_back(std::move(part));
        }
        parts = collapsed(normalized(std::move(parts)));
        // The last break of a line shows nothing in Markdown.
        while (!parts.empty() && parts.back().kind == Inline::Kind::lineBreak) {
            parts.pop_back();
            parts = normalized(std::move(parts));
        }
        return parts;
    }

    /// One blank, where two meet.
    static std::vector<Inline> collapsed(std::vector<Inline> parts)
    {
        bool isBehindSpace = true;
        for (Inline &part : parts) {
            if (part.kind != Inline::Kind::text) {
                isBehindSpace = part.kind == Inline::Kind::lineBreak;
                continue;
            }
            QString kept;
            for (const QChar c : std::as_const(part.text)) {
                if (c != u' ' || !isBehindSpace)
                    kept += c;
                isBehindSpace = c == u' ';
            }
            part.text = kept;
        }
        std::erase_if(parts, [](const Inline &part) {
            return part.kind == Inline::Kind::text && part.text.isEmpty();
        });
        return normalized(std::move(parts));
    }

    QString link()
    {
        static const QStringList links{QStringLiteral("https://example.org/a_b*c?x=1&copy=2&amp;"),
                                       QStringLiteral("mailto:anna@example.org"),
                                       QStringLiteral("https://pl.wikipedia.org/wiki/Żurek_(zupa)"),
                                       QStringLiteral("http://a.b/c d<e>"),
                                       QStringLiteral("https://example.org"),
                                       QStringLiteral("tel:+48\\5")};
        return links[below(int(links.size()))];
    }

    QString text()
    {
        static const QStringList pieces{
            QStringLiteral("a"),        QStringLiteral("żółć"),   QStringLiteral(" "),
            QStringLiteral("word "),    QStringLiteral(" x"),     QStringLiteral("*"),
            QStringLiteral("**"),       QStringLiteral("_"),      QStringLiteral("__"),
            QStringLiteral("~"),        QStringLiteral("~~"),     QStringLiteral("`"),
            QStringLiteral("```"),      QStringLiteral("["),      QStringLiteral("]"),
            QStringLiteral("(b)"),      QStringLiteral("!"),      QStringLiteral("<"),
            QStringLiteral(">"),        QStringLiteral("<b>"),    QStringLiteral("</u>"),
            QStringLiteral("&amp;"),    QStringLiteral("&"),      QStringLiteral("#"),
            QStringLiteral("# "),       QStringLiteral("- "),     QStringLiteral("+ "),
            QStringLiteral("1. "),      QStringLiteral("2) "),    QStringLiteral("---"),
            QStringLiteral("==="),      QStringLiteral("|"),      QStringLiteral("| - |"),
            QStringLiteral("\\"),       QStringLiteral("\\\\"),   QStringLiteral("https://a.pl"),
            QStringLiteral("www.a.pl"), QStringLiteral("a@b.pl"), QStringLiteral("[x] "),
            QStringLiteral("[a]: b"),   QStringLiteral("\u00a0"), QStringLiteral("„”—"),
            QStringLiteral("€"),        QStringLiteral("😀"),      QStringLiteral("."),
            QStringLiteral(":"),        QStringLiteral("\""),     QStringLiteral("<!--"),
            QStringLiteral("1"),        QStringLiteral("=")};
        QString text;
        for (int count = 1 + below(5); count > 0; --count)
            text += pieces[below(int(pieces.size()))];
        return text;
    }

    std::mt19937 m_random;
};
