#pragma once

#include "tests/ThrowAwayHome.h"
#include "tests/e2e/StickyOnScreen.h"
#include "tests/e2e/XTools.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPoint>
#include <QProcess>
#include <QRect>
#include <QStringList>

#include <memory>
#include <optional>

/// The built program on the display that scripts/test started, driven as a user drives it.
class PlimRun
{
public:
    /// A home may outlive several runs.
    explicit PlimRun(const ThrowAwayHome &home, const QStringList &arguments = {})
        : m_home(home), m_arguments(arguments)
    {
    }
    ~PlimRun();

    /// In which the program runs in that home, for a run that the test itself starts.
    [[nodiscard]] static QProcessEnvironment environment(const ThrowAwayHome &home,
                                                         const QString &display);
    [[nodiscard]] static QString program();
    /// Before it starts: a test that crashes leaves no window behind, which would lie in the next
    /// one's way.
    static void endWithTest(QProcess &process);

    /// Of the environment in which the program will be started.
    void setVariable(const QString &name, const QString &value) { m_variables.insert(name, value); }
    /// A command that the program is started by, and whose process it becomes.
    void setStarter(const QStringList &command) { m_starter = command; }
    /// Starts the program and waits until its main window can be seen. On another display when one
    /// is given.
    [[nodiscard]] bool open(const QString &display = {});
    /// Clicks "New note" and waits until the editor has it.
    [[nodiscard]] bool addNote();
    /// Clicks a row of the list, from 0, and waits until the editor has that note.
    [[nodiscard]] bool selectRow(int row, const QString &noteID);
    /// Clicks a row's sticky button and waits until its editor has the note.
    [[nodiscard]] bool openSticky(int row, const QString &noteID);
    /// In pixels from the main window's upper left corner.
    void click(QPoint position) const;
    void doubleClick(QPoint position) const;
    /// Moves the pointer there, with no button down.
    void point(QPoint position) const;
    /// Presses the left button at one place and lets go at another.
    void drag(QPoint from, QPoint to) const;
    /// The same where the window itself follows.
    void pull(QPoint from, QPoint to) const;
    /// On the screen, in pixels.
    [[nodiscard]] QRect geometry() const;
    void type(const QString &text) const { XTools::type(text); }
    void press(const QStringList &keys) const { XTools::press(keys); }
    /// For a key that comes right after a window got the keyboard: the program may learn of that
    /// later, and the key be lost. Pressed again only when it has come to nothing for long.
    template <typename Condition>
    [[nodiscard]] bool pressUntil(const QString &key, Condition isDone) const
    {
        constexpr int tries = 4;
        for (int attempt = 0; attempt < tries; ++attempt) {
            press({key});
            if (QTest::qWaitFor(isDone, XTools::patience / tries))
                return true;
        }
        return false;
    }
    /// Takes the keyboard to the search by its key.
    [[nodiscard]] bool goToSearch() const
    {
        return pressUntil(QStringLiteral("ctrl+f"), [this] { return isSearching(); });
    }
    /// The search has the keyboard, as its colour tells.
    [[nodiscard]] bool isSearching() const;
    /// Writes a word until it arrives in that note's file: what comes next arrives there, too.
    [[nodiscard]] bool waitUntilWriting(int index) const;

    [[nodiscard]] const XWitness &server() const { return *m_server; }
    /// Nobody's window while there is none on the screen.
    [[nodiscard]] WindowOnScreen mainWindow() const;
    /// Those on the screen, in the order in which they came up.
    [[nodiscard]] QList<StickyOnScreen> stickies() const;
    /// The options of that window, while they are open.
    [[nodiscard]] std::optional<WindowOnScreen> optionsOf(const WindowOnScreen &window) const;
    /// The main window's menu that is open; the outer one, when there is one in it.
    [[nodiscard]] std::optional<WindowOnScreen> menu() const;
    /// Nobody's window while there is none of that title on the screen.
    [[nodiscard]] WindowOnScreen windowTitled(const QString &title) const;
    [[nodiscard]] bool showsHelpTip() const;

    void sendSignal(int signal) const;
    /// Asks the window manager to close the main window.
    void closeWindow() const;
    /// Waits for the end; the exit code, or -1 when it did not end or crashed.
    [[nodiscard]] int exitCode();
    [[nodiscard]] bool isRunning() const { return m_process.state() == QProcess::Running; }
    [[nodiscard]] qint64 processId() const { return m_process.processId(); }
    /// Process id of the web engine's renderer, or 0.
    [[nodiscard]] qint64 rendererId() const { return rendererIds().value(0); }
    [[nodiscard]] QList<qint64> rendererIds() const; ///< of all of them

    /// Everything said so far, each line with its kind in front: "warning: …".
    [[nodiscard]] QString said();
    [[nodiscard]] bool waitUntilSaid(const QString &text, int count = 1);
    /// Lines that warn or worse.
    [[nodiscard]] QStringList warnings();

    [[nodiscard]] QJsonArray notesOnDisk() const;
    [[nodiscard]] QString bodyOnDisk(int index = 0) const;

private:
    [[nodiscard]] QList<xcb_window_t> windows() const;

    const ThrowAwayHome &m_home;
    QStringList m_arguments, m_starter;
    QProcessEnvironment m_variables;
    QProcess m_process;
    std::unique_ptr<XWitness> m_server;
    QString m_display;
    QString m_said;
};
