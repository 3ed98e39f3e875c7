#include "core/StoredHTML.h"

#include "core/HtmlTokens.h"

#include <algorithm>
#include <deque>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace
{
using Kind = HtmlToken::Kind;

bool isStale(const HtmlAttribute &attribute, QStringView source)
{
    if (!attribute.isQuoted)
        return false;
    if (attribute.name == "style"_L1)
        return true;
    // Checklist items are told by their class, so that one stays.
    const QStringView whole = source.sliced(attribute.start, attribute.end - attribute.start);
    return attribute.name == "class"_L1 && !whole.contains("checklist"_L1, Qt::CaseInsensitive);
}

/// Whether what stands before and behind a deleted attribute would run together.
bool needsSpaceBetween(QStringView before, QStringView behind, bool isBehindUnquotedValue)
{
    if (isHtmlSpace(behind[0]) || behind[0] == u'>')
        return false;
    if (behind[0] == u'/')
        return isBehindUnquotedValue;
    // A slash divides attributes too, unless it is a value's own.
    return !isHtmlSpace(before.back()) && (before.back() != u'/' || isBehindUnquotedValue);
}

/// The tag without its stale attributes.
QString cleanedTag(const HtmlToken &tag)
{
    QString cleaned;
    qsizetype copied = 0;
    bool isBehindUnquotedValue = false;
    for (const HtmlAttribute &attribute : htmlAttributes(tag)) {
        const QStringView behind = tag.source.sliced(attribute.end);
        // A stray '=' behind it would become the value of whatever moves up to it.
        const bool isBeforeEquals = behind.trimmed().startsWith(u'=');
        if (isBeforeEquals || !isStale(attribute, tag.source)) {
            const QStringView whole =
                tag.source.sliced(attribute.start, attribute.end - attribute.start);
            isBehindUnquotedValue = !attribute.isQuoted && whole.contains(u'=');
            continue;
        }
        cleaned += tag.source.sliced(copied, attribute.start - copied);
        copied = attribute.end;
        if (needsSpaceBetween(cleaned, behind, isBehindUnquotedValue))
            cleaned += u' ';
    }
    cleaned += tag.source.sliced(copied);
    return cleaned;
}

/// Deletes the stale attributes of every tag; what is rewritten is kept alive in `rewritten`.
void cleanTags(std::vector<HtmlToken> &tokens, std::deque<QString> &rewritten)
{
    for (HtmlToken &token : tokens) {
        if (!token.isTag() ||
            !(token.source.contains("style"_L1) || token.source.contains("class"_L1)))
            continue;
        const qsizetype nameStart = token.name.data() - token.source.data();
        token.source = rewritten.emplace_back(cleanedTag(token));
        token.name = token.source.sliced(nameStart, token.name.size());
    }
}

/// The tokens of a heading: its start tag, and its end tag.
struct Heading {
    std::size_t start;
    std::size_t end;
};

std::vector<Heading> headings(const std::vector<HtmlToken> &tokens)
{
    std::vector<Heading> found;
    bool isOpen = false;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (!tokens[i].isNamed("h1"_L1))
            continue;
        if (tokens[i].kind == Kind::startTag && !isOpen) {
            found.push_back({i, i});
            isOpen = true;
        } else if (tokens[i].kind == Kind::endTag && isOpen) {
            found.back().end = i;
            isOpen = false;
        }
    }
    if (isOpen)
        found.pop_back();
    return found;
}

bool isWrapper(const HtmlToken &token)
{
    return token.isNamed("div"_L1) || token.isNamed("span"_L1);
}

/// Marks the blocks that wrap the whole of a heading: "<h1><div>…</div></h1>".
void flatten(Heading heading, const std::vector<HtmlToken> &tokens, std::vector<bool> &dropped)
{
    if (tokens[heading.start].source != "<h1>"_L1 || tokens[heading.end].source != "</h1>"_L1)
        return;
    std::vector<std::size_t> open;
    std::vector<std::size_t> partner(heading.end - heading.start, 0);
    for (std::size_t i = heading.start + 1; i < heading.end; ++i) {
        if (!tokens[i].isNamed("div"_L1))
            continue;
        if (tokens[i].kind == Kind::startTag) {
            open.push_back(i);
        } else if (!open.empty()) {
            partner[open.back() - heading.start] = i;
            open.pop_back();
        }
    }
    std::size_t first = heading.start + 1;
    std::size_t last = heading.end - 1;
    while (first < last && partner[first - heading.start] == last &&
           tokens[first].source == "<div>"_L1 && tokens[last].source == "</div>"_L1) {
        dropped[first++] = true;
        dropped[last--] = true;
    }
}

