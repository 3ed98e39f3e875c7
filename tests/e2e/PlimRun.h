#pragma once

#include "tests/ThrowAwayHome.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPoint>
#include <QProcess>
#include <QRect>
#include <QStringList>

/// The built program on the display that scripts/test started, driven as a user drives it.
class PlimRun
{
public:
    /// A home may outlive several runs.
    explicit PlimRun(const ThrowAwayHome &home) : m_home(home) {}
    ~PlimRun();

    /// Starts the program and waits until its window can be seen. On another display when one is given.
    [[nodiscard]] bool open(const QString &display = {});
    /// Clicks "New note" and waits until the editor has it.
    [[nodiscard]] bool addNote();
    /// Clicks a row of the list, from 0, and waits until the editor has that note.
    [[nodiscard]] bool selectRow(int row, const QString &noteID);
    /// In pixels from the window's upper left corner.
    void click(QPoint position) const;
    void doubleClick(QPoint position) const;
    /// Moves the pointer there, with no button down.
    void point(QPoint position) const;
    /// Presses the left button at one place and lets go at another.
    void drag(QPoint from, QPoint to) const;
    /// On the screen, in pixels.
    [[nodiscard]] QRect geometry() const;
    /// Real key events; letters that no key has are put on one for the moment.
    void type(const QString &text) const;
    /// Keys in the X server's names, "ctrl+z".
    void press(const QStringList &keys) const;

    void sendSignal(int signal) const;
    /// Asks the window manager to close the window.
    void closeWindow() const;
    /// Waits for the end; the exit code, or -1 when it did not end or crashed.
    [[nodiscard]] int exitCode();
    [[nodiscard]] bool isRunning() const { return m_process.state() == QProcess::Running; }
    [[nodiscard]] qint64 processId() const { return m_process.processId(); }
    /// Process id of the web engine's renderer, or 0.
    [[nodiscard]] qint64 rendererId() const;

    /// Everything said so far, each line with its kind in front: "warning: …".
    [[nodiscard]] QString said();
    [[nodiscard]] bool waitUntilSaid(const QString &text, int count = 1);
    /// Lines that warn or worse.
    [[nodiscard]] QStringList warnings();

    [[nodiscard]] QJsonArray notesOnDisk() const;
    [[nodiscard]] QString bodyOnDisk(int index = 0) const;

private:
    void xdotool(const QStringList &arguments) const;

    const ThrowAwayHome &m_home;
    QProcess m_process;
    QString m_window;
    QString m_display;
    QString m_said;
};

/// A note as the file holds it.
[[nodiscard]] QJsonObject storedNote(const QString &id, const QString &body);
