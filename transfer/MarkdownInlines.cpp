#include "transfer/MarkdownInlines.h"

#include "transfer/LinkAddress.h"
#include "transfer/MarkdownEscaping.h"

#include <algorithm>
#include <array>
#include <cstddef>

using namespace Qt::Literals::StringLiterals;

namespace
{
enum Format { linked, bold, italic, struck, underlined, formatCount };

/// A mark that opens or closes a format, or a piece of content.
struct Token {
    enum class Kind { open, close, text, lineBreak, picture };
    Kind kind;
    Format format = linked;
    std::size_t partner = 0;      ///< of an open token its close token, and the other way round
    const Inline *part = nullptr; ///< of content
    QString address = {};         ///< of an open or close token of a link
    QString written = {};         ///< what it comes to
};

bool hasFormat(const Inline &part, Format format)
{
    switch (format) {
    case linked:
        return !part.formats.link.isEmpty();
    case bold:
        return part.formats.isBold;
    case italic:
        return part.formats.isItalic;
    case struck:
        return part.formats.isStruck;
    case underlined:
        return part.formats.isUnderlined;
    default:
        return false;
    }
}

/// For each inline how many inlines each of its formats goes on for.
std::vector<std::array<std::size_t, formatCount>> extents(const std::vector<Inline> &inlines)
{
    std::vector<std::array<std::size_t, formatCount>> found(inlines.size());
    for (std::size_t i = inlines.size(); i-- > 0;) {
        for (int format = 0; format < formatCount; ++format) {
            if (!hasFormat(inlines[i], Format(format)))
                continue;
            const bool goesOn =
                i + 1 < inlines.size() && hasFormat(inlines[i + 1], Format(format)) &&
                (format != linked || inlines[i].formats.link == inlines[i + 1].formats.link);
            found[i][std::size_t(format)] = goesOn ? found[i + 1][std::size_t(format)] + 1 : 1;
        }
    }
    return found;
}

/// Puts the formats into one another: what goes on longest is outermost.
std::vector<Token> nested(const std::vector<Inline> &inlines)
{
    const auto extent = extents(inlines);
    std::vector<Token> tokens;
    std::vector<std::size_t> open;
    const auto closeTo = [&](std::size_t count) {
        while (open.size() > count) {
            Token &opened = tokens[open.back()];
            opened.partner = tokens.size();
            tokens.push_back({.kind = Token::Kind::close,
                              .format = opened.format,
                              .partner = open.back(),
                              .address = opened.address});
            open.pop_back();
        }
    };
    for (std::size_t i = 0; i < inlines.size(); ++i) {
        const Inline &part = inlines[i];
        std::size_t kept = 0;
        while (kept < open.size()) {
            const Token &token = tokens[open[kept]];
            if (!hasFormat(part, token.format) ||
                (token.format == linked && token.address != part.formats.link))
                break;
            ++kept;
        }
        closeTo(kept);
        std::vector<Format> missing;
        for (int format = 0; format < formatCount; ++format) {
            const bool isOpen = std::ranges::any_of(
                open, [&](std::size_t at) { return tokens[at].format == format; });
            if (hasFormat(part, Format(format)) && !isOpen)
                missing.push_back(Format(format));
        }
        std::ranges::stable_sort(missing, [&](Format a, Format b) {
            return extent[i][std::size_t(a)] > extent[i][std::size_t(b)];
        });
        for (const Format format : missing) {
            open.push_back(tokens.size());
            tokens.push_back({.kind = Token::Kind::open,
                              .format = format,
                              .address = format == linked ? part.formats.link : QString()});
        }
        const Token::Kind kind = part.kind == Inline::Kind::text        ? Token::Kind::text
                                 : part.kind == Inline::Kind::lineBreak ? Token::Kind::lineBreak
                                                                        : Token::Kind::picture;
        tokens.push_back({.kind = kind, .part = &part});
    }
    closeTo(0);
    return tokens;
}

/// What stands beside a mark.
enum class Beside { space, punctuation, symbol, word };

Beside besideOf(char32_t c)
{
    if (isMarkdownSpace(c))
        return Beside::space;
    if (isMarkdownPunctuation(c))
        return Beside::punctuation;
    return QChar::isSymbol(c) ? Beside::symbol : Beside::word;
}

char32_t firstCharacter(QStringView text)
{
    return text.size() > 1 && text[0].isHighSurrogate() && text[1].isLowSurrogate()
               ? QChar::surrogateToUcs4(text[0], text[1])
               : text[0].unicode();
}

char32_t lastCharacter(QStringView text)
{
    const qsizetype size = text.size();
    return size > 1 && text[size - 1].isLowSurrogate() && text[size - 2].isHighSurrogate()
               ? QChar::surrogateToUcs4(text[size - 2], text[size - 1])
               : text[size - 1].unicode();
}

class MarkWriter
{
public:
    MarkWriter(std::vector<Token> &tokens, MarkStyle style) : m_tokens(tokens), m_style(style) {}

