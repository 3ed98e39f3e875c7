#include "transfer/TextDecoding.h"

#include "transfer/PlainMarkup.h"

#include <QStringDecoder>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
std::optional<QString> checked(QString text)
{
    if (text.contains(QChar::Null))
        return std::nullopt; // pictures, archives and the like
    text.replace("\r\n"_L1, "\n"_L1);
    text.replace(u'\r', u'\n');
    return withoutControlCharacters(std::move(text));
}

/// The letters ą, ś, ź and their capitals are what Windows-1250 and ISO-8859-2 have in different
/// places.
const char *polishEncoding(const QByteArray &bytes)
{
    qsizetype windows = 0;
    qsizetype iso = 0;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        windows += (byte >= 0x80 && byte <= 0x9f) || byte == 0xb9 || byte == 0xa5 ? 1 : 0;
        iso += byte == 0xb1 || byte == 0xb6 || byte == 0xbc || byte == 0xa1 || byte == 0xa6 ||
                       byte == 0xac
                   ? 1
                   : 0;
    }
    return iso > windows ? "ISO-8859-2" : "windows-1250";
}

/// By its mark or as UTF-8; null when it is neither.
std::optional<QString> unicodeText(const QByteArray &bytes)
{
    // The marks of UTF-32 begin like those of UTF-16, so the encoding is asked for.
    const auto marked = QStringConverter::encodingForData(bytes);
    QStringDecoder decoder(marked.value_or(QStringConverter::Utf8));
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

QString decodedAs(QStringDecoder decoder, const QByteArray &bytes)
{
    return decoder.isValid() ? QString(decoder.decode(bytes)) : QString::fromLatin1(bytes);
}
} // namespace

std::optional<QString> decodedText(const QByteArray &bytes)
{
    if (const std::optional<QString> text = unicodeText(bytes))
        return checked(*text);
    if (bytes.contains('\0'))
        return std::nullopt;
    return checked(decodedAs(QStringDecoder(polishEncoding(bytes)), bytes));
}

std::optional<QString> decodedHtml(const QByteArray &bytes)
{
    if (const std::optional<QString> text = unicodeText(bytes))
        return checked(*text);
    const QByteArray start = bytes.left(1024).toLower();
    if (bytes.contains('\0') || !start.contains("charset") || start.contains("utf-8"))
        return decodedText(bytes);
    return checked(decodedAs(QStringDecoder::decoderForHtml(bytes), bytes));
}