/// Whether text that moves up to this one would become a tag or a character reference with it.
bool wouldFormMarkup(QStringView text, QChar next)
{
    if (text.endsWith(u'<'))
        return true;
    const auto isNameCharacter = [](QChar c) {
        return c == u'#' || (c.unicode() < 128 && c.isLetterOrNumber());
    };
    if (next != u';' && !isNameCharacter(next))
        return false;
    qsizetype at = text.size() - 1;
    while (at >= 0 && isNameCharacter(text[at]))
        --at;
    return at >= 0 && text[at] == u'&';
}

/// Writes the tokens out again, all but the dropped ones, and keeps apart what these kept apart.
class Writer
{
public:
    explicit Writer(qsizetype size) { m_html.reserve(size); }

    void drop(const HtmlToken &tag)
    {
        m_isBehindDropped = true;
        m_isBehindBlock |= tag.isNamed("div"_L1);
    }

    void write(const HtmlToken &token)
    {
        if (token.kind == Kind::text) {
            separate(token.source[0]);
            m_isBehindVisible = !token.source.back().isSpace();
            m_text = token.source;
            m_isBehindBlock = false;
        } else {
            if (token.isNamed("br"_L1) || token.isNamed("hr"_L1) || token.isNamed("h1"_L1))
                m_isBehindVisible = false;
            m_text = {};
        }
        m_isBehindDropped = false;
        m_html += token.source;
    }

    QString take() { return std::move(m_html); }

private:
    void separate(QChar next)
    {
        if (m_isBehindBlock && m_isBehindVisible && !next.isSpace())
            m_html += u' ';
        else if (m_isBehindDropped && wouldFormMarkup(m_text, next))
            m_html += "<!---->"_L1; // reads as nothing, and divides like the tag did
    }

    QString m_html;
    QStringView m_text; ///< the text just written, if it was text
    bool m_isBehindDropped = false;
    bool m_isBehindBlock = false;
    bool m_isBehindVisible = false;
};
/// Whether all markup is tags without attributes, and no wrappers: then there is nothing to repair,
/// whatever the tags are. Most notes are such, and a look is ten times as fast as taking them apart.
bool isPlain(QStringView html)
{
    for (qsizetype at = html.indexOf(u'<'); at >= 0; at = html.indexOf(u'<', at)) {
        ++at;
        if (at < html.size() && html[at] == u'/')
            ++at;
        const qsizetype start = at;
        while (at < html.size() && html[at].unicode() < 128 && html[at].isLetterOrNumber())
            ++at;
        const QStringView name = html.sliced(start, at - start);
        if (name.isEmpty() || at == html.size() || html[at] != u'>' ||
            name.compare("div"_L1, Qt::CaseInsensitive) == 0 ||
            name.compare("span"_L1, Qt::CaseInsensitive) == 0)
            return false;
    }
    return true;
}
} // namespace

QString sanitizeStoredHTML(const QString &html)
{
    if (isPlain(html))
        return html;
    std::vector<HtmlToken> tokens = htmlTokens(html);
    std::deque<QString> rewritten;
    cleanTags(tokens, rewritten);

    // Only the first heading, the note's own, loses every wrapper. Elsewhere a div is a line of the
    // body, and dropping it would join two lines. An empty paragraph, "<p><br></p>", needs no
    // repair: it is what the editor makes of an empty line.
    std::vector<bool> dropped(tokens.size(), false);
    const std::vector<Heading> found = headings(tokens);
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (i > 0) {
            flatten(found[i], tokens, dropped);
            continue;
        }
        for (std::size_t inside = found[i].start + 1; inside < found[i].end; ++inside)
            dropped[inside] = isWrapper(tokens[inside]);
    }
    if (rewritten.empty() && std::ranges::find(dropped, true) == dropped.end())
        return html;

    Writer writer(html.size());
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (dropped[i])
            writer.drop(tokens[i]);
        else
            writer.write(tokens[i]);
    }
    return writer.take();
}
