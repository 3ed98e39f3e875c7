#include "tests/fuzz/FuzzTarget.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

// What libFuzzer asks for.
// NOLINTNEXTLINE(readability-non-const-parameter)
int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &message) {
        if (type == QtFatalMsg) {
            std::fprintf(stderr, "%s\n", qPrintable(message));
            std::abort();
        }
    });
    static QCoreApplication application(*argc, *argv);
    // What the page has the program print is no news here.
    return std::freopen("/dev/null", "w", stdout) ? 0 : 1;
}

void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

QByteArray bytesOf(const std::uint8_t *data, std::size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
}

QString textOf(const std::uint8_t *data, std::size_t size)
{
    QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    for (QChar &c : text) {
        if (c == u'\uE000')
            c = QChar(0xD800);
        else if (c == u'\uE001')
            c = QChar(0xDC00);
    }
    return text;
}

const QString &scratchFolder()
{
    static const QTemporaryDir folder;
    static const QString path = folder.path();
    return path;
}

void emptyScratchFolder()
{
    QDir folder(scratchFolder());
    for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden))
        folder.remove(name);
}
