#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <QSettings>
#include <QString>
#include <QTemporaryDir>

#include <array>
#include <utility>

/// A home directory of a test's own: settings, data and documents lie in it, and nothing of the
/// user's is read or written.
class ThrowAwayHome
{
public:
    ThrowAwayHome()
    {
        for (const auto &[name, value] : variables())
            qputenv(name, QFile::encodeName(value));
        QDir().mkpath(documents());
        // The settings remember their directories from the first time they are asked for.
        for (const auto format : {QSettings::NativeFormat, QSettings::IniFormat}) {
            QSettings::setPath(format, QSettings::UserScope, path(QStringLiteral(".config")));
            QSettings::setPath(format, QSettings::SystemScope, path(QStringLiteral("etc")));
        }
        QCoreApplication::setOrganizationName(QStringLiteral("Plim"));
        QCoreApplication::setApplicationName(QStringLiteral("Plim"));
    }

    [[nodiscard]] QString path(const QString &name) const
    {
        return m_directory.path() + u'/' + name;
    }
    [[nodiscard]] QString documents() const { return path(QStringLiteral("Documents")); }
    [[nodiscard]] QString data() const { return path(QStringLiteral("data/Plim")); }

    /// Null when there is no such file.
    [[nodiscard]] QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// For a program started by the test: this home, and no display of any kind.
    [[nodiscard]] QProcessEnvironment environment() const
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const QString &name :
             {QStringLiteral("DISPLAY"), QStringLiteral("WAYLAND_DISPLAY"),
              QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("LANG"), QStringLiteral("LANGUAGE"),
              QStringLiteral("LC_ALL"), QStringLiteral("LC_MESSAGES")})
            environment.remove(name);
        for (const auto &[name, value] : variables())
            environment.insert(QString::fromLatin1(name), value);
        return environment;
    }

private:
    [[nodiscard]] std::array<std::pair<const char *, QString>, 6> variables() const
    {
        return {{{"HOME", m_directory.path()},
                 {"XDG_CONFIG_HOME", path(QStringLiteral(".config"))},
                 {"XDG_CONFIG_DIRS", path(QStringLiteral("etc"))},
                 {"XDG_DATA_HOME", path(QStringLiteral("data"))},
                 {"XDG_CACHE_HOME", path(QStringLiteral(".cache"))},
                 {"XDG_STATE_HOME", path(QStringLiteral(".state"))}}};
    }

    QTemporaryDir m_directory;
};
