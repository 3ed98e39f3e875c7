#include "tests/packaging/UnpackedPackage.h"

#include "tests/Patience.h"

#include <QDirIterator>
#include <QFile>
#include <QProcess>

using namespace Qt::StringLiterals;

Said run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForStarted(longEnough) || !process.waitForFinished(5 * longEnough))
        return {-1, program + u": "_s + process.errorString()};
    const bool isNormal = process.exitStatus() == QProcess::NormalExit;
    return {isNormal ? process.exitCode() : -1, QString::fromUtf8(process.readAll())};
}

UnpackedPackage::UnpackedPackage()
{
    const Said said = run(u"dpkg-deb"_s, {u"-x"_s, file(), root()});
    m_isValid = m_directory.isValid() && said.isSilentSuccess();
    if (!m_isValid)
        qWarning("%s: %s (scripts/package makes it)", qPrintable(file()), qPrintable(said.output));
}

QString UnpackedPackage::file() const
{
    const QString architecture = run(u"dpkg"_s, {u"--print-architecture"_s}).output.trimmed();
    return QStringLiteral(PLIM_PACKAGES "/plim_" PLIM_VERSION "_") + architecture + u".deb"_s;
}

QByteArray UnpackedPackage::read(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList UnpackedPackage::files() const
{
    QStringList files;
    QDirIterator all(root(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (all.hasNext())
        files << all.next().mid(root().size() + 1);
    files.sort();
    return files;
}

QString UnpackedPackage::field(const QString &name) const
{
    return run(u"dpkg-deb"_s, {u"-f"_s, file(), name}).output.trimmed();
}
