#include "transfer/HtmlNesting.h"

#include "core/HtmlTokens.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Elements that hold nothing, or end by themselves where the next of their kind begins. Unclosed
/// ones are the rule, not nesting.
bool isNeverDeep(const HtmlToken &tag)
{
    static constexpr std::array names{
        "p"_L1,     "li"_L1,   "br"_L1,   "hr"_L1,   "img"_L1,   "input"_L1,  "meta"_L1,
        "link"_L1,  "td"_L1,   "th"_L1,   "tr"_L1,   "dt"_L1,    "dd"_L1,     "option"_L1,
        "tbody"_L1, "wbr"_L1,  "col"_L1,  "area"_L1, "base"_L1,  "embed"_L1,  "param"_L1,
        "track"_L1, "head"_L1, "html"_L1, "body"_L1, "thead"_L1, "source"_L1, "tfoot"_L1,
    };
    return tag.isOneOf(names);
}

bool isFormat(const HtmlToken &tag)
{
    static constexpr std::array names{
        "a"_L1,    "b"_L1,   "strong"_L1, "i"_L1,    "em"_L1,    "u"_L1,    "s"_L1,    "strike"_L1,
        "del"_L1,  "ins"_L1, "q"_L1,      "tt"_L1,   "small"_L1, "big"_L1,  "code"_L1, "span"_L1,
        "font"_L1, "sub"_L1, "sup"_L1,    "abbr"_L1, "label"_L1, "nobr"_L1,
    };
    return tag.isOneOf(names);
}

/// What parsers write again, with all its attributes, in every paragraph until it is closed.
bool isOpenedAgain(const HtmlToken &tag)
{
    static constexpr std::array names{
        "a"_L1,    "b"_L1, "big"_L1,   "code"_L1,   "em"_L1,     "font"_L1, "i"_L1,
        "nobr"_L1, "s"_L1, "small"_L1, "strike"_L1, "strong"_L1, "tt"_L1,   "u"_L1,
    };
    return tag.isOneOf(names);
}

bool isWithinLine(const HtmlToken &tag)
{
    static constexpr std::array names{"br"_L1, "img"_L1, "input"_L1, "wbr"_L1};
    return tag.isOneOf(names);
}

/// How much a parser may have to write again, at most.
class Repetition
{
public:
    void add(const HtmlToken &tag)
    {
        constexpr qsizetype element = 64; // what one takes beside its text
        if (!isOpenedAgain(tag)) {
            m_length += isWithinLine(tag) ? 0 : m_openLength;
        } else if (tag.kind == HtmlToken::Kind::startTag) {
            m_open.push_back({tag.name, tag.source.size() + element});
            m_openLength += m_open.back().length;
        } else {
            const auto same = [&tag](const Format &format) {
                return format.name.compare(tag.name, Qt::CaseInsensitive) == 0;
            };
            const auto found = std::find_if(m_open.rbegin(), m_open.rend(), same);
            if (found == m_open.rend())
                return;
            m_openLength -= found->length;
            m_open.erase(std::next(found).base());
        }
    }

    [[nodiscard]] qsizetype length() const { return m_length; }

private:
    struct Format {
        QStringView name;
        qsizetype length;
    };
    std::vector<Format> m_open;
    qsizetype m_openLength = 0;
    qsizetype m_length = 0;
};

QString bounded(const QString &html, int deepest, int deepestFormats, qsizetype &repetition)
{
    Repetition repeated;
    QString kept;
    int depth = 0;
    int formatDepth = 0;
    int omitted = 0;
    int omittedFormats = 0;
    bool isBounded = false;
    for (const HtmlToken &token : htmlTokens(html)) {
        if (!token.isTag() || isNeverDeep(token)) {
            if (token.isTag())
                repeated.add(token);
            kept += token.source;
            continue;
        }
        const bool isOfFormat = isFormat(token);
        int &level = isOfFormat ? formatDepth : depth;
        int &left = isOfFormat ? omittedFormats : omitted;
        const int limit = isOfFormat ? deepestFormats : deepest;
        bool isKept = true;
        if (token.kind == HtmlToken::Kind::startTag) {
            isKept = level < limit;
            ++(isKept ? level : left);
        } else if (left > 0) {
            isKept = false;
            --left;
        } else {
            level = std::max(0, level - 1);
        }
        isBounded |= !isKept;
        if (isKept) {
            repeated.add(token);
            kept += token.source;
        } else if (!isOfFormat) {
            kept += "<br>"_L1;
        }
    }
    repetition = repeated.length();
    return isBounded ? kept : html;
}
} // namespace

QString withBoundedNesting(const QString &html, int deepest)
{
    // Formats that are never closed are opened again in every paragraph, so few of them are enough
    // to make much out of little.
    constexpr int deepestFormats = 24;
    // What goes on and on like this was not written to be read: its words are enough.
    const qsizetype mostRepetition = 32 * html.size() + 65'536;
    qsizetype repetition = 0;
    const QString text = bounded(html, deepest, std::min(deepestFormats, deepest), repetition);
    return repetition > mostRepetition ? bounded(html, deepest, 0, repetition) : text;
}
