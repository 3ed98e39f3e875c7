#include "tests/e2e/PlimRun.h"

#include <QHash>
#include <QJsonDocument>
#include <QTest>

#include <algorithm>
#include <csignal>

#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace
{
using XTools::patience;
const QPoint newNoteButton(415, 24);
const QRect withinSearch(280, 56, 100, 16);
const QRect besideSearch(280, 42, 100, 4);

QPoint rowCentre(int row)
{
    return {220, 120 + 70 * row};
}

QPoint stickyButton(int row)
{
    return {357, rowCentre(row).y()};
}

double meanGrey(const QImage &image)
{
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += qGray(image.pixel(x, y));
    }
    return sum / std::max(1, image.width() * image.height());
}
} // namespace

PlimRun::~PlimRun()
{
    if (!isRunning())
        return;
    m_process.kill();
    m_process.waitForFinished();
}

QProcessEnvironment PlimRun::environment(const ThrowAwayHome &home, const QString &display)
{
    auto environment = home.environment();
    environment.insert(u"DISPLAY"_s, display);
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    environment.insert(u"QT_MESSAGE_PATTERN"_s, u"%{type}: %{category}: %{message}"_s);
    environment.insert(u"QT_LOGGING_RULES"_s, u"plim.editor.debug=true;plim.sticky.debug=true"_s);
    return environment;
}

