#include "tests/e2e/PlimRun.h"

#include <QHash>
#include <QJsonDocument>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace
{
constexpr int patience = 30'000; // ms
const QPoint newNoteButton(415, 24);

QPoint rowCentre(int row)
{
    return {220, 120 + 70 * row};
}

QString output(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(patience);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}
} // namespace

PlimRun::~PlimRun()
{
    if (!isRunning())
        return;
    m_process.kill();
    m_process.waitForFinished();
}

bool PlimRun::open(const QString &display)
{
    m_display = display.isEmpty() ? qEnvironmentVariable("DISPLAY") : display;
    if (m_display.isEmpty()) {
        qWarning("There is no display: scripts/test starts one");
        return false;
    }
    m_said.clear();
    auto environment = m_home.environment();
    environment.insert(u"DISPLAY"_s, m_display);
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    environment.insert(u"QT_MESSAGE_PATTERN"_s, u"%{type}: %{category}: %{message}"_s);
    environment.insert(u"QT_LOGGING_RULES"_s, u"plim.editor.debug=true"_s);
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(QStringLiteral(PLIM_PROGRAM), QStringList());
    if (!m_process.waitForStarted(patience))
        return false;
    const bool isThere = QTest::qWaitFor([this] {
        qputenv("DISPLAY", m_display.toUtf8());
        m_window = output(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Plim$"_s});
        return !m_window.isEmpty() || !isRunning();
    }, patience);
    if (!isThere || m_window.isEmpty()) {
        qWarning("no window; the program said: %s", qPrintable(said()));
        return false;
    }
    if (display.isEmpty()) // elsewhere there may be no window manager to ask
        xdotool({u"windowactivate"_s, u"--sync"_s, m_window});
    return true;
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

void PlimRun::click(QPoint position) const
{
    xdotool({u"mousemove"_s, u"--window"_s, m_window, QString::number(position.x()), QString::number(position.y()), u"click"_s, u"1"_s});
}

void PlimRun::doubleClick(QPoint position) const
{
    point(position);
    xdotool({u"click"_s, u"--repeat"_s, u"2"_s, u"--delay"_s, u"60"_s, u"1"_s});
}

void PlimRun::point(QPoint position) const
{
    xdotool({u"mousemove"_s, u"--window"_s, m_window, QString::number(position.x()),
             QString::number(position.y())});
}

// As a hand does it: in small steps, each of them seen by the program and by the window manager.
void PlimRun::drag(QPoint from, QPoint to) const
{
    constexpr int steps = 12;
    const QPoint origin = geometry().topLeft();
    QStringList arguments;
    const auto moveTo = [&](QPoint position) {
        arguments << u"mousemove"_s << QString::number(position.x()) << QString::number(position.y())
                  << u"sleep"_s << u"0.03"_s;
    };
    moveTo(origin + from);
    arguments << u"mousedown"_s << u"1"_s << u"sleep"_s << u"0.05"_s;
    for (int step = 1; step <= steps; ++step)
        moveTo(origin + from + (to - from) * step / steps);
    arguments << u"mouseup"_s << u"1"_s;
    xdotool(arguments);
}

QRect PlimRun::geometry() const
{
    QHash<QString, int> values;
    const QStringList lines =
        output(u"xdotool"_s, {u"getwindowgeometry"_s, u"--shell"_s, m_window}).split(u'\n');
    for (const QString &line : lines)
        values.insert(line.section(u'=', 0, 0), line.section(u'=', 1).toInt());
    return {values[u"X"_s], values[u"Y"_s], values[u"WIDTH"_s], values[u"HEIGHT"_s]};
}

void PlimRun::type(const QString &text) const
{
    xdotool({u"type"_s, u"--delay"_s, u"15"_s, u"--"_s, text});
}

void PlimRun::press(const QStringList &keys) const
{
    xdotool(QStringList{u"key"_s, u"--delay"_s, u"15"_s, u"--"_s} + keys);
}

void PlimRun::sendSignal(int signal) const
{
    ::kill(pid_t(m_process.processId()), signal);
}

void PlimRun::closeWindow() const
{
    output(u"wmctrl"_s, {u"-i"_s, u"-c"_s, m_window});
}

int PlimRun::exitCode()
{
    if (!QTest::qWaitFor([this] { return !isRunning(); }, patience))
        return -1;
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

// The renderer is the process below the two that the engine keeps ready to become one.
qint64 PlimRun::rendererId() const
{
    QHash<qint64, qint64> parents;
    const QStringList lines = output(u"ps"_s, {u"-C"_s, u"QtWebEngineProcess"_s, u"-o"_s, u"pid=,ppid="_s}).split(u'\n');
    for (const QString &line : lines) {
        const QStringList ids = line.simplified().split(u' ');
        parents.insert(ids.value(0).toLongLong(), ids.value(1).toLongLong());
    }
    for (auto process = parents.cbegin(); process != parents.cend(); ++process) {
        if (parents.value(process.value()) == processId())
            return process.key();
    }
    return 0;
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

void PlimRun::xdotool(const QStringList &arguments) const
{
    output(u"xdotool"_s, arguments);
}

QJsonObject storedNote(const QString &id, const QString &body)
{
    return {{u"id"_s, id}, {u"title"_s, QString()}, {u"body"_s, body}, {u"color"_s, u"yellow"_s}, {u"textSize"_s, u"medium"_s},
            {u"isArchived"_s, false}, {u"createdAt"_s, 800000000.5}, {u"updatedAt"_s, 800000000.5}};
}
