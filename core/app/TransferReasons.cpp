#include "core/app/TransferReasons.h"

#include "shell/L10n.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <cerrno>
#include <system_error>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::size_t mostToTell = 6; ///< more would not fit into the window

bool isAboutRoom(const QString &detail)
{
    for (const int error : {ENOSPC, EDQUOT}) {
        if (detail == qt_error_string(error) ||
            detail == QString::fromLocal8Bit(std::generic_category().message(error)))
            return true;
    }
    return false;
}

QString reasonFor(const QString &path, const QString &detail)
{
    const QFileInfo folder(QFileInfo(path).path());
    if (isAboutRoom(detail))
        return L10n::noRoomOnDisk();
    if (!folder.isDir())
        return L10n::noSuchFolder();
    if (!folder.isWritable() || (QFileInfo::exists(path) && !QFileInfo(path).isWritable()))
        return L10n::notAllowedToWrite();
    return QFileInfo(path).isDir() ? L10n::isFolder() : detail;
}

QString reasonOf(const ImportFailure &failure)
{
    switch (failure.reason) {
    case ImportFailure::Reason::tooLarge:
        return L10n::tooLargeToImport();
    case ImportFailure::Reason::notText:
        return L10n::notTextToImport();
    case ImportFailure::Reason::unknownKind:
        return L10n::unknownKindToImport();
    case ImportFailure::Reason::unreadable:
        break;
    }
    return L10n::cannotRead();
}
} // namespace

QString unwrittenText(const QString &path, const QString &detail)
{
    QString text = L10n::cannotWriteTo() + u'\n' + QDir::toNativeSeparators(path);
    if (const QString reason = reasonFor(path, detail); !reason.isEmpty())
        text += u"\n\n"_s + reason;
    return text;
}

QString failureText(const ExportFailure &failure)
{
    return failure.reason == ExportFailure::Reason::cannotWrite
               ? unwrittenText(failure.path, failure.detail)
               : L10n::cannotMakePage();
}

QString failureText(NotePrinting::Failure failure, const QString &file)
{
    switch (failure) {
    case NotePrinting::Failure::cannotMakePage:
        return L10n::cannotMakePage();
    case NotePrinting::Failure::noSuchPage:
        return L10n::noSuchPage();
    case NotePrinting::Failure::cannotWrite:
        return unwrittenText(file);
    case NotePrinting::Failure::busy:
    case NotePrinting::Failure::cannotPrint:
        break;
    }
    return L10n::printerRefused();
}

QString failureText(const std::vector<ImportFailure> &failures)
{
    QStringList lines;
    for (const ImportFailure &failure : failures) {
        if (std::size_t(lines.size()) == mostToTell && failures.size() > mostToTell + 1) {
            lines << L10n::andMore() + u' ' + QString::number(failures.size() - mostToTell);
            break;
        }
        lines << failure.fileName + u" — "_s + reasonOf(failure);
    }
    return lines.join(u'\n');
}
