#include "core/NotesJson.h"

#include <QJsonArray>
#include <QJsonDocument>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
/// The keys in the order of the alphabet, as they have always been.
void writeNote(JsonWriter &json, const Note &note)
{
    json.write("{\"body\":"_L1);
    json.writeText(note.body);
    json.write(",\"color\":"_L1);
    json.writeText(note.color);
    json.write(",\"createdAt\":"_L1);
    json.writeNumber(note.createdAt.secondsSinceReferenceDate);
    json.write(",\"id\":"_L1);
    json.writeText(uuidText(note.id));
    json.write(note.isArchived ? ",\"isArchived\":true"_L1 : ",\"isArchived\":false"_L1);
    json.write(",\"textSize\":"_L1);
    json.writeText(rawValue(note.textSize));
    json.write(",\"title\":"_L1);
    json.writeText(note.title);
    json.write(",\"updatedAt\":"_L1);
    json.writeNumber(note.updatedAt.secondsSinceReferenceDate);
    json.write("}"_L1);
}

/// Reads a file of exactly the form in which JsonWriter writes, more than twice as fast as a
/// document of any form can be. It gives up at the first byte that is anything else.
class OwnFormReader
{
public:
    explicit OwnFormReader(const QByteArray &bytes) : m_rest(bytes) {}

    [[nodiscard]] std::optional<NoteArray> read()
    {
        if (!QUtf8StringView(m_rest.data(), m_rest.size()).isValidUtf8())
            return std::nullopt;
        NoteArray notes;
        if (!take("["))
            return std::nullopt;
        do
            notes.append(note());
        while (!m_hasFailed && take(","));
        if (!take("]") || m_hasFailed || !m_rest.isEmpty())
            return std::nullopt;
        return notes;
    }

private:
    Note note()
    {
        Note note;
        expect("{\"body\":\"");
        note.body = text();
        expect(",\"color\":\"");
        note.color = text();
        expect(",\"createdAt\":");
        note.createdAt = {number()};
        expect(",\"id\":\"");
        const std::optional<QUuid> id = uuidFromText(text());
        expect(",\"isArchived\":");
        note.isArchived = take("true");
        if (!note.isArchived)
            expect("false");
        expect(",\"textSize\":\"");
        const std::optional<NoteTextSize> size = noteTextSizeFromRawValue(text());
        expect(",\"title\":\"");
        note.title = text();
        expect(",\"updatedAt\":");
        note.updatedAt = {number()};
        expect("}");
        m_hasFailed |= !id || !size;
        note.id = id.value_or(QUuid());
        note.textSize = size.value_or(NoteTextSize::medium);
        return note;
    }

    bool take(QByteArrayView syntax)
    {
        if (!m_rest.startsWith(syntax))
            return false;
        m_rest = m_rest.sliced(syntax.size());
        return true;
    }

    void expect(QByteArrayView syntax) { m_hasFailed |= !take(syntax); }

    /// Up to the quote behind it, and the quote.
    QString text()
    {
        m_length = 0;
        while (!m_hasFailed) {
            readPlain();
            if (take("\""))
                break;
            makeRoom();
            if (!m_rest.isEmpty() && static_cast<unsigned char>(m_rest.front()) >= 0x80)
                readBeyondAscii();
            else if (take("\\/"))
                append(u'/');
            else if (take("\\\""))
                append(u'"');
            else if (take("\\\\"))
                append(u'\\');
            else if (take("\\n"))
                append(u'\n');
            else
                m_hasFailed = true; // rare enough
        }
        return m_scratch.first(m_length);
    }

