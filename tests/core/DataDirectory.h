#pragma once

#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

/// A data directory of a test's own.
class DataDirectory
{
public:
    [[nodiscard]] QString path() const { return m_temporary.path() + QStringLiteral("/Plim"); }
    [[nodiscard]] QString path(const QString &name) const { return path() + u'/' + name; }

    void write(const QString &name, const QByteArray &bytes) const
    {
        QDir().mkpath(path());
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("The test's own file %s could not be written", qPrintable(name));
    }
    /// Null when there is no such file.
    [[nodiscard]] QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    [[nodiscard]] bool has(const QString &name) const { return QFile::exists(path(name)); }
    void remove(const QString &name) const { QFile::remove(path(name)); }
    /// Every file and directory in it but `images`, by name.
    [[nodiscard]] QStringList names() const
    {
        QStringList names = QDir(path()).entryList(
            QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System, QDir::Name);
        names.removeOne(QStringLiteral("images"));
        return names;
    }

private:
    QTemporaryDir m_temporary;
};
