#include "core/HtmlTokens.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
bool isAsciiLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

qsizetype skipSpace(QStringView text, qsizetype at)
{
    while (at < text.size() && isHtmlSpace(text[at]))
        ++at;
    return at;
}

/// Where a run of characters ends that are neither white space nor one of the given.
qsizetype skipUntil(QStringView text, qsizetype at, QLatin1StringView stops)
{
    while (at < text.size() && !isHtmlSpace(text[at]) && !stops.contains(text[at]))
        ++at;
    return at;
}

/// Reads the attribute that begins, behind white space and slashes, at `start`. Its `end` is -1
/// where the text ends inside it.
HtmlAttribute readAttribute(QStringView text, qsizetype start, qsizetype nameStart)
{
    // Browsers take a leading '=' for a part of the name.
    const qsizetype nameEnd = skipUntil(text, nameStart + 1, "/>="_L1);
    HtmlAttribute attribute{start, nameEnd, text.sliced(nameStart, nameEnd - nameStart)};
    const qsizetype equals = skipSpace(text, nameEnd);
    if (equals == text.size() || text[equals] != u'=')
        return attribute;
    const qsizetype value = skipSpace(text, equals + 1);
    if (value == text.size()) {
        attribute.end = -1;
    } else if (text[value] == u'"' || text[value] == u'\'') {
        const qsizetype quote = text.indexOf(text[value], value + 1);
        attribute.end = quote < 0 ? -1 : quote + 1;
        attribute.isQuoted = true;
    } else {
        attribute.end = skipUntil(text, value, ">"_L1);
    }
    return attribute;
}

/// Calls `visit` for each attribute from `at` on and returns where the tag ends, or -1.
template <typename Visit>
qsizetype readTag(QStringView text, qsizetype at, Visit visit)
{
    while (true) {
        qsizetype start = at; // white space before an attribute belongs to it, a slash does not
        while (at < text.size() && (isHtmlSpace(text[at]) || text[at] == u'/')) {
            if (text[at++] == u'/')
                start = at;
        }
        if (at == text.size())
            return -1;
        if (text[at] == u'>')
            return at + 1;
        const HtmlAttribute attribute = readAttribute(text, start, at);
        if (attribute.end < 0)
            return -1;
        visit(attribute);
        at = attribute.end;
    }
}

/// The end of the comment or declaration that begins at `start`, or -1.
qsizetype commentEnd(QStringView html, qsizetype start)
{
    if (!html.sliced(start).startsWith("<!--"_L1)) {
        const qsizetype end = html.indexOf(u'>', start);
        return end < 0 ? -1 : end + 1;
    }
    // "<!-->" and "<!--->" are whole comments: the closing dashes may be the opening ones.
    for (const QLatin1StringView abrupt : {"<!-->"_L1, "<!--->"_L1}) {
        if (html.sliced(start).startsWith(abrupt))
            return start + abrupt.size();
    }
    for (qsizetype at = start + "<!--"_L1.size(); (at = html.indexOf("--"_L1, at)) >= 0; ++at) {
        for (const QLatin1StringView end : {"-->"_L1, "--!>"_L1}) {
            if (html.sliced(at).startsWith(end))
                return at + end.size();
        }
    }
    return -1;
}

/// Where the content of an element without markup ends: at its end tag, or with the text.
qsizetype rawTextEnd(QStringView html, qsizetype start, QStringView name)
{
    const QString endTag = u"</"_s + name.toString();
    qsizetype found = html.indexOf(endTag, start, Qt::CaseInsensitive);
    while (found >= 0) {
        const qsizetype behind = found + endTag.size();
        if (behind == html.size())
            break;
        if (isHtmlSpace(html[behind]) || html[behind] == u'/' || html[behind] == u'>')
            return found;
        found = html.indexOf(endTag, behind, Qt::CaseInsensitive);
    }
    return html.size();
}

/// Splits the text as it goes from left to right.
class Tokenizer
{
public:
    explicit Tokenizer(QStringView html) : m_html(html) {}

    std::vector<HtmlToken> run()
    {
        while (step()) {
        }
        return std::move(m_tokens);
    }

    /// Reads on to behind the next piece of markup; false when there is none.
    bool step()
    {
        const qsizetype at = m_html.indexOf(u'<', m_next);
        if (at < 0 || at + 1 >= m_html.size()) {
            emitUpTo(m_html.size(), HtmlToken::Kind::text);
            return false;
        }
        m_next = readMarkup(at);
        return true;
    }

