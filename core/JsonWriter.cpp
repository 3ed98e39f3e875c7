#include "core/JsonWriter.h"

#include <QByteArray>
#include <QLocale>

#ifdef __SSE2__
#include <tmmintrin.h>
#endif

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::ptrdiff_t groupSize = 8;   ///< units of text that are looked at together
constexpr std::ptrdiff_t longestForm = 6; ///< of a unit: \u0000
/// A group whose units take two bytes at most, and one of any that follows.
constexpr std::ptrdiff_t roomBeyondPiece = groupSize * (2 + longestForm);

char *writeCode(char16_t unit, char *to)
{
    constexpr std::string_view digits = "0123456789abcdef";
    *to++ = '\\';
    *to++ = 'u';
    for (const int shift : {12, 8, 4, 0})
        *to++ = digits[(unit >> shift) & 0xF];
    return to;
}

char *writeAscii(char c, char *to)
{
    constexpr std::string_view named = "\"\\/\b\f\n\r\t";
    constexpr std::string_view names = "\"\\/bfnrt";
    if (const auto index = named.find(c); index != std::string_view::npos) {
        *to++ = '\\';
        *to++ = names[index];
    } else if (c < 0x20) {
        return writeCode(char16_t(c), to);
    } else {
        *to++ = c;
    }
    return to;
}

/// A unit of text, together with the next where both are a pair.
char *writeUnit(const char16_t *&at, const char16_t *end, char *to)
{
    const char16_t unit = *at++;
    if (unit < 0x80)
        return writeAscii(char(unit), to);
    char32_t code = unit;
    if (unit < 0x800) {
        *to++ = char(0xC0 | code >> 6);
    } else if (!QChar::isSurrogate(unit)) {
        *to++ = char(0xE0 | code >> 12);
        *to++ = char(0x80 | (code >> 6 & 0x3F));
    } else if (QChar::isHighSurrogate(unit) && at != end && QChar::isLowSurrogate(*at)) {
        code = QChar::surrogateToUcs4(unit, *at++);
        *to++ = char(0xF0 | code >> 18);
        *to++ = char(0x80 | (code >> 12 & 0x3F));
        *to++ = char(0x80 | (code >> 6 & 0x3F));
    } else { // UTF-8 has no place for half a pair
        return writeCode(unit, to);
    }
    *to++ = char(0x80 | (code & 0x3F));
    return to;
}

#ifdef __SSE2__
/// Where the bytes of a group come from when some of its units have one byte and the others two.
struct Packing {
    std::array<std::uint8_t, 16> places{};
    std::uint8_t size = 0;
};

using Packings = std::array<Packing, 256>; ///< by which of the eight units have one byte

constexpr Packings allPackings()
{
    Packings all{};
    for (unsigned singles = 0; singles < all.size(); ++singles) {
        Packing &packing = all[singles];
        for (unsigned unit = 0; unit < groupSize; ++unit) {
            packing.places[packing.size++] = std::uint8_t(2 * unit);
            if ((singles >> unit & 1) == 0)
                packing.places[packing.size++] = std::uint8_t(2 * unit + 1);
        }
    }
    return all;
}

constexpr Packings packings = allPackings();

/// Writes groups of which every unit takes one or two bytes, until the text or the piece ends or
/// there is another. No unit is asked what it is: where letters with and without accents take
/// turns, the processor would guess wrong all the time.
__attribute__((target("ssse3"))) char *writeGroups(const char16_t *&at, const char16_t *end,
                                                   char *to, const char *pieceEnd)
{
    const auto all = [](int value) { return _mm_set1_epi16(short(value)); };
    const auto either = [](__m128i which, __m128i one, __m128i other) {
        return _mm_or_si128(_mm_and_si128(which, one), _mm_andnot_si128(which, other));
    };
    for (; end - at >= groupSize && to < pieceEnd; at += groupSize) {
        __builtin_prefetch(at + 512); // the notes are all over the memory
        const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i *>(at));
        // From 0x20 to 0x7FF, in a comparison that knows signs.
        const __m128i others = _mm_cmpgt_epi16(_mm_sub_epi16(units, all(0x8020)), all(0x87DF));
        if (_mm_movemask_epi8(others) != 0)
            break;
        const __m128i escaped = _mm_or_si128(
            _mm_cmpeq_epi16(units, all('"')),
            _mm_or_si128(_mm_cmpeq_epi16(units, all('\\')), _mm_cmpeq_epi16(units, all('/'))));
        const __m128i single = _mm_andnot_si128(escaped, _mm_cmplt_epi16(units, all(0x80)));
        const __m128i trail = _mm_slli_epi16(_mm_and_si128(units, all(0x3F)), 8);
        const __m128i pair =
            _mm_or_si128(all(0x80C0), _mm_or_si128(_mm_srli_epi16(units, 6), trail));
        const __m128i escape = _mm_or_si128(all('\\'), _mm_slli_epi16(units, 8));
        const __m128i bytes = either(single, units, either(escaped, escape, pair));
        const int singles = _mm_movemask_epi8(_mm_packs_epi16(single, _mm_setzero_si128()));
        const Packing &packing = packings[std::size_t(singles)];
        const __m128i places =
            _mm_loadu_si128(reinterpret_cast<const __m128i *>(packing.places.data()));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(to), _mm_shuffle_epi8(bytes, places));
        to += packing.size;
    }
    return to;
}

bool canWriteGroups()
{
    return __builtin_cpu_supports("ssse3") != 0;
}
#else
char *writeGroups(const char16_t *&, const char16_t *, char *to, const char *)
{
    return to;
}

constexpr bool canWriteGroups()
{
    return false;
}
#endif
} // namespace

JsonWriter::JsonWriter(Sink sink)
    : m_sink(std::move(sink)),
      m_bytes(std::make_unique_for_overwrite<char[]>(pieceSize + roomBeyondPiece)),
      m_end(m_bytes.get())
{
}

void JsonWriter::write(QLatin1StringView syntax)
{
    Q_ASSERT(syntax.size() <= roomBeyondPiece);
    m_end = std::copy(syntax.begin(), syntax.end(), m_end);
    handOverWhenFull();
}

void JsonWriter::writeText(QStringView text)
{
    write("\""_L1);
    const char16_t *at = text.utf16();
    const char16_t *const end = at + text.size();
    const char *const pieceEnd = m_bytes.get() + pieceSize;
    while (at != end) {
        if (canWriteGroups())
            m_end = writeGroups(at, end, m_end, pieceEnd);
        for (const char16_t *const groupEnd = at + std::min(groupSize, end - at); at < groupEnd;)
            m_end = writeUnit(at, end, m_end);
        handOverWhenFull();
    }
    write("\""_L1);
}

void JsonWriter::writeNumber(double value)
{
    constexpr double integersEnd = 9223372036854775808.0;
    const bool isInteger =
        value >= -integersEnd && value < integersEnd && std::trunc(value) == value;
    write(QLatin1StringView(isInteger
                                ? QByteArray::number(qint64(value))
                                : QByteArray::number(value, 'g', QLocale::FloatingPointShortest)));
}

bool JsonWriter::finish()
{
    if (m_end != m_bytes.get())
        handOver(m_end - m_bytes.get());
    return !m_isRefused;
}

void JsonWriter::handOverWhenFull()
{
    if (m_end - m_bytes.get() >= pieceSize)
        handOver(pieceSize);
}

void JsonWriter::handOver(qsizetype size)
{
    m_isRefused = m_isRefused || !m_sink({m_bytes.get(), size});
    m_end = std::copy(m_bytes.get() + size, m_end, m_bytes.get());
}
