#include "transfer/ExportedPictures.h"

#include "transfer/LinkAddress.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QUrl>

#include <utility>

using namespace Qt::Literals::StringLiterals;

ExportedPictures::ExportedPictures(const QString &imagesDirectory, QString folderName)
    : m_root(QFileInfo(imagesDirectory).canonicalFilePath()), m_folderName(std::move(folderName))
{
}

QString ExportedPictures::addressOf(const QString &source)
{
    if (const auto known = m_addresses.constFind(source); known != m_addresses.cend())
        return *known;
    QString address;
    if (const std::optional<Picture> picture = pictureOf(source)) {
        m_pending.push_back(*picture);
        address = QString::fromLatin1(QUrl::toPercentEncoding(m_folderName) + '/' +
                                      QUrl::toPercentEncoding(picture->name));
    }
    m_addresses.insert(source, address);
    return address;
}

std::optional<QString> ExportedPictures::copyTo(const QString &directory)
{
    for (const Picture &picture : std::exchange(m_pending, {})) {
        QDir().mkpath(directory + u'/' + m_folderName);
        QFile target(directory + u'/' + m_folderName + u'/' + picture.name);
        if (!picture.path.isEmpty()) {
            QFile source(picture.path);
            if (!source.copy(target.fileName()))
                return source.errorString();
        } else if (!target.open(QIODevice::WriteOnly) ||
                   target.write(picture.bytes) != picture.bytes.size() || !target.flush()) {
            return target.errorString();
        }
    }
    return std::nullopt;
}

std::optional<ExportedPictures::Picture> ExportedPictures::pictureOf(const QString &source)
{
    const QString scheme = addressScheme(source);
    if (scheme == "data"_L1) {
        const qsizetype comma = source.indexOf(u',');
        const QByteArray bytes = QByteArray::fromBase64(source.mid(comma + 1).toLatin1());
        const QMimeType type = QMimeDatabase().mimeTypeForData(bytes);
        if (!source.left(comma).endsWith(";base64"_L1) || !type.name().startsWith("image/"_L1))
            return std::nullopt;
        return Picture{
            u"picture-%1.%2"_s.arg(++m_inlineCount).arg(type.preferredSuffix()), {}, bytes};
    }
    const QUrl url(source);
    if (!url.isLocalFile() || !url.host().isEmpty() || m_root.isEmpty())
        return std::nullopt;
    const QFileInfo file(QFileInfo(url.toLocalFile()).canonicalFilePath());
    if (!file.isFile() || !file.filePath().startsWith(m_root + u'/'))
        return std::nullopt;
    // Below the images directory there may be folders; their names become part of the file's.
    QString name = file.filePath().mid(m_root.size() + 1);
    name.replace(u'/', u'-');
    return Picture{name, file.filePath(), {}};
}
