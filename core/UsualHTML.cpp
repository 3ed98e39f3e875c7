#include "core/UsualHTML.h"

#include "core/HtmlTokens.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace
{
enum class Kind { Inline, Paragraph, List, Item, LineBreak };

struct Element {
    QStringView name;
    Kind kind;
};

constexpr std::array elements{Element{u"p", Kind::Paragraph},   Element{u"b", Kind::Inline},
                              Element{u"li", Kind::Item},       Element{u"br", Kind::LineBreak},
                              Element{u"i", Kind::Inline},      Element{u"u", Kind::Inline},
                              Element{u"s", Kind::Inline},      Element{u"h1", Kind::Paragraph},
                              Element{u"h2", Kind::Paragraph},  Element{u"h3", Kind::Paragraph},
                              Element{u"ul", Kind::List},       Element{u"ol", Kind::List},
                              Element{u"a", Kind::Inline},      Element{u"span", Kind::Inline},
                              Element{u"div", Kind::Paragraph}, Element{u"em", Kind::Inline},
                              Element{u"strong", Kind::Inline}};

struct Reference {
    QStringView source;
    char16_t character;
};

constexpr std::array references{Reference{u"&amp;", u'&'}, Reference{u"&lt;", u'<'},
                                Reference{u"&gt;", u'>'}, Reference{u"&nbsp;", u' '},
                                Reference{u"&quot;", u'"'}};

constexpr std::array attributes{QStringView(u" class=\""), QStringView(u" href=\""),
                                QStringView(u" contenteditable=\""), QStringView(u" role=\""),
                                QStringView(u" aria-checked=\"")};

/// Where each kind may stand; the importer mends what is elsewhere in ways of its own.
bool mayStandIn(Kind kind, std::optional<Kind> parent)
{
    switch (kind) {
    case Kind::Inline:
    case Kind::LineBreak:
        return parent && parent != Kind::List;
    case Kind::Item:
        return parent == Kind::List;
    case Kind::Paragraph:
        return !parent;
    case Kind::List:
        return !parent || parent == Kind::Item;
    }
    return false;
}

/// Neither a space that is not one here, nor a character that stands for something else, nor half
/// of one that may be.
bool isPlain(char16_t c)
{
    constexpr char16_t firstUnusual = 0x1680; // where Unicode's other spaces begin
    constexpr char16_t firstLetter = 0xa1;
    return ((c > u' ') & (c < 0x7f)) | ((c >= firstLetter) & (c < firstUnusual));
}

class Reader
{
public:
    explicit Reader(QStringView html)
        : m_html(html), m_text(html.size(), Qt::Uninitialized), m_written(m_text.data())
    {
    }

    std::optional<QString> read()
    {
        while (m_at < m_html.size()) {
            const char16_t c = m_html[m_at].unicode();
            const bool isRead = c == u'<' ? readTag() : c == u'&' ? readReference() : readText(c);
            if (!isRead)
                return std::nullopt;
        }
        // Space behind all blocks would be one more line.
        if (!m_open.empty() || (!m_html.isEmpty() && isHtmlSpace(m_html.back())))
            return std::nullopt;
        m_text.truncate(m_written - m_text.constData());
        return std::move(m_text);
    }

private:
    bool readText(char16_t c)
    {
        if (isPlain(c)) {
            ++m_at;
            if (!write(c))
                return false;
            copyWords();
            return true;
        }
        ++m_at;
        if (c == 0xa0) // no space that others could swallow, but shown as one
            return write(u' ');
        if (c != u' ' && c != u'\n' && c != u'\t')
            return isPlainBeyond(c) && write(c);
        if (!std::exchange(m_isSpaceDone, true))
            put(u' ');
        return !m_isBehindList;
    }
    /// What follows a letter, up to the next character that wants a look of its own.
    void copyWords()
    {
        constexpr qsizetype atOnce = 8;
        const QChar *read = m_html.data() + m_at;
        const QChar *const end = m_html.data() + m_html.size();
        for (; end - read >= atOnce && areWords(read, atOnce); read += atOnce)
            m_written = std::copy_n(read, atOnce, m_written);
        for (; read != end && areWords(read, 1); ++read)
            *m_written++ = *read;
        m_at = read - m_html.data();
        m_isSpaceDone = m_written[-1] == u' ';
    }
    /// Whether all of them are plain, or single spaces. There is a character before them.
    static bool areWords(const QChar *characters, qsizetype count)
    {
        unsigned isOther = 0; // without a branch: the compiler looks at all of them at once
        for (qsizetype i = 0; i < count; ++i) {
            const char16_t c = characters[i].unicode();
            const bool isSpace = c == u' ';
            isOther |= (unsigned(!isPlain(c)) & unsigned(!isSpace)) | unsigned(c == u'<') |
                       unsigned(c == u'&') |
                       (unsigned(isSpace) & unsigned(characters[i - 1].unicode() == u' '));
        }
        return isOther == 0;
    }
    static bool isPlainBeyond(char16_t c)
    {
        // Dashes, quotes, dots, currencies and mathematics; everything up to private use; faces in
        // pairs.
        return (c >= 0x2010 && c < 0x2028) || (c >= 0x2030 && c < 0x205f) ||
               (c >= 0x20a0 && c < 0x3000) || (c >= 0x3001 && c < 0xe000);
    }
    bool readReference()
    {
        const QStringView rest = m_html.sliced(m_at);
        const auto *found = std::ranges::find_if(
            references, [&](const Reference &r) { return rest.startsWith(r.source); });
        if (found == references.end())
            return false;
        m_at += found->source.size();
        return write(found->character);
    }
    bool readTag()
    {
        const bool isEnd = m_at + 1 < m_html.size() && m_html[m_at + 1] == u'/';
        const qsizetype start = m_at + (isEnd ? 2 : 1);
        qsizetype end = start;
        while (end < m_html.size() && ((m_html[end] >= u'a' && m_html[end] <= u'z') ||
                                       (m_html[end] >= u'0' && m_html[end] <= u'9')))
            ++end;
        const QStringView name = m_html.sliced(start, end - start);
        const auto *element =
            std::ranges::find_if(elements, [&](const Element &e) { return e.name == name; });
        if (element == elements.end() || !isClosed(end, isEnd))
            return false;
        return isEnd ? leave(*element) : enter(*element);
    }
    /// Goes on behind the tag. Of attributes there may be those that say nothing about the text.
    bool isClosed(qsizetype end, bool isEnd)
    {
        while (!isEnd && end < m_html.size() && m_html[end] == u' ') {
            const QStringView rest = m_html.sliced(end);
            const auto *found = std::ranges::find_if(
                attributes, [&](QStringView attribute) { return rest.startsWith(attribute); });
            if (found == attributes.end())
                return false;
            end = m_html.indexOf(u'"', end + found->size()) + 1;
            if (end == 0)
                return false;
        }
        m_at = end + 1;
        return end < m_html.size() && m_html[end] == u'>';
    }

    bool enter(const Element &element)
    {
        const auto parent = m_open.empty() ? std::nullopt : std::optional(m_open.back().kind);
        const bool isOfLine = element.kind == Kind::Inline || element.kind == Kind::LineBreak;
        if (!mayStandIn(element.kind, parent) || (isOfLine && m_isBehindList))
            return false;
        if (element.kind == Kind::LineBreak) {
            writeOwedLine();
            put(u'\n');
            m_isSpaceDone = m_hasContent = true;
            return true;
        }
        m_isBehindList = false;
        if (!isOfLine) {
            // The first list of an item comes behind the item's own words.
            if (element.kind == Kind::List && parent && !m_hasContent)
                return false;
            endLine();
            m_hasContent = false;
        }
        constexpr std::size_t deepest = 32;
        m_open.push_back(element);
        return m_open.size() <= deepest;
    }
    bool leave(const Element &element)
    {
        if (m_open.empty() || m_open.back().name != element.name)
            return false;
        m_open.pop_back();
        if (element.kind == Kind::Inline)
            return true;
        endLine();
        m_isBehindList = element.kind == Kind::List && !m_open.empty();
        return m_hasContent; // empty ones leave a line here and none there
    }

    bool write(char16_t c)
    {
        if (m_open.empty() || m_open.back().kind == Kind::List || m_isBehindList)
            return false;
        writeOwedLine();
        put(c);
        m_isSpaceDone = false;
        m_hasContent = true;
        return true;
    }
    void endLine()
    {
        m_isLineOwed = m_written != m_text.constData();
        m_isSpaceDone = true;
    }
    void writeOwedLine()
    {
        if (std::exchange(m_isLineOwed, false))
            put(u'\n');
    }

    // Never longer than the HTML: each line is owed to a tag.
    void put(char16_t c) { *m_written++ = QChar(c); }

    QStringView m_html;
    qsizetype m_at = 0;
    QString m_text;
    QChar *m_written; ///< where to go on in it
    std::vector<Element> m_open;
    bool m_hasContent = false;   ///< what was begun last
    bool m_isBehindList = false; ///< in an item that had one
    bool m_isLineOwed = false;
    bool m_isSpaceDone = true; ///< one more would be swallowed
};
} // namespace

std::optional<QString> plainTextOfUsualHTML(QStringView html)
{
    return Reader(html).read();
}