    /// Up to what does not stand for itself.
    void readPlain()
    {
        const char *at = m_rest.begin();
        const char *const end = m_rest.end();
#ifdef __SSE2__
        for (; end - at >= step; at += step, m_length += step) {
            makeRoom();
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(at));
            // Above 127 bytes are negative, and less than a space, too.
            const __m128i special =
                _mm_or_si128(_mm_cmplt_epi8(bytes, _mm_set1_epi8(' ')),
                             _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('"')),
                                          _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\'))));
            auto *to = reinterpret_cast<__m128i *>(m_scratch.data() + m_length);
            _mm_storeu_si128(to, _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
            _mm_storeu_si128(to + 1, _mm_unpackhi_epi8(bytes, _mm_setzero_si128()));
            if (const auto places = unsigned(_mm_movemask_epi8(special)); places != 0) {
                const int count = std::countr_zero(places);
                m_length += count;
                m_rest = m_rest.sliced(at + count - m_rest.begin());
                return;
            }
        }
#endif
        const auto isPlain = [](char c) {
            return c != '"' && c != '\\' && static_cast<unsigned char>(c) - 0x20U < 0x60U;
        };
        for (; at != end && isPlain(*at); ++at) {
            makeRoom();
            append(QLatin1Char(*at));
        }
        m_rest = m_rest.sliced(at - m_rest.begin());
    }

    /// One character. The bytes are known to be UTF-8.
    void readBeyondAscii()
    {
        const auto byte = [this](qsizetype i) { return static_cast<unsigned char>(m_rest[i]); };
        const int size = byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : 4;
        char32_t code = byte(0) & (0x7F >> size);
        for (int i = 1; i < size; ++i)
            code = (code << 6) | (byte(i) & 0x3F);
        m_rest = m_rest.sliced(size);
        for (const char16_t unit : QChar::fromUcs4(code))
            append(unit);
    }

    /// For what is read in one step.
    void makeRoom()
    {
        if (m_scratch.size() < m_length + step)
            m_scratch.resize(2 * (m_length + step));
    }

    void append(QChar unit)
    {
        m_scratch.data()[m_length++] = unit;
    }

    double number()
    {
        const auto isPart = [](char c) { return (c >= '0' && c <= '9') || c == '.'; };
        const auto *end = std::find_if_not(m_rest.begin(), m_rest.end(), isPart);
        const QByteArrayView digits = m_rest.first(end - m_rest.begin());
        m_rest = m_rest.sliced(digits.size());
        bool isNumber = false;
        const double number = digits.toDouble(&isNumber);
        // Others are numbers, too, but not of a date of our days.
        m_hasFailed |= !isNumber || digits.size() > 20 || digits[0] < '1' || digits[0] > '9' ||
                       digits.endsWith('.');
        return number;
    }

    static constexpr qsizetype step = 16; ///< bytes, and so characters at most

    QByteArrayView m_rest;
    QString m_scratch;      ///< so that no text keeps room that it does not need
    qsizetype m_length = 0; ///< of the text in it
    bool m_hasFailed = false;
};
} // namespace

bool haveFiniteDates(const NoteArray &notes)
{
    return std::ranges::all_of(notes, [](const Note &note) {
        return std::isfinite(note.createdAt.secondsSinceReferenceDate) &&
               std::isfinite(note.updatedAt.secondsSinceReferenceDate);
    });
}

bool writeNotes(const NoteArray &notes, JsonWriter::Sink sink)
{
    if (!haveFiniteDates(notes))
        return false;
    JsonWriter json(std::move(sink));
    json.write("["_L1);
    bool isFirst = true;
    for (const Note &note : notes) {
        if (json.isRefused())
            return false;
        if (!std::exchange(isFirst, false))
            json.write(","_L1);
        writeNote(json, note);
    }
    json.write("]"_L1);
    return json.finish();
}

std::optional<QByteArray> encodeNotes(const NoteArray &notes)
{
    QByteArray bytes;
    const bool isWritten = writeNotes(notes, [&bytes](QByteArrayView piece) {
        bytes.append(piece);
        return true;
    });
    return isWritten ? std::optional(bytes) : std::nullopt;
}

std::optional<NoteArray> decodeNotes(const QByteArray &bytes, Timestamp now)
{
    // Qt would skip a byte order mark; no version of the file has ever begun with one.
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return std::nullopt;
    if (std::optional<NoteArray> notes = OwnFormReader(bytes).read())
        return notes;
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    if (!document.isArray())
        return std::nullopt;
    NoteArray notes;
    const QJsonArray array = document.array();
    for (const auto element : array) {
        if (!element.isObject())
            return std::nullopt;
        const std::optional<Note> note = Note::fromJson(element.toObject(), now);
        if (!note)
            return std::nullopt;
        notes.append(*note);
    }
    return notes;
}
