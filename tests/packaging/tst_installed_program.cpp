#include "tests/ThrowAwayHome.h"
#include "tests/e2e/StoredNotes.h"
#include "tests/e2e/WindowOnScreen.h"
#include "tests/e2e/XTools.h"
#include "tests/packaging/UnpackedPackage.h"
#include "tests/sticky/XWitness.h"

#include <QHash>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{
using XTools::patience;

QString runElsewhere()
{
    return QStringLiteral(PLIM_RUN_ELSEWHERE);
}

QStringList lines(const QString &text)
{
    return text.split(u'\n', Qt::SkipEmptyParts);
}

QSet<QString> packageNames(const QString &relation)
{
    static const QRegularExpression separator(u"[,|]"_s);
    static const QRegularExpression name(u"^\\s*([a-z0-9.+-]+)"_s);
    QSet<QString> names;
    for (const QString &part : relation.split(separator))
        names << name.match(part).captured(1);
    return names;
}

/// Where installed QML modules lie that a machine need not have which has what these packages need.
QStringList needlessModules(const QString &depends)
{
    QHash<QString, QSet<QString>> needs;
    const QString format = u"${Package}\\t${Pre-Depends}, ${Depends}\\n"_s;
    for (const QString &line : lines(run(u"dpkg-query"_s, {u"-W"_s, u"-f"_s, format}).output))
        needs.insert(line.section(u'\t', 0, 0), packageNames(line.section(u'\t', 1)));
    QSet<QString> needed = packageNames(depends);
    for (qsizetype before = -1; before != needed.size();) {
        before = needed.size();
        const QSet<QString> known = needed;
        for (const QString &name : known)
            needed += needs.value(name);
    }
    QStringList directories;
    for (auto package = needs.cbegin(); package != needs.cend(); ++package) {
        if (!package.key().startsWith(u"qml6-module-"_s) || needed.contains(package.key()))
            continue;
        for (const QString &file : lines(run(u"dpkg"_s, {u"-L"_s, package.key()}).output)) {
            if (file.endsWith(u"/qmldir"_s))
                directories << file.chopped(7);
        }
    }
    return directories;
}
} // namespace

/// What is installed, run from somewhere else, where neither the sources nor the build are.
class TestInstalledProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_package.isValid());
        const Said said = run(runElsewhere(), {m_package.root(), {}, u"true"_s});
        if (said.exitCode != 0)
            QSKIP(qPrintable(u"No place apart can be made here: "_s + said.output));
        QVERIFY2(!qEnvironmentVariableIsEmpty("DISPLAY"), "scripts/test starts a display");
    }

    void itShowsItsWindowInItsFonts_data()
    {
        QTest::addColumn<bool>("isPackage");
        QTest::newRow("as a package") << true;
        QTest::newRow("under another prefix") << false;
    }
    void itShowsItsWindowInItsFonts()
    {
        QFETCH(bool, isPackage);
        const ThrowAwayHome home;
        storeNotesCalled(home, {u"Milk"_s});
        const QTemporaryDir prefix;
        QString program = u"/usr/bin/plim"_s;
        QString hidden = QStringLiteral(PLIM_SOURCES);
        if (isPackage) {
            hidden += u'\n' + needlessModules(m_package.field(u"Depends"_s)).join(u'\n');
        } else {
            const Said said =
                run(QStringLiteral(CMAKE_PROGRAM),
                    {u"--install"_s, QStringLiteral(PLIM_BUILD), u"--prefix"_s, prefix.path()});
            QVERIFY2(said.exitCode == 0, qPrintable(said.output));
            program = prefix.filePath(u"bin/plim"_s);
        }

        QProcess process;
        auto environment = home.environment();
        environment.insert(u"DISPLAY"_s, qEnvironmentVariable("DISPLAY"));
        environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
        environment.insert(u"QT_MESSAGE_PATTERN"_s, u"%{type}: %{category}: %{message}"_s);
        environment.insert(u"QT_LOGGING_RULES"_s, u"plim.editor.debug=true"_s);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.setWorkingDirectory(home.documents());
        process.start(runElsewhere(), {isPackage ? m_package.root() : QString(), hidden, program});
        QString said;
        const auto hasSaid = [&](const QString &text) {
            said += QString::fromUtf8(process.readAll());
            return said.contains(text);
        };

        const XWitness server;
        const auto mainWindow = [&] {
            for (const xcb_window_t window : server.visibleWindows()) {
                if (server.property(window, "_NET_WM_PID").value(0) ==
                        quint32(process.processId()) &&
                    server.text(window, "WM_WINDOW_ROLE") == "main")
                    return window;
            }
            return xcb_window_t(XCB_NONE);
        };
        const bool isThere = QTest::qWaitFor([&] { return mainWindow() != XCB_NONE; }, patience);
        hasSaid({});
        QVERIFY2(isThere, qPrintable(said));

        const QStringList log = lines(QString::fromUtf8(home.read(u"Documents/plim_font.log"_s)));
        QVERIFY2(log.constFirst().endsWith(u" exec="_s + program), qPrintable(log.constFirst()));
        for (const QString &face :
             {u"Regular"_s, u"ExtraLight"_s, u"SemiBold"_s, u"Bold"_s, u"Black"_s})
            QVERIFY2(log.contains(u"[FONT] Plim: font registered Outfit-"_s + face),
                     qPrintable(face));

        // The desktop knows the window by what the desktop entry says, and has its icon.
        const QByteArray entry = m_package.read(u"usr/share/applications/org.plim.Plim.desktop"_s);
        const QByteArray name = server.text(mainWindow(), "WM_CLASS").split('\0').value(1);
        QCOMPARE(name, "Plim"_ba);
        QVERIFY(entry.contains("\nStartupWMClass=" + name + '\n'));
        const QList<quint32> icon = server.property(mainWindow(), "_NET_WM_ICON");
        constexpr int side = 16; // the first of several
        QVERIFY(icon.size() > 2 + side * side);
        const QImage shown(reinterpret_cast<const uchar *>(&icon.at(2)), side, side,
                           QImage::Format_ARGB32);
        const QImage installed(
            m_package.path(u"usr/share/icons/hicolor/16x16/apps/org.plim.Plim.png"_s));
        QCOMPARE(shown, installed.convertToFormat(QImage::Format_ARGB32));

        // The editor is a page with a program of its own behind it.
        const WindowOnScreen window(server, mainWindow());
        QVERIFY(window.waitUntilActive());
        window.click({220, 120});
        const bool isShown =
            QTest::qWaitFor([&] { return hasSaid(u"plim.editor: shown"_s); }, patience);
        QVERIFY2(isShown, qPrintable(said));

        ::kill(pid_t(process.processId()), SIGTERM);
        QVERIFY(QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, patience));
        hasSaid({});
        QCOMPARE(process.exitCode(), 0);
        for (const QString &line : lines(said)) {
            for (const QString &bad : {u"warning:"_s, u"critical:"_s, u"fatal:"_s})
                QVERIFY2(!line.startsWith(bad), qPrintable(line));
        }
    }

private:
    UnpackedPackage m_package;
};

QTEST_GUILESS_MAIN(TestInstalledProgram)
#include "tst_installed_program.moc"
