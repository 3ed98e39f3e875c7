#include "tests/e2e/XTools.h"

#include <QProcess>

using namespace Qt::StringLiterals;

QString XTools::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(patience);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

void XTools::xdotool(const QStringList &arguments)
{
    run(u"xdotool"_s, arguments);
}

void XTools::type(const QString &text)
{
    xdotool({u"type"_s, u"--delay"_s, u"15"_s, u"--"_s, text});
}

void XTools::press(const QStringList &keys)
{
    xdotool(QStringList{u"key"_s, u"--delay"_s, u"15"_s, u"--"_s} + keys);
}
