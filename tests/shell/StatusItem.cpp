#include "tests/shell/StatusItem.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QtEndian>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
const QString itemPath = u"/StatusNotifierItem"_s;
const QString itemInterface = u"org.kde.StatusNotifierItem"_s;
const QString menuInterface = u"com.canonical.dbusmenu"_s;

/// (ia{sv}av)
MenuEntry entryOf(const QDBusArgument &argument)
{
    MenuEntry entry;
    argument.beginStructure();
    argument >> entry.id >> entry.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        entry.children << entryOf(child.variant().value<QDBusArgument>());
    }
    argument.endArray();
    argument.endStructure();
    return entry;
}

QString keysOf(const MenuEntry &entry)
{
    const QVariant shortcut = entry.properties.value(u"shortcut"_s);
    if (!shortcut.canConvert<QDBusArgument>())
        return {};
    const auto presses = qdbus_cast<QList<QStringList>>(shortcut.value<QDBusArgument>());
    return u" ["_s + presses.value(0).join(u'+') + u']';
}

void appendLines(const MenuEntry &menu, const QString &indent, QStringList &lines)
{
    for (const MenuEntry &entry : menu.children) {
        QString mark;
        if (!entry.properties.value(u"toggle-type"_s).toString().isEmpty())
            mark = entry.properties.value(u"toggle-state"_s).toInt() == 1 ? u"* "_s : u"o "_s;
        const bool isLine = entry.properties.value(u"type"_s).toString() == u"separator"_s;
        lines << indent + (isLine ? u"-"_s : mark + entry.label() + keysOf(entry));
        appendLines(entry, indent + u"  "_s, lines);
    }
}
} // namespace

// All calls let the test's own side of the bus be heard meanwhile: the program may be asking, too.

QVariant StatusItem::property(const QString &name) const
{
    auto message = QDBusMessage::createMethodCall(m_service, itemPath,
                                                  u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    message << itemInterface << name;
    const QDBusMessage reply = m_connection.call(message, QDBus::BlockWithGui);
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

// (sa(iiay)ss), of which the third is the title.
QString StatusItem::toolTip() const
{
    const auto argument = property(u"ToolTip"_s).value<QDBusArgument>();
    QString icon;
    QString title;
    argument.beginStructure();
    argument >> icon;
    argument.beginArray();
    while (!argument.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray bytes;
        argument.beginStructure();
        argument >> width >> height >> bytes;
        argument.endStructure();
    }
    argument.endArray();
    argument >> title;
    return title;
}

QList<QImage> StatusItem::pixmaps() const
{
    QList<QImage> images;
    const auto argument = property(u"IconPixmap"_s).value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray bytes;
        argument.beginStructure();
        argument >> width >> height >> bytes;
        argument.endStructure();
        QImage image(width, height, QImage::Format_ARGB32);
        for (qsizetype pixel = 0; pixel < qsizetype(width) * height; ++pixel)
            image.setPixel(int(pixel % width), int(pixel / width),
                           qFromBigEndian<quint32>(bytes.constData() + 4 * pixel));
        images << image;
    }
    argument.endArray();
    return images;
}

QString StatusItem::menuPath() const
{
    return property(u"Menu"_s).value<QDBusObjectPath>().path();
}

MenuEntry StatusItem::menu() const
{
    auto message =
        QDBusMessage::createMethodCall(m_service, menuPath(), menuInterface, u"GetLayout"_s);
    message << 0 << -1 << QStringList();
    const QDBusMessage reply = m_connection.call(message, QDBus::BlockWithGui);
    if (reply.arguments().size() != 2)
        return {};
    return entryOf(reply.arguments().at(1).value<QDBusArgument>());
}

QStringList StatusItem::menuText() const
{
    QStringList lines;
    appendLines(menu(), {}, lines);
    return lines;
}

bool StatusItem::choose(const QString &label) const
{
    std::function<int(const MenuEntry &)> idIn = [&](const MenuEntry &menu) {
        for (const MenuEntry &entry : menu.children) {
            if (entry.label() == label)
                return entry.id;
            if (const int id = idIn(entry))
                return id;
        }
        return 0;
    };
    const int id = idIn(menu());
    if (id == 0)
        return false;
    auto message = QDBusMessage::createMethodCall(m_service, menuPath(), menuInterface, u"Event"_s);
    message << id << u"clicked"_s << QVariant::fromValue(QDBusVariant(QString())) << uint(0);
    m_connection.send(message);
    return true;
}

void StatusItem::send(const QString &method) const
{
    auto message = QDBusMessage::createMethodCall(m_service, itemPath, itemInterface, method);
    message << 0 << 0;
    m_connection.send(message);
}
