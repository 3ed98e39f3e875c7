#include "transfer/MarkdownEscaping.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
bool isAsciiDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isAsciiWord(QChar c)
{
    return isAsciiDigit(c) || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

/// Whether a character reference begins here: then the ampersand would not be one.
bool isReference(QStringView rest)
{
    qsizetype end = 1;
    while (end < rest.size() && (isAsciiWord(rest[end]) || rest[end] == u'#'))
        ++end;
    return end > 1 && end < rest.size() && rest[end] == u';';
}

/// Whether the line is what tells a table's heading from its rows, or could underline a heading.
bool isRule(QStringView line)
{
    return !line[0].isSpace() && std::ranges::all_of(line, [](QChar c) {
        return c == u'-' || c == u'|' || c == u':' || c == u'=' || c == u'+' || c.isSpace();
    });
}

/// The place of the character that would make the beginning of a line more than text; -1 when there
/// is none.
qsizetype lineMark(QStringView text)
{
    if (text.isEmpty())
        return -1;
    const auto isEndOrSpace = [&text](qsizetype at) {
        return at >= text.size() || text[at].isSpace();
    };
    const QChar first = text[0];
    if (first == u'#' || first == u'>' || first == u'=' || isRule(text))
        return 0;
    if ((first == u'-' || first == u'+') && isEndOrSpace(1))
        return 0;
    qsizetype digits = 0;
    while (digits < text.size() && isAsciiDigit(text[digits]))
        ++digits;
    constexpr qsizetype longestNumber = 9;
    if (digits > 0 && digits <= longestNumber && digits < text.size() &&
        (text[digits] == u'.' || text[digits] == u')') && isEndOrSpace(digits + 1))
        return digits;
    return -1;
}

bool isAutolinkMark(QStringView text, qsizetype at)
{
    const QChar c = text[at];
    const QStringView before = text.first(at);
    const QStringView behind = text.sliced(at + 1);
    if (c == u'@')
        return !before.isEmpty() && !before.back().isSpace() && !behind.isEmpty() &&
               !behind.front().isSpace();
    if (c == u':')
        return behind.startsWith("//"_L1) && !before.isEmpty() && isAsciiWord(before.back());
    return c == u'.' && before.endsWith("www"_L1, Qt::CaseInsensitive);
}

bool needsEscape(QStringView text, qsizetype at)
{
    switch (text[at].unicode()) {
    case u'\\':
    case u'`':
    case u'*':
    case u'[':
    case u']':
    case u'<':
    case u'~':
        return true;
    case u'_': // within a word it is a letter like any other
        return at == 0 || at + 1 == text.size() || !isAsciiWord(text[at - 1]) ||
               !isAsciiWord(text[at + 1]);
    case u'&':
        return isReference(text.sliced(at));
    case u'!':
        return at + 1 == text.size() || text[at + 1] == u'[';
    case u'@':
    case u':':
    case u'.':
        return isAutolinkMark(text, at);
    default:
        return false;
    }
}
} // namespace

QString escapedMarkdown(QStringView text, MarkdownPlace place)
{
    const qsizetype mark = place.isLineStart ? lineMark(text) : -1;
    QString escaped;
    escaped.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isClosing = place.isHeadingEnd && i + 1 == text.size() && text[i] == u'#';
        if (i == mark || isClosing || needsEscape(text, i))
            escaped += u'\\';
        escaped += text[i];
    }
    return escaped;
}

QString markdownDestination(const QString &address)
{
    const bool isBare = std::ranges::none_of(address, [](QChar c) {
        return c.isSpace() || c == u'(' || c == u')' || c == u'<' || c == u'>';
    });
    QString escaped;
    for (qsizetype i = 0; i < address.size(); ++i) {
        const QChar c = address[i];
        // Some readers find marks in an address, too.
        const bool isMark =
            c != u'!' && c != u'@' && c != u':' && c != u'.' && needsEscape(address, i);
        if (isMark || c == u'>')
            escaped += u'\\';
        escaped += c;
    }
    return isBare && !address.isEmpty() ? escaped : u'<' + escaped + u'>';
}

bool isMarkdownSpace(char32_t c)
{
    return c == U'\t' || c == U'\n' || c == U'\f' || c == U'\r' ||
           QChar::category(c) == QChar::Separator_Space;
}

bool isMarkdownPunctuation(char32_t c)
{
    constexpr char32_t asciiEnd = 0x80;
    // Readers differ in whether symbols count.
    return QChar::isPunct(c) || (c < asciiEnd && QChar::isSymbol(c));
}
