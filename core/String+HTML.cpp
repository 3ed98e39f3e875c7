#include "core/String+HTML.h"

#include "core/PlainTextPieces.h"
#include "core/WellFormed.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
QRegularExpression compiled(const QString &pattern, QRegularExpression::PatternOptions options = {})
{
    QRegularExpression regex(pattern, options);
    if (!regex.isValid())
        qFatal("The pattern %ls does not compile", qUtf16Printable(pattern));
    regex.optimize();
    return regex;
}

constexpr QRegularExpression::PatternOptions headingOptions =
    QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption;

/// The same text, place for place, without the half surrogate pairs that make any match fail.
QString matchable(const QString &text)
{
    if (isWellFormed(text))
        return text;
    QString mended = text;
    for (qsizetype i = 0; i < mended.size(); ++i) {
        if (mended.at(i).isHighSurrogate() && i + 1 < mended.size() &&
            mended.at(i + 1).isLowSurrogate())
            ++i;
        else if (mended.at(i).isSurrogate())
            mended[i] = QChar::ReplacementCharacter;
    }
    return mended;
}

QString withoutTags(const QString &html)
{
    // No tag ends behind the last '>': looking there would search a run of '<' to its end from
    // each.
    const qsizetype end = html.lastIndexOf(u'>') + 1;
    QString text = matchable(html.left(end));
    text.replace(tagRegex(), u" "_s);
    text += QStringView(html).sliced(end);
    return text;
}

QString decodeReferences(const QString &text, const QRegularExpression &regex, int base)
{
    constexpr qulonglong codePointEnd = 0x110000;
    const QString source = matchable(text);
    QString decoded;
    qsizetype copied = 0;
    for (auto it = regex.globalMatch(source); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        bool isNumber = false;
        const qulonglong code = match.capturedView(1).toULongLong(&isNumber, base);
        if (!isNumber || code >= codePointEnd || QChar::isSurrogate(static_cast<char32_t>(code)))
            continue;
        decoded += QStringView(text).sliced(copied, match.capturedStart() - copied);
        decoded += QChar::fromUcs4(static_cast<char32_t>(code));
        copied = match.capturedEnd();
    }
    if (copied == 0)
        return text;
    decoded += QStringView(text).sliced(copied);
    return decoded;
}
} // namespace

const QRegularExpression &tagRegex()
{
    static const QRegularExpression regex = compiled(u"<[^>]+>"_s);
    return regex;
}

const QRegularExpression &h1Regex()
{
    static const QRegularExpression regex = compiled(u"<h1[^>]*>(.*?)</h1>"_s, headingOptions);
    return regex;
}

const QRegularExpression &h1FullRegex()
{
    static const QRegularExpression regex = compiled(u"<h1[^>]*>.*?</h1>"_s, headingOptions);
    return regex;
}

std::optional<FirstHeading> firstHeading(const QString &html)
{
    // The first "<h1" decides: what a later one needs, a '>' and an "</h1>" behind it, the first
    // has as well.
    constexpr auto opening = "<h1"_L1;
    constexpr auto closing = "</h1>"_L1;
    const qsizetype start = html.indexOf(opening, 0, Qt::CaseInsensitive);
    if (start < 0)
        return std::nullopt;
    const qsizetype inner = html.indexOf(u'>', start + opening.size()) + 1;
    const qsizetype end = inner > 0 ? html.indexOf(closing, inner, Qt::CaseInsensitive) : -1;
    if (end < 0)
        return std::nullopt;
    return FirstHeading{start, end + closing.size() - start,
                        QStringView(html).sliced(inner, end - inner)};
}

QString fastStrippingHTML(const QString &html)
{
    QString text = withoutTags(html);
    if (text.contains(u'&')) {
        replaceEach(text, "&nbsp;"_L1, u' ');
        replaceEach(text, "&#160;"_L1, u' ');
        // "&amp;" goes before "&lt;", so "&amp;lt;" comes out as "<". Lists can live with that.
        replaceEach(text, "&amp;"_L1, u'&');
        replaceEach(text, "&lt;"_L1, u'<');
        replaceEach(text, "&gt;"_L1, u'>');
        replaceEach(text, "&quot;"_L1, u'"');
        replaceEach(text, "&#39;"_L1, u'\'');
        replaceEach(text, "&apos;"_L1, u'\'');
        if (text.contains("&#"_L1))
            text = decodeNumericEntities(text);
    }
    replaceEach(text, "  "_L1, u' ');
    return text;
}

QString slowStrippingHTML(const QString &html)
{
    QString text;
    for (PlainTextPieces pieces(html); !pieces.isAtEnd();)
        text += pieces.next();
    return text;
}

QString decodeNumericEntities(const QString &text)
{
    static const QRegularExpression decimal = compiled(u"&#(\\d+);"_s);
    static const QRegularExpression hexadecimal = compiled(u"&#x([0-9a-fA-F]+);"_s);
    constexpr int decimalBase = 10;
    constexpr int hexadecimalBase = 16;
    return decodeReferences(decodeReferences(text, decimal, decimalBase), hexadecimal,
                            hexadecimalBase);
}

void replaceEach(QString &text, QLatin1StringView pattern, QChar replacement)
{
    qsizetype found = text.indexOf(pattern);
    if (found < 0)
        return;
    // QString::replace moves the whole tail once per thousand hits, too often in a large note.
    QChar *const data = text.data();
    qsizetype written = found;
    while (found >= 0) {
        data[written++] = replacement;
        const qsizetype rest = found + pattern.size();
        found = QStringView(text).indexOf(pattern, rest);
        const qsizetype end = found < 0 ? text.size() : found;
        std::copy(data + rest, data + end, data + written);
        written += end - rest;
    }
    text.truncate(written);
}
