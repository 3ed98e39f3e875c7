#include "transfer/PlainMarkup.h"

#include "core/HtmlTokens.h"

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace
{
using Kind = HtmlToken::Kind;

constexpr QLatin1StringView nothing = "<!---->"_L1; ///< still divides what it stands between

bool isForeignRoot(const HtmlToken &tag)
{
    return tag.isNamed("svg"_L1) || tag.isNamed("math"_L1);
}

/// Parts of a drawing or a formula in which HTML stands.
bool holdsHtml(const HtmlToken &tag)
{
    static constexpr std::array names{"foreignObject"_L1,
                                      "desc"_L1,
                                      "title"_L1,
                                      "annotation-xml"_L1,
                                      "mi"_L1,
                                      "mo"_L1,
                                      "mn"_L1,
                                      "ms"_L1,
                                      "mtext"_L1};
    return tag.isOneOf(names);
}

/// What cannot be in a drawing or a formula, and so ends an unfinished one.
bool endsForeign(const HtmlToken &tag)
{
    static constexpr std::array names{
        "b"_L1,      "big"_L1,    "blockquote"_L1, "body"_L1,    "br"_L1,    "center"_L1, "code"_L1,
        "dd"_L1,     "div"_L1,    "dl"_L1,         "dt"_L1,      "em"_L1,    "embed"_L1,  "h1"_L1,
        "h2"_L1,     "h3"_L1,     "h4"_L1,         "h5"_L1,      "h6"_L1,    "head"_L1,   "hr"_L1,
        "i"_L1,      "img"_L1,    "li"_L1,         "listing"_L1, "menu"_L1,  "meta"_L1,   "nobr"_L1,
        "ol"_L1,     "p"_L1,      "pre"_L1,        "ruby"_L1,    "s"_L1,     "small"_L1,  "span"_L1,
        "strong"_L1, "strike"_L1, "sub"_L1,        "sup"_L1,     "table"_L1, "tt"_L1,     "u"_L1,
        "ul"_L1,     "var"_L1};
    if (tag.kind == Kind::endTag)
        return tag.isNamed("p"_L1) || tag.isNamed("br"_L1);
    return tag.isOneOf(names);
}

bool closesItself(const HtmlToken &tag)
{
    return tag.source.endsWith("/>"_L1);
}

class Reduction
{
public:
    explicit Reduction(qsizetype size) { m_html.reserve(size); }

    void add(const HtmlToken &token)
    {
        const bool isRawText = token.kind == Kind::verbatim && m_holdsRawText;
        m_holdsRawText = holdsRawText(token);
        if (isInForeign(token))
            return;
        if (token.isTag())
            addTag(token);
        else if (isRawText)
            addRawText(token.source);
        else if (token.kind == Kind::text ||
                 token.source.startsWith("<!doctype"_L1, Qt::CaseInsensitive))
            m_html += token.source;
        else
            m_html += nothing;
    }

    [[nodiscard]] QString take() { return std::move(m_html); }

private:
    [[nodiscard]] bool isInForeign(const HtmlToken &token)
    {
        if (token.kind == Kind::startTag && isForeignRoot(token)) {
            m_html += nothing;
            m_foreign += closesItself(token) ? 0 : 1;
            return true;
        }
        if (m_foreign == 0)
            return false;
        if (!token.isTag())
            return true;
        if (token.kind == Kind::endTag && isForeignRoot(token)) {
            m_htmlInForeign = --m_foreign == 0 ? 0 : m_htmlInForeign;
        } else if (holdsHtml(token)) {
            if (token.kind == Kind::endTag)
                m_htmlInForeign = std::max(0, m_htmlInForeign - 1);
            else if (!closesItself(token))
                ++m_htmlInForeign;
        } else if (m_htmlInForeign == 0 && endsForeign(token)) {
            m_foreign = 0;
            return false;
        }
        return true;
    }

    void addTag(const HtmlToken &tag)
    {
        constexpr qsizetype mostAttributes = 64;
        if (tag.isNamed("xmp"_L1)) { // the one whose text is as it is, markup and all
            m_html += tag.kind == Kind::startTag ? "<pre>"_L1 : "</pre>"_L1;
            m_isInXmp = tag.kind == Kind::startTag;
            return;
        }
        m_isInXmp = false;
        if (tag.source.size() <= 2 * mostAttributes) {
            m_html += tag.source;
            return;
        }
        const std::vector<HtmlAttribute> attributes = htmlAttributes(tag);
        if (ssize(attributes) <= mostAttributes) {
            m_html += tag.source;
            return;
        }
        m_html += tag.source.first(attributes[mostAttributes - 1].end);
        m_html += u'>';
    }

    /// The parser may take this for markup where our tokens do not, within a choice, say.
    void addRawText(QStringView text)
    {
        QString words = text.toString();
        if (m_isInXmp)
            words.replace(u'&', "&amp;"_L1);
        m_html += words.replace(u'<', "&lt;"_L1);
    }

    QString m_html;
    bool m_holdsRawText = false; ///< the tag before
    bool m_isInXmp = false;
    int m_foreign = 0;       ///< drawings and formulas that are open
    int m_htmlInForeign = 0; ///< parts of them in which HTML stands
};
bool isControlCharacter(QChar c)
{
    const char16_t code = c.unicode();
    return (code < 0x20 && !isHtmlSpace(c)) || (code >= 0x7f && code < 0xa0) ||
           (code >= 0xfdd0 && code < 0xfdf0) || code >= 0xfffe || c == QChar::ByteOrderMark;
}

/// The last two of each plane, as a surrogate pair.
bool isNoCharacter(QChar high, QChar low)
{
    return low.unicode() >= 0xdffe && low.unicode() < 0xe000 && high.isHighSurrogate() &&
           (high.unicode() & 0x3f) == 0x3f;
}
} // namespace

QString plainMarkup(const QString &html)
{
    const QString text = withoutControlCharacters(html);
    Reduction reduction(text.size());
    for (const HtmlToken &token : htmlTokens(text))
        reduction.add(token);
    return reduction.take();
}

QString withoutControlCharacters(QString text)
{
    const auto isOne = [&text](qsizetype i) {
        return isControlCharacter(text[i]) ||
               (i + 1 < text.size() && isNoCharacter(text[i], text[i + 1]));
    };
    qsizetype kept = 0;
    while (kept < text.size() && !isOne(kept))
        ++kept;
    for (qsizetype i = kept; i < text.size(); ++i) {
        if (!isOne(i))
            text[kept++] = text[i];
        else if (text[i].isHighSurrogate())
            ++i;
    }
    text.truncate(kept);
    return text;
}
