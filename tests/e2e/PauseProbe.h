#pragma once

#include <QProcess>
#include <QString>

/// Asks the main window of a program, again and again, whether it attends to its events.
class PauseProbe
{
public:
    /// Waits until the process has its main window, and that has answered once.
    explicit PauseProbe(qint64 processId);
    ~PauseProbe();
    Q_DISABLE_COPY_MOVE(PauseProbe)

    /// Ends the asking and returns the longest time without an answer, in seconds of a machine that
    /// has nothing else to do; -1 when there never was an answer.
    [[nodiscard]] double longestPause();

private:
    QProcess m_process;
    QByteArray m_said;
};
