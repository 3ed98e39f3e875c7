#pragma once

#include "tests/Patience.h"
#include "tests/ThrowAwayHome.h"

#include <QProcess>
#include <QStringList>

/// One run of the shell's probe in a home of its own, from start to end.
struct ShellProbe {
    ThrowAwayHome home;
    QProcessEnvironment environment = home.environment();
    QString directory = home.path(QString()); ///< where it is started from
    QStringList lines;                        ///< what it wrote to standard output
    QString log;                              ///< what it wrote to standard error

    /// False unless it ran to a good end.
    [[nodiscard]] bool run(const QString &program, const QStringList &arguments)
    {
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("QT_FORCE_STDERR_LOGGING"), QStringLiteral("1"));
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(directory);
        process.start(program, arguments);
        if (!process.waitForFinished(longEnough))
            return false;
        lines = QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
        log = QString::fromUtf8(process.readAllStandardError());
        return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }
};