void PlimRun::endWithTest(QProcess &process)
{
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

QString PlimRun::program()
{
    return QStringLiteral(PLIM_PROGRAM);
}

bool PlimRun::open(const QString &display)
{
    m_display = display.isEmpty() ? qEnvironmentVariable("DISPLAY") : display;
    if (m_display.isEmpty()) {
        qWarning("There is no display: scripts/test starts one");
        return false;
    }
    m_said.clear();
    QProcessEnvironment all = environment(m_home, m_display);
    all.insert(m_variables);
    m_process.setProcessEnvironment(all);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    endWithTest(m_process);
    QStringList command = m_starter + QStringList{program()} + m_arguments;
    const QString first = command.takeFirst();
    m_process.start(first, command);
    if (!m_process.waitForStarted(patience))
        return false;
    qputenv("DISPLAY", m_display.toUtf8());
    m_server = std::make_unique<XWitness>(m_display.toUtf8());
    const bool isThere = QTest::qWaitFor([this] { return mainWindow().id() != XCB_NONE || !isRunning(); }, patience);
    if (!isThere || !isRunning()) {
        qWarning("no window; the program said: %s", qPrintable(said()));
        return false;
    }
    if (!display.isEmpty()) // elsewhere there may be no window manager to ask
        return true;
    return mainWindow().waitUntilActive();
}

bool PlimRun::addNote()
{
    const auto count = said().count("plim.editor: shown"_L1);
    click(newNoteButton);
    return waitUntilSaid(u"plim.editor: shown"_s, int(count) + 1);
}

bool PlimRun::selectRow(int row, const QString &noteID)
{
    const QString shown = u"plim.editor: shown \"%1\""_s.arg(noteID.toLower());
    const auto count = said().count(shown);
    click(rowCentre(row));
    return waitUntilSaid(shown, int(count) + 1);
}

bool PlimRun::openSticky(int row, const QString &noteID)
{
    const QString shown = u"plim.editor: shown \"%1\""_s.arg(noteID.toLower());
    const auto count = said().count(shown);
    const auto stickyCount = stickies().size();
    point(rowCentre(row));
    click(stickyButton(row));
    const auto isOpen = [&] {
        return stickies().size() == stickyCount + 1 && stickies().constLast().isActive();
    };
    return waitUntilSaid(shown, int(count) + 1) && QTest::qWaitFor(isOpen, patience);
}

void PlimRun::click(QPoint position) const
{
    mainWindow().click(position);
}

void PlimRun::doubleClick(QPoint position) const
{
    mainWindow().doubleClick(position);
}

void PlimRun::point(QPoint position) const
{
    mainWindow().point(position);
}

void PlimRun::drag(QPoint from, QPoint to) const
{
    mainWindow().drag(from, to);
}

void PlimRun::pull(QPoint from, QPoint to) const
{
    mainWindow().pull(from, to);
}

QRect PlimRun::geometry() const
{
    return mainWindow().geometry();
}

QList<xcb_window_t> PlimRun::windows() const
{
    QList<xcb_window_t> windows = m_server->visibleWindows();
    windows.removeIf([this](xcb_window_t window) {
        return m_server->property(window, "_NET_WM_PID").value(0) != quint32(processId());
    });
    return windows;
}

WindowOnScreen PlimRun::mainWindow() const
{
    for (const xcb_window_t window : windows()) {
        if (m_server->text(window, "WM_WINDOW_ROLE") == "main")
            return {*m_server, window};
    }
    return {*m_server, XCB_NONE};
}

QList<StickyOnScreen> PlimRun::stickies() const
{
    QList<StickyOnScreen> stickies;
    const QList<xcb_window_t> onScreen = windows();
    for (const xcb_window_t window : m_server->property(m_server->root(), "_NET_CLIENT_LIST")) {
        if (onScreen.contains(window) && m_server->text(window, "WM_WINDOW_ROLE") == "sticky")
            stickies.emplaceBack(*m_server, window);
    }
    return stickies;
}

std::optional<WindowOnScreen> PlimRun::optionsOf(const WindowOnScreen &window) const
{
    for (const xcb_window_t each : windows()) {
        if (m_server->property(each, "WM_TRANSIENT_FOR").value(0) == window.id()
            && m_server->names(each, "_NET_WM_WINDOW_TYPE").contains("_NET_WM_WINDOW_TYPE_DIALOG"))
            return WindowOnScreen(*m_server, each);
    }
    return std::nullopt;
}

std::optional<WindowOnScreen> PlimRun::menu() const
{
    const xcb_window_t main = mainWindow().id();
    for (const xcb_window_t window : m_server->visibleWindows()) {
        if (m_server->property(window, "WM_TRANSIENT_FOR").value(0) == main &&
            m_server->names(window, "_NET_WM_WINDOW_TYPE").contains("_NET_WM_WINDOW_TYPE_NORMAL"))
            return WindowOnScreen(*m_server, window);
    }
    return std::nullopt;
}

WindowOnScreen PlimRun::windowTitled(const QString &title) const
{
    for (const xcb_window_t window : windows()) {
        if (m_server->text(window, "_NET_WM_NAME") == title.toUtf8())
            return {*m_server, window};
    }
    return {*m_server, XCB_NONE};
}

bool PlimRun::showsHelpTip() const
{
    const QList<xcb_window_t> onScreen = windows();
    return std::ranges::any_of(onScreen, [this](xcb_window_t window) {
        return m_server->names(window, "_NET_WM_WINDOW_TYPE").contains("_NET_WM_WINDOW_TYPE_TOOLTIP");
    });
}

void PlimRun::sendSignal(int signal) const
{
    ::kill(pid_t(m_process.processId()), signal);
}

bool PlimRun::isSearching() const
{
    // Of white, over what is beside it: 8 % without the keyboard, 12 % with it.
    constexpr double between = 0.1;
    const double beside = meanGrey(mainWindow().pixels(besideSearch));
    const double within = meanGrey(mainWindow().pixels(withinSearch));
    return (within - beside) / (255 - beside) > between;
}

bool PlimRun::waitUntilWriting(int index) const
{
    const QString before = bodyOnDisk(index);
    return pressUntil(u"w"_s, [&] { return bodyOnDisk(index) != before; });
}

void PlimRun::closeWindow() const
{
    mainWindow().close();
}

int PlimRun::exitCode()
{
    if (!QTest::qWaitFor([this] { return !isRunning(); }, patience))
        return -1;
    const int code = m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    if (code == 0)
        return 0;
    qInfo("%s", qPrintable(said())); // a sanitizer's report, above all
    // That of leaks fails by itself now and then, when a thread of the web engine comes or goes while
    // it looks. It has found nothing then.
    return said().contains("LeakSanitizer has encountered a fatal error"_L1) ? 0 : code;
}

// The renderers are the processes below the two that the engine keeps ready to become one.
QList<qint64> PlimRun::rendererIds() const
{
    QHash<qint64, qint64> parents;
    const QStringList lines = XTools::run(u"ps"_s, {u"-C"_s, u"QtWebEngineProcess"_s, u"-o"_s, u"pid=,ppid="_s}).split(u'\n');
    for (const QString &line : lines) {
        const QStringList ids = line.simplified().split(u' ');
        parents.insert(ids.value(0).toLongLong(), ids.value(1).toLongLong());
    }
    QList<qint64> renderers;
    for (auto process = parents.cbegin(); process != parents.cend(); ++process) {
        if (parents.value(process.value()) == processId())
            renderers << process.key();
    }
    return renderers;
}

QString PlimRun::said()
{
    m_said += QString::fromUtf8(m_process.readAll());
    return m_said;
}

bool PlimRun::waitUntilSaid(const QString &text, int count)
{
    return QTest::qWaitFor([&] { return said().count(text) >= count; }, patience);
}

QStringList PlimRun::warnings()
{
    QStringList lines;
    for (const QString &line : said().split(u'\n')) {
        if (line.startsWith("warning:"_L1) || line.startsWith("critical:"_L1) || line.startsWith("fatal:"_L1))
            lines.push_back(line);
    }
    return lines;
}

QJsonArray PlimRun::notesOnDisk() const
{
    return QJsonDocument::fromJson(m_home.read(u"data/Plim/notes.json"_s)).array();
}

QString PlimRun::bodyOnDisk(int index) const
{
    return notesOnDisk().at(index).toObject().value("body"_L1).toString();
}
