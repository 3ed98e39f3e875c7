#include "transfer/ImportedPictures.h"

#include "core/ImageStore.h"
#include "transfer/LinkAddress.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMimeDatabase>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr qint64 largestPicture = 20LL * 1024 * 1024;

/// The file that a picture's address names, if that lies where the document may point to.
QString localFile(const QString &address, const QString &folder)
{
    const QString scheme = addressScheme(address);
    const QUrl url(address);
    QString path;
    if (scheme == "file"_L1 && url.host().isEmpty())
        path = url.toLocalFile();
    else if (scheme.isEmpty() && !address.startsWith(u'/'))
        path = folder + u'/' + QUrl::fromPercentEncoding(url.path(QUrl::FullyEncoded).toUtf8());
    const QString file = path.isEmpty() ? QString() : QFileInfo(path).canonicalFilePath();
    const QString root = QFileInfo(folder).canonicalFilePath();
    const bool isBelow =
        !root.isEmpty() && file.startsWith(root.endsWith(u'/') ? root : root + u'/');
    return isBelow && QFileInfo(file).isFile() ? file : QString();
}

/// The address of a copy in the images directory; empty when it is no picture, or cannot be copied.
QString storedFile(const QString &path, const QString &imagesDirectory)
{
    QFile file(path);
    if (file.size() > largestPicture || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    const QMimeType type = QMimeDatabase().mimeTypeForData(bytes);
    if (!type.name().startsWith("image/"_L1) || type.preferredSuffix().isEmpty())
        return {};
    const auto url = storeImageData(bytes, type.preferredSuffix(), imagesDirectory);
    return url ? url->toString(QUrl::FullyEncoded) : QString();
}

QString storedPicture(const QString &source, const QString &folder, const QString &imagesDirectory)
{
    if (addressScheme(source) == "data"_L1) {
        const auto url = storeInlineImage(source, imagesDirectory);
        return url ? url->toString(QUrl::FullyEncoded) : QString();
    }
    const QString path = localFile(source, folder);
    return path.isEmpty() ? QString() : storedFile(path, imagesDirectory);
}

void becomeWords(Inline &part)
{
    const QString scheme = addressScheme(part.source);
    const bool isOfWeb = scheme == "http"_L1 || scheme == "https"_L1;
    if (isOfWeb && part.formats.link.isEmpty())
        part.formats.link = part.source;
    if (isOfWeb && part.text.isEmpty())
        part.text = part.source.simplified();
    part.kind = Inline::Kind::text;
    part.source.clear();
}
} // namespace

NoteDocument withImportedPictures(NoteDocument document, const QString &folder,
                                  const QString &imagesDirectory)
{
    QHash<QString, QString> stored; // the same picture twice is one file
    for (Block &block : document.blocks) {
        bool hasWordsInstead = false;
        for (Inline &part : block.inlines) {
            if (part.kind != Inline::Kind::picture)
                continue;
            auto known = stored.constFind(part.source);
            if (known == stored.cend())
                known =
                    stored.insert(part.source, storedPicture(part.source, folder, imagesDirectory));
            if (known->isEmpty()) {
                becomeWords(part);
                hasWordsInstead = true;
            } else {
                part.source = *known;
            }
        }
        if (hasWordsInstead)
            block.inlines = normalized(std::move(block.inlines));
    }
    return document;
}
