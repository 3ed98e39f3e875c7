#include "core/ImageStore.h"

#include "core/CoreLog.h"
#include "core/HtmlTokens.h"
#include "core/Note.h"

#include <QRegularExpression>
#include <QSaveFile>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QRegularExpression &inlineImageRegex()
{
    // A media type holds no quote; without saying so, one broken picture would swallow everything
    // up to the next sound one.
    static const QRegularExpression regex(
        uR"(src\s*=\s*["']data:image/[^;"']+;base64,[^"']+["'])"_s);
    return regex;
}

QString fileExtension(QStringView match)
{
    struct Kind {
        QLatin1StringView mark, extension;
    };
    for (const Kind kind : {Kind{"jpeg"_L1, "jpg"_L1}, Kind{"jpg"_L1, "jpg"_L1},
                            Kind{"gif"_L1, "gif"_L1}, Kind{"webp"_L1, "webp"_L1}}) {
        if (match.contains(kind.mark, Qt::CaseInsensitive))
            return kind.extension;
    }
    return u"png"_s;
}

constexpr QLatin1StringView payloadMark = "base64,"_L1;

std::optional<QByteArray> decoded(QStringView payload)
{
    payload = payload.trimmed();
    // Qt takes unpadded text too, but a picture that lost its end is better left where it is.
    constexpr qsizetype groupLength = 4;
    if (payload.isEmpty() || payload.size() % groupLength != 0)
        return std::nullopt;
    auto result = QByteArray::fromBase64Encoding(
        payload.toUtf8(), QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!result)
        return std::nullopt;
    return std::move(*result);
}

std::optional<QByteArray> decodedPayload(QStringView match)
{
    QStringView payload = match.sliced(match.indexOf(payloadMark) + payloadMark.size());
    const qsizetype doubleQuote = payload.lastIndexOf(u'"');
    payload.truncate(doubleQuote >= 0 ? doubleQuote : payload.lastIndexOf(u'\''));
    return decoded(payload);
}

/// Adds a tag with its inline pictures moved out; true when there were any.
bool appendMigrated(QString &html, const HtmlToken &token, const QString &imagesDirectory)
{
    const QString tag = token.source.toString();
    const std::vector<HtmlAttribute> attributes = htmlAttributes(token);
    auto attribute = attributes.begin();
    // What is an attribute of its own, and not words in another's value: other quotes would end
    // that.
    const auto isAttribute = [&](qsizetype start, qsizetype end) {
        while (attribute != attributes.end() && attribute->end < end)
            ++attribute;
        if (attribute == attributes.end() || attribute->end != end || start < attribute->start)
            return false;
        const qsizetype nameStart = attribute->name.data() - token.source.data();
        return start < nameStart + attribute->name.size();
    };
    bool changed = false;
    qsizetype copied = 0;
    for (auto it = inlineImageRegex().globalMatch(tag); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        if (!isAttribute(match.capturedStart(), match.capturedEnd()))
            continue;
        const std::optional<QByteArray> data = decodedPayload(match.capturedView());
        if (!data)
            continue;
        const std::optional<QUrl> url =
            storeImageData(*data, fileExtension(match.capturedView()), imagesDirectory);
        if (!url)
            continue;
        html += QStringView(tag).sliced(copied, match.capturedStart() - copied);
        html += u"src=\""_s + url->toString(QUrl::FullyEncoded).toHtmlEscaped() + u'"';
        copied = match.capturedEnd();
        changed = true;
    }
    html += QStringView(tag).sliced(copied);
    return changed;
}
} // namespace

MigratedHTML migrateImages(const QString &html, const QString &imagesDirectory)
{
    constexpr QLatin1StringView mark = "data:image/"_L1;
    if (!html.contains(mark))
        return {html, false};
    MigratedHTML migrated;
    migrated.html.reserve(html.size());
    for (const HtmlToken &token : htmlTokens(html)) { // only in tags: words may speak of sources
        if (token.isTag() && token.source.contains(mark))
            migrated.changed |= appendMigrated(migrated.html, token, imagesDirectory);
        else
            migrated.html += token.source;
    }
    return migrated;
}

std::optional<QUrl> storeInlineImage(const QString &address, const QString &imagesDirectory)
{
    const qsizetype mark = address.indexOf(payloadMark);
    if (!address.startsWith("data:image/"_L1) || mark < 0 || imagesDirectory.isEmpty())
        return std::nullopt;
    const std::optional<QByteArray> data =
        decoded(QStringView(address).sliced(mark + payloadMark.size()));
    if (!data)
        return std::nullopt;
    return storeImageData(*data, fileExtension(QStringView(address).first(mark)), imagesDirectory);
}

std::optional<QUrl> storeImageData(const QByteArray &data, const QString &extension,
                                   const QString &imagesDirectory)
{
    const QString path =
        imagesDirectory + u'/' + uuidText(QUuid::createUuid()) + u'.' + extension.toLower();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.flush() ||
        !file.commit()) { // the commit alone takes a part for the whole
        qCWarning(plimCore).noquote() << u"Failed to store image: "_s + file.errorString();
        return std::nullopt;
    }
    return QUrl::fromLocalFile(path);
}
