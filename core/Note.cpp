#include "core/Note.h"

#include "core/NoteColor.h"
#include "core/NoteLines.h"
#include "core/String+HTML.h"

#include <QJsonValue>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace
{
NoteTextSize lenientTextSize(const QString &text)
{
    // "regular" was the middle size once; it and every unknown size read as medium.
    return noteTextSizeFromRawValue(text).value_or(NoteTextSize::medium);
}

/// Reads one note's values in turn and remembers whether any had the wrong type.
class Reader
{
public:
    explicit Reader(const QJsonObject &object) : m_object(object) {}

    [[nodiscard]] bool hasFailed() const { return m_hasFailed; }

    QString string(QLatin1StringView key, const QString &absent)
    {
        const QJsonValue value = m_object.value(key);
        if (isAbsent(value))
            return absent;
        m_hasFailed |= !value.isString();
        return value.toString();
    }

    bool boolean(QLatin1StringView key, bool absent)
    {
        const QJsonValue value = m_object.value(key);
        if (isAbsent(value))
            return absent;
        m_hasFailed |= !value.isBool();
        return value.toBool();
    }

    Timestamp date(QLatin1StringView key, Timestamp absent)
    {
        const QJsonValue value = m_object.value(key);
        if (isAbsent(value))
            return absent;
        const double seconds = value.toDouble();
        m_hasFailed |= !value.isDouble() || !std::isfinite(seconds);
        return {seconds};
    }

    QUuid uuid(QLatin1StringView key)
    {
        if (isAbsent(m_object.value(key)))
            return QUuid::createUuid();
        const std::optional<QUuid> id = uuidFromText(string(key, {}));
        m_hasFailed |= !id;
        return id.value_or(QUuid());
    }

private:
    static bool isAbsent(const QJsonValue &value) { return value.isUndefined() || value.isNull(); }

    const QJsonObject &m_object;
    bool m_hasFailed = false;
};
} // namespace

QString uuidText(const QUuid &id)
{
    // Upper case of a QString takes ten times as long.
    return QString::fromLatin1(id.toByteArray(QUuid::WithoutBraces).toUpper());
}

// QUuid alone reads more than files may hold: braces, and any text of which it takes the beginning.
std::optional<QUuid> uuidFromText(QStringView text)
{
    constexpr qsizetype canonicalLength = 36;
    if (text.size() != canonicalLength)
        return std::nullopt;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        const bool isHyphenPlace = i == 8 || i == 13 || i == 18 || i == 23;
        const bool isHexDigit =
            (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
        if (isHyphenPlace ? c != '-' : !isHexDigit)
            return std::nullopt;
    }
    return QUuid::fromString(text);
}

Note Note::fresh(Timestamp now)
{
    return {.id = QUuid::createUuid(),
            .title = {},
            .body = u"<h1><br></h1>"_s,
            .color = rawValue(NoteColor::yellow),
            .textSize = NoteTextSize::medium,
            .isArchived = false,
            .createdAt = now,
            .updatedAt = now};
}

std::optional<Note> Note::fromJson(const QJsonObject &object, Timestamp now)
{
    Reader reader(object);
    Note note{.id = reader.uuid("id"_L1),
              .title = reader.string("title"_L1, {}),
              .body = reader.string("body"_L1, {}),
              .color = reader.string("color"_L1, rawValue(NoteColor::yellow)),
              .textSize =
                  lenientTextSize(reader.string("textSize"_L1, rawValue(NoteTextSize::medium))),
              .isArchived = reader.boolean("isArchived"_L1, false),
              .createdAt = reader.date("createdAt"_L1, now),
              .updatedAt = reader.date("updatedAt"_L1, now)};
    if (reader.hasFailed())
        return std::nullopt;
    return note;
}

QJsonObject Note::toJson() const
{
    return {{u"id"_s, uuidText(id)},
            {u"title"_s, title},
            {u"body"_s, body},
            {u"color"_s, color},
            {u"textSize"_s, rawValue(textSize)},
            {u"isArchived"_s, isArchived},
            {u"createdAt"_s, createdAt.secondsSinceReferenceDate},
            {u"updatedAt"_s, updatedAt.secondsSinceReferenceDate}};
}

QString Note::headingText() const
{
    if (const std::optional<FirstHeading> heading = firstHeading(body)) {
        QString text = fastStrippingHTML(heading->innerHTML.toString()).trimmed();
        if (!text.isEmpty())
            return text;
    }
    return title;
}

QString Note::previewText(const QString &placeholder) const
{
    const QString preview = previewLine(*this);
    return preview.isEmpty() ? placeholder : preview;
}
