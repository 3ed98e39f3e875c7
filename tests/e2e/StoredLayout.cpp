#include "tests/e2e/StoredLayout.h"

#include "tests/e2e/StickyOnScreen.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto key = "stickyLayout.v1"_L1;
} // namespace

void StoredLayout::write(const QByteArray &text) const
{
    QSettings settings(m_home.path(u".config/Plim/Plim.conf"_s), QSettings::IniFormat);
    settings.setValue(key, text);
}

// From a copy: the test's process remembers what was in a file that it has read once.
QByteArray StoredLayout::read() const
{
    const QTemporaryDir folder;
    const QString copy = folder.filePath(u"Plim.conf"_s);
    QFile::copy(m_home.path(u".config/Plim/Plim.conf"_s), copy);
    return QSettings(copy, QSettings::IniFormat).value(key).toByteArray();
}

QStringList StoredLayout::frames() const
{
    QStringList frames;
    for (const QJsonValue entry : QJsonDocument::fromJson(read()).array())
        frames << frameText(entry["x"_L1].toDouble(), entry["y"_L1].toDouble(),
                            entry["width"_L1].toDouble(), entry["height"_L1].toDouble());
    return frames;
}

QStringList StoredLayout::noteIDs() const
{
    QStringList noteIDs;
    for (const QJsonValue entry : QJsonDocument::fromJson(read()).array())
        noteIDs << entry["noteID"_L1].toString().toLower();
    return noteIDs;
}

QByteArray StoredLayout::entry(const QString &noteID, double x, double y, double width,
                               double height)
{
    return QJsonDocument(QJsonObject{{u"noteID"_s, noteID},
                                     {u"x"_s, x},
                                     {u"y"_s, y},
                                     {u"width"_s, width},
                                     {u"height"_s, height}})
        .toJson(QJsonDocument::Compact);
}
