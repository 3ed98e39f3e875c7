#include "core/JsonWriter.h"

#include <QByteArray>
#include <QLocale>

#ifdef __x86_64__
#include <immintrin.h>
#endif

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::ptrdiff_t groupSize = 16;  ///< units of text that are looked at together
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

#ifdef __x86_64__
/// Where the bytes of eight units come from when some of the units have one byte and the others
/// two.
using Places = std::array<std::uint8_t, 16>;
constexpr std::size_t unitsPlaced = 8;

constexpr auto allPlaces() ///< by which of the units have one byte
{
    std::array<Places, 1 << unitsPlaced> all{};
    for (unsigned singles = 0; singles < all.size(); ++singles) {
        std::size_t size = 0;
        for (unsigned unit = 0; unit < unitsPlaced; ++unit) {
            all[singles][size++] = std::uint8_t(2 * unit);
            if ((singles >> unit & 1) == 0)
                all[singles][size++] = std::uint8_t(2 * unit + 1);
        }
    }
    return all;
}

alignas(16) constexpr std::array<Places, 1 << unitsPlaced> places = allPlaces();

/// Writes groups of which every unit takes one or two bytes, until the text or the piece ends or
/// there is another. No unit is asked what it is: where letters with and without accents take
/// turns, the processor would guess wrong all the time.
__attribute__((target("avx2,popcnt"))) char *writeGroups(const char16_t *&at, const char16_t *end,
                                                         char *to, const char *pieceEnd)
{
    const auto placesOf = [](unsigned singles) {
        return _mm_load_si128(reinterpret_cast<const __m128i *>(places[singles].data()));
    };
    const auto store = [](char *place, __m128i bytes) {
        _mm_storeu_si128(reinterpret_cast<__m128i *>(place), bytes);
    };
    const __m256i beforeFirst = _mm256_set1_epi16(short(0x8020));
    const __m256i last = _mm256_set1_epi16(short(0x87DF));
    const __m256i quote = _mm256_set1_epi16('"');
    const __m256i slash = _mm256_set1_epi16('/');
    const __m256i backslash = _mm256_set1_epi16('\\');
    const __m256i asciiEnd = _mm256_set1_epi16(0x80);
    const __m256i trailBits = _mm256_set1_epi16(0x3F);
    const __m256i pairMarks = _mm256_set1_epi16(short(0x80C0));
    for (; end - at >= groupSize && to < pieceEnd; at += groupSize) {
        __builtin_prefetch(at + 512); // the notes are all over the memory
        const __m256i units = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(at));
        // From 0x20 to 0x7FF, in a comparison that knows signs.
        const __m256i others = _mm256_cmpgt_epi16(_mm256_sub_epi16(units, beforeFirst), last);
        if (_mm256_movemask_epi8(others) != 0)
            break;
        const __m256i escaped = _mm256_or_si256(
            _mm256_cmpeq_epi16(units, quote), _mm256_or_si256(_mm256_cmpeq_epi16(units, backslash),
                                                              _mm256_cmpeq_epi16(units, slash)));
        const __m256i single = _mm256_andnot_si256(escaped, _mm256_cmpgt_epi16(asciiEnd, units));
        const __m256i escape = _mm256_or_si256(backslash, _mm256_slli_epi16(units, 8));
        const __m256i trail = _mm256_slli_epi16(_mm256_and_si256(units, trailBits), 8);
        const __m256i pair =
            _mm256_or_si256(pairMarks, _mm256_or_si256(_mm256_srli_epi16(units, 6), trail));
        const __m256i bytes =
            _mm256_blendv_epi8(_mm256_blendv_epi8(pair, escape, escaped), units, single);
        // A bit for each unit, those of the second half from bit 16 on.
        const auto singles =
            unsigned(_mm256_movemask_epi8(_mm256_packs_epi16(single, _mm256_setzero_si256())));
        const unsigned first = singles & 0xFF;
        const unsigned second = singles >> 16;
        const __m256i packed =
            _mm256_shuffle_epi8(bytes, _mm256_set_m128i(placesOf(second), placesOf(first)));
        store(to, _mm256_castsi256_si128(packed));
        to += 2 * unitsPlaced - std::size_t(std::popcount(first));
        store(to, _mm256_extracti128_si256(packed, 1));
        to += 2 * unitsPlaced - std::size_t(std::popcount(second));
    }
    return to;
}

bool canWriteGroups()
{
    return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("popcnt") != 0;
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