    /// Decides how each format is written.
    void write()
    {
        for (std::size_t i = 0; i < m_tokens.size(); ++i) {
            if (m_tokens[i].kind == Token::Kind::open)
                writePair(i, m_tokens[i].partner);
        }
    }

private:
    void writePair(std::size_t open, std::size_t close)
    {
        switch (m_tokens[open].format) {
        case bold:
            set(open, close, canMark(open, close, false) ? u"**"_s : QString(), u"b"_s);
            break;
        case struck:
            set(open, close, canMark(open, close, false) ? u"~~"_s : QString(), u"s"_s);
            break;
        case underlined:
            set(open, close, {}, u"u"_s);
            break;
        case italic:
            // Beside the stars of bold text a star would be counted among them.
            if (!isBesideStars(open) && !isBesideStars(close) && canMark(open, close, false))
                set(open, close, u"*"_s, {});
            else
                set(open, close, canMark(open, close, true) ? u"_"_s : QString(), u"i"_s);
            break;
        default:
            break;
        }
    }

    void set(std::size_t open, std::size_t close, const QString &mark, const QString &tag)
    {
        m_tokens[open].written = mark.isEmpty() ? u'<' + tag + u'>' : mark;
        m_tokens[close].written = mark.isEmpty() ? u"</"_s + tag + u'>' : mark;
    }

    [[nodiscard]] bool isBesideStars(std::size_t at) const
    {
        const auto hasStars = [this](std::size_t index) {
            if (index >= m_tokens.size())
                return false;
            const Token &token = m_tokens[index];
            return (token.kind == Token::Kind::open || token.kind == Token::Kind::close) &&
                   (token.format == bold || token.format == italic);
        };
        return hasStars(at - 1) || hasStars(at + 1);
    }

    /// What stands before a token; marks and tags begin and end with punctuation.
    [[nodiscard]] Beside before(std::size_t at) const
    {
        if (at == 0 || m_tokens[at - 1].kind == Token::Kind::lineBreak)
            return Beside::space;
        const Token &token = m_tokens[at - 1];
        return token.kind == Token::Kind::text ? besideOf(lastCharacter(token.part->text))
                                               : Beside::punctuation;
    }
    [[nodiscard]] Beside behind(std::size_t at) const
    {
        if (at + 1 == m_tokens.size())
            return Beside::space;
        const Token &token = m_tokens[at + 1];
        return token.kind == Token::Kind::text ? besideOf(firstCharacter(token.part->text))
                                               : Beside::punctuation;
    }

    /// Whether inner and outer neighbour let a mark be one. Symbols count against it either way.
    [[nodiscard]] bool isFlanking(Beside inner, Beside outer, bool isUnderscore) const
    {
        const bool isOuterWord = outer == Beside::word || outer == Beside::symbol;
        const bool isInnerWord = inner == Beside::word;
        if (inner == Beside::space || m_style == MarkStyle::tags)
            return false;
        if (m_style == MarkStyle::clearMarks) // could neither open nor close the other way round
            return outer == Beside::space || (outer == Beside::punctuation && isInnerWord);
        return isUnderscore ? !isOuterWord : isInnerWord || !isOuterWord;
    }

    [[nodiscard]] bool canMark(std::size_t open, std::size_t close, bool isUnderscore) const
    {
        return isFlanking(behind(open), before(open), isUnderscore) &&
               isFlanking(before(close), behind(close), isUnderscore);
    }

    std::vector<Token> &m_tokens;
    MarkStyle m_style;
};

/// Whether the address would be read back from its bare form, "<address>".
bool isAutolink(const QString &address)
{
    constexpr qsizetype shortestScheme = 2;
    return addressScheme(address).size() >= shortestScheme &&
           std::ranges::none_of(address, [](QChar c) {
               return c.isSpace() || c == u'<' || c == u'>' || c == u'&' || c == u'\\';
           });
}
} // namespace

QString markdownInlines(const std::vector<Inline> &inlines, MarkdownInlineOptions options)
{
    std::vector<Token> tokens = nested(inlines);
    MarkWriter(tokens, options.style).write();

    QString markdown;
    bool isLineStart = true;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const Token &token = tokens[i];
        switch (token.kind) {
        case Token::Kind::open:
            if (token.format != linked) {
                markdown += token.written;
            } else if (token.partner == i + 2 && tokens[i + 1].kind == Token::Kind::text &&
                       tokens[i + 1].part->text == token.address && isAutolink(token.address)) {
                markdown += u'<' + token.address + u'>';
                i = token.partner;
            } else {
                markdown += u'[';
            }
            break;
        case Token::Kind::close:
            markdown += token.format == linked ? u"]("_s + markdownDestination(token.address) + u')'
                                               : token.written;
            break;
        case Token::Kind::text:
            markdown += escapedMarkdown(
                token.part->text, {.isLineStart = isLineStart,
                                   .isHeadingEnd = options.isHeading && i + 1 == tokens.size()});
            break;
        case Token::Kind::lineBreak:
            markdown += options.isHeading ? "<br>"_L1 : "\\\n"_L1;
            break;
        case Token::Kind::picture:
            markdown += u"!["_s + escapedMarkdown(token.part->text) + u"]("_s +
                        markdownDestination(token.part->source) + u')';
            break;
        }
        isLineStart = token.kind == Token::Kind::lineBreak && !options.isHeading;
    }
    return markdown;
}
