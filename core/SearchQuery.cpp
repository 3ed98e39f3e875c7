#include "core/SearchQuery.h"

#include <cstring>

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
} // namespace

QString caseFolded(QString text)
{
    // Not QString::toCaseFolded, which makes "ss" of "ß" and so neither keeps the places nor agrees
    // with a comparison by Qt::CaseInsensitive.
    const qsizetype size = text.size();
    constexpr char16_t firstBeyondAscii = 0x80;
    QChar *const data = text.data();
    for (qsizetype i = 0; i < size; ++i) {
        if (data[i] < QChar(firstBeyondAscii)) { // without asking the tables of Unicode
            if (data[i] >= u'A' && data[i] <= u'Z')
                data[i] = QChar(char16_t(data[i].unicode() + (u'a' - u'A')));
        } else if (data[i].isHighSurrogate() && i + 1 < size && data[i + 1].isLowSurrogate()) {
            const char32_t folded =
                QChar::toCaseFolded(QChar::surrogateToUcs4(data[i], data[i + 1]));
            data[i] = QChar::highSurrogate(folded);
            data[++i] = QChar::lowSurrogate(folded);
        } else {
            data[i] = data[i].toCaseFolded();
        }
    }
    return text;
}

QByteArray searchableText(std::initializer_list<QStringView> texts)
{
    QByteArray searchable;
    for (const QStringView text : texts) {
        if (!searchable.isEmpty())
            searchable += separator;
        searchable += caseFolded(text.toString()).toUtf8();
    }
    searchable.squeeze();
    return searchable;
}

SearchQuery::SearchQuery(const QString &typed)
    : m_folded(caseFolded(typed.trimmed())), m_needle(m_folded.toUtf8())
{
}

bool SearchQuery::occursIn(const QByteArray &searchable) const
{
    return !isEmpty() &&
           contains(searchable.constData(), static_cast<std::size_t>(searchable.size()),
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