    /// What the steps since the last call have read.
    std::vector<HtmlToken> take() { return std::exchange(m_tokens, {}); }

private:
    /// Reads what begins with the '<' at `at`; returns where to look for the next.
    qsizetype readMarkup(qsizetype at)
    {
        const bool isEndTag = m_html[at + 1] == u'/';
        const qsizetype nameStart = at + (isEndTag ? 2 : 1);
        if (nameStart < m_html.size() && isAsciiLetter(m_html[nameStart]))
            return readNamedTag(at, nameStart, isEndTag);
        const bool isDeclaration = m_html[at + 1] == u'!' || m_html[at + 1] == u'?';
        if (isDeclaration || (isEndTag && nameStart < m_html.size())) {
            emitUpTo(at, HtmlToken::Kind::text);
            const qsizetype end = commentEnd(m_html, at);
            return emitUpTo(end < 0 ? m_html.size() : end, HtmlToken::Kind::verbatim);
        }
        return at + 1; // a '<' among the words
    }

    qsizetype readNamedTag(qsizetype at, qsizetype nameStart, bool isEndTag)
    {
        emitUpTo(at, HtmlToken::Kind::text);
        const qsizetype nameEnd = skipUntil(m_html, nameStart, "/>"_L1);
        const qsizetype end = readTag(m_html, nameEnd, [](const HtmlAttribute &) {});
        if (end < 0) // browsers drop an unfinished tag; here it is kept, and nothing follows it
            return emitUpTo(m_html.size(), HtmlToken::Kind::verbatim);
        emitUpTo(end, isEndTag ? HtmlToken::Kind::endTag : HtmlToken::Kind::startTag);
        m_tokens.back().name = m_html.sliced(nameStart, nameEnd - nameStart);
        if (!holdsRawText(m_tokens.back()))
            return end;
        return emitUpTo(rawTextEnd(m_html, end, m_tokens.back().name), HtmlToken::Kind::verbatim);
    }

    qsizetype emitUpTo(qsizetype end, HtmlToken::Kind kind)
    {
        if (end > m_emitted)
            m_tokens.push_back({kind, m_html.sliced(m_emitted, end - m_emitted), {}});
        m_emitted = end;
        return end;
    }

    QStringView m_html;
    std::vector<HtmlToken> m_tokens;
    qsizetype m_next = 0; ///< where to look for markup
    qsizetype m_emitted = 0;
};

/// Behind the first white space from there on, or -1.
qsizetype behindSpace(QStringView text, qsizetype from)
{
    const auto space = std::find_if(text.begin() + from, text.end(), isHtmlSpace);
    return space == text.end() ? -1 : space - text.begin() + 1;
}
} // namespace

bool HtmlToken::isOneOf(std::span<const QLatin1StringView> names) const
{
    return std::ranges::any_of(names, [this](QLatin1StringView each) { return isNamed(each); });
}

std::vector<HtmlToken> htmlTokens(QStringView html)
{
    return Tokenizer(html).run();
}

qsizetype htmlPieceEnd(QStringView html, qsizetype size, bool (*isGoodBeginning)(QStringView rest))
{
    if (html.size() <= size) // as most are
        return html.size();
    Tokenizer tokenizer(html);
    qsizetype at = 0;
    for (bool isMore = true; isMore;) {
        isMore = tokenizer.step();
        for (const HtmlToken &token : tokenizer.take()) {
            const bool isText = token.kind == HtmlToken::Kind::text;
            // What is verbatim may belong to the tag before it, an end tag to the words before.
            const bool canBegin = isText || token.kind == HtmlToken::Kind::startTag;
            if ((at >= size && token.isTag() && isGoodBeginning(html.sliced(at))) ||
                (at >= 2 * size && canBegin))
                return at;
            const qsizetype end = at + token.source.size();
            if (isText && end > 2 * size) {
                const qsizetype cut =
                    behindSpace(token.source, std::max<qsizetype>(2 * size - at, 0));
                if (cut > 0 && at + cut < end)
                    return at + cut;
            }
            at = end;
        }
    }
    return at;
}

std::vector<HtmlAttribute> htmlAttributes(const HtmlToken &tag)
{
    std::vector<HtmlAttribute> attributes;
    const qsizetype nameEnd = tag.name.data() + tag.name.size() - tag.source.data();
    readTag(tag.source, nameEnd,
            [&](const HtmlAttribute &attribute) { attributes.push_back(attribute); });
    return attributes;
}

bool holdsRawText(const HtmlToken &token)
{
    static constexpr std::array names{"script"_L1, "style"_L1,  "textarea"_L1, "title"_L1,
                                      "xmp"_L1,    "iframe"_L1, "noembed"_L1,  "noframes"_L1};
    return token.kind == HtmlToken::Kind::startTag && token.isOneOf(names);
}

bool isHtmlSpace(QChar c)
{
    return c == u' ' || c == u'\n' || c == u'\t' || c == u'\r' || c == u'\f';
}
