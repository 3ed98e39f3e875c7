#include "core/app/Autostart.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStandardPaths>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
/// As an argument of a desktop entry's Exec line, which is escaped twice: as an argument and, like
/// every value, as a string.
QString execArgument(const QString &argument)
{
    static const QRegularExpression plain(u"^[\\w./+:,@=-]+$"_s);
    QString escaped = argument;
    escaped.replace(u'%', u"%%"_s);
    if (!plain.match(argument).hasMatch()) {
        static const QRegularExpression special(u"([\"`$\\\\])"_s);
        escaped.replace(special, u"\\\\1"_s);
        escaped = u'"' + escaped + u'"';
    }
    return escaped.replace(u'\\', u"\\\\"_s).replace(u'\n', u"\\n"_s);
}

/// The program as its user would call it.
QString command(const QString &program)
{
    const QString inPath = QStandardPaths::findExecutable(u"plim"_s);
    const QString canonical = QFileInfo(program).canonicalFilePath();
    const bool isThisOne = !inPath.isEmpty() && QFileInfo(inPath).canonicalFilePath() == canonical;
    return isThisOne ? u"plim"_s : execArgument(program);
}

/// Of the entry's main group; empty when it is not there.
QByteArray value(const QByteArray &entry, const QByteArray &key)
{
    QByteArray group;
    for (const QByteArray &each : entry.split('\n')) {
        const QByteArray line = each.trimmed();
        if (line.startsWith('['))
            group = line;
        else if (const auto sign = line.indexOf('=');
                 group == "[Desktop Entry]" && sign > 0 && line.first(sign).trimmed() == key)
            return line.mid(sign + 1).trimmed();
    }
    return {};
}
} // namespace

Autostart::Autostart(QString program) : m_program(std::move(program)) {}

Autostart Autostart::ofThisProgram()
{
    return Autostart(QCoreApplication::applicationFilePath());
}

bool Autostart::isSupported()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    return true;
#else
    return false;
#endif
}

QString Autostart::file()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/autostart/org.plim.Plim.desktop"_s;
}

bool Autostart::isOn() const
{
    QFile file(Autostart::file());
    // cppcheck-suppress knownConditionTrueFalse ; elsewhere it is not
    if (!isSupported() || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray entry = file.readAll();
    return !value(entry, "Exec").isEmpty() && value(entry, "Hidden") != "true" &&
           value(entry, "X-GNOME-Autostart-enabled") != "false";
}

std::optional<QString> Autostart::setOn(bool isOn) const
{
    // cppcheck-suppress knownConditionTrueFalse ; elsewhere it is not
    if (!isSupported())
        return u"not on this system"_s;
    QFile present(file());
    if (!isOn) {
        if (QFileInfo(file()).isSymLink() || present.exists())
            return present.remove() ? std::nullopt : std::optional(present.errorString());
        return std::nullopt;
    }
    QDir().mkpath(QFileInfo(file()).path());
    QSaveFile saved(file());
    const QByteArray bytes = entry();
    if (!saved.open(QIODevice::WriteOnly) || saved.write(bytes) != bytes.size() || !saved.commit())
        return saved.errorString();
    return std::nullopt;
}

QByteArray Autostart::entry() const
{
    return u"[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Plim\n"
           "Exec=%1 --hidden\n"
           "Icon=org.plim.Plim\n"
           "Terminal=false\n"
           "X-GNOME-Autostart-enabled=true\n"_s.arg(command(m_program))
               .toUtf8();
}
