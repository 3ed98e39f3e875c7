#include "core/SearchQuery.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#ifdef __SSE2__
#include <bit>
#include <emmintrin.h>
#endif

namespace
{
constexpr char separator = '\xFF'; // in no UTF-8 text

// A keystroke looks through megabytes. The C library's search is up to ten times slower where the
// first letters of the needle are frequent in the text; comparing the needle's two ends at sixteen
// places at once leaves hardly a place to look at more closely.
bool contains(const char *text, std::size_t size, const char *needle, std::size_t needleSize)
{
    if (needleSize > size)
        return false;
    if (needleSize == 1)
        return std::memchr(text, *needle, size) != nullptr;
#ifdef __SSE2__
    constexpr std::size_t width = sizeof(__m128i);
    const auto load = [](const char *from) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i *>(from));
    };
    const std::size_t last = needleSize - 1;
    const __m128i firsts = _mm_set1_epi8(needle[0]);
    const __m128i lasts = _mm_set1_epi8(needle[last]);
    for (; size >= last + width; text += width, size -= width) {
        const __m128i ends = _mm_and_si128(_mm_cmpeq_epi8(firsts, load(text)),
                                           _mm_cmpeq_epi8(lasts, load(text + last)));
        for (auto places = static_cast<unsigned>(_mm_movemask_epi8(ends)); places != 0;
             places &= places - 1) {
            if (std::memcmp(text + std::countr_zero(places), needle, needleSize) == 0)
                return true;
        }
    }
#endif
    return memmem(text, size, needle, needleSize) != nullptr;
}

constexpr char16_t firstOfTwoBytes = 0x80; // in UTF-8
constexpr char16_t firstOfThreeBytes = 0x800;

/// What the frequent units become: to ask Unicode's tables for each letter takes longer than all
/// the rest.
using CommonFolding = std::array<char16_t, firstOfThreeBytes>;

const CommonFolding &commonFolding()
{
    static const CommonFolding table = [] {
        CommonFolding table{};
        for (std::size_t c = 0; c < table.size(); ++c)
            table[c] = char16_t(QChar::toCaseFolded(char32_t(c)));
        return table;
    }();
    return table;
}

/// Not as QString::toCaseFolded does, which makes "ss" of "ß" and so neither keeps the places nor
/// agrees with a comparison by Qt::CaseInsensitive.
char16_t foldedUnit(char16_t c, const CommonFolding &common)
{
    return c < common.size() ? common[c] : char16_t(QChar::toCaseFolded(char32_t(c)));
}

bool isPairAt(QStringView text, qsizetype at)
{
    return text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
}

char32_t foldedPair(QStringView text, qsizetype at)
{
    return QChar::toCaseFolded(QChar::surrogateToUcs4(text[at], text[at + 1]));
}

/// Whether all are of one byte; if so, they are written, in lower case.
bool writeAscii(const QChar *units, qsizetype count, char *to)
{
    unsigned all = 0; // without a branch: the compiler looks at all of them at once
    for (qsizetype i = 0; i < count; ++i)
        all |= units[i].unicode();
    if (all >= firstOfTwoBytes)
        return false;
    for (qsizetype i = 0; i < count; ++i) {
        const auto c = uchar(units[i].unicode());
        constexpr uchar lowerCase = 0x20;
        to[i] = char(c | (uchar(c - 'A') < 26 ? lowerCase : 0));
    }
    return true;
}

/// There is room for two bytes, whatever they take.
char *writeUtf8(char32_t c, char *to)
{
    constexpr unsigned bits = 6; // that a further byte holds
    const auto further = [c](unsigned bytesBehind) {
        return char(0x80 | ((c >> bits * bytesBehind) & 0x3f));
    };
    if (c < firstOfThreeBytes) {
        // Without a branch: the processor would guess wrong where letters with and without accents
        // take turns.
        const bool isOne = c < firstOfTwoBytes;
        to[0] = char(isOne ? c : 0xc0 | (c >> bits));
        to[1] = further(0);
        to += isOne ? 1 : 2;
    } else if (!QChar::requiresSurrogates(c)) {
        *to++ = char(0xe0 | (c >> bits * 2));
        *to++ = further(1);
        *to++ = further(0);
    } else {
        *to++ = char(0xf0 | (c >> bits * 3));
        *to++ = further(2);
        *to++ = further(1);
        *to++ = further(0);
    }
    return to;
}

/// The text as UTF-8, case folded. Half a surrogate pair is written like any other unit, so that it
/// is found as what it is and nothing else. Returns the end.
char *writeFolded(QStringView text, const CommonFolding &common, char *to)
{
    constexpr qsizetype atOnce = 16;
    for (qsizetype i = 0; i < text.size();) {
        if (text.size() - i >= atOnce && writeAscii(text.data() + i, atOnce, to)) {
            i += atOnce;
            to += atOnce;
            continue;
        }
        for (const qsizetype end = std::min(i + atOnce, text.size()); i < end; ++i) {
            const bool isPair = isPairAt(text, i);
            const char32_t c = isPair ? foldedPair(text, i) : foldedUnit(text[i].unicode(), common);
            to = writeUtf8(c, to);
            i += isPair ? 1 : 0;
        }
    }
    return to;
}
} // namespace

QString caseFolded(QString text)
{
    const CommonFolding &common = commonFolding();
    const qsizetype size = text.size();
    QChar *const data = text.data();
    for (qsizetype i = 0; i < size; ++i) {
        if (isPairAt(text, i)) {
            const char32_t folded = foldedPair(text, i);
            data[i] = QChar::highSurrogate(folded);
            data[++i] = QChar::lowSurrogate(folded);
        } else {
            data[i] = QChar(foldedUnit(data[i].unicode(), common));
        }
    }
    return text;
}

void appendSearchable(QByteArray &searchable, std::initializer_list<QStringView> texts)
{
    const CommonFolding &common = commonFolding();
    constexpr qsizetype mostBytes = 3; // of one unit
    bool isFirst = true;
    for (const QStringView text : texts) {
        const qsizetype start = searchable.size();
        searchable.resize(start + 1 + mostBytes * text.size());
        char *at = searchable.data() + start;
        if (!std::exchange(isFirst, false))
            *at++ = separator;
        at = writeFolded(text, common, at);
        searchable.truncate(at - searchable.constData());
    }
}

QByteArray searchableText(std::initializer_list<QStringView> texts)
{
    QByteArray searchable;
    appendSearchable(searchable, texts);
    searchable.squeeze();
    return searchable;
}

SearchQuery::SearchQuery(const QString &typed)
    : m_folded(caseFolded(typed.trimmed())), m_needle(searchableText({m_folded}))
{
}

bool SearchQuery::occursIn(QByteArrayView searchable) const
{
    return !isEmpty() && contains(searchable.data(), static_cast<std::size_t>(searchable.size()),
                                  m_needle.constData(), static_cast<std::size_t>(m_needle.size()));
}

std::vector<qsizetype> SearchQuery::placesIn(const QString &text) const
{
    std::vector<qsizetype> places;
    if (isEmpty())
        return places;
    const QString folded = caseFolded(text);
    for (qsizetype place = folded.indexOf(m_folded); place >= 0;
         place = folded.indexOf(m_folded, place + length()))
        places.push_back(place);
    return places;
}
