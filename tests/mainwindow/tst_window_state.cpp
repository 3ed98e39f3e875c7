#include "mainwindow/WindowState.h"

#include "tests/ThrowAwayHome.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{
const QSize minimum(900, 560);

/// A window with its state, as a run of the program has them.
struct Run {
    explicit Run(QSize size = {1100, 700})
    {
        window.setGeometry({{20, 30}, size});
        window.setMinimumSize(QSize(300, 200));
        state = std::make_unique<WindowState>();
        state->setWindow(&window);
        state->restore();
    }
    void show()
    {
        window.setVisible(true);
        QCoreApplication::processEvents();
    }

    /// As the user does; the system tells of it a little later.
    void move(const QRect &frame)
    {
        window.setGeometry(frame);
        QCoreApplication::processEvents();
    }

    QQuickWindow window;
    std::unique_ptr<WindowState> state; ///< gone first: what it still has to write, it writes
};
} // namespace

class TestWindowState : public QObject
{
    Q_OBJECT

    std::optional<ThrowAwayHome> m_home;

    void writeFile(const QByteArray &text) const
    {
        QFile file(WindowState::stateFile());
        QDir().mkpath(QFileInfo(file).path());
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("The test's own file could not be written");
    }

private Q_SLOTS:
    void init() { m_home.emplace(); }
    void cleanup() { m_home.reset(); }

    void visibleFrame_data()
    {
        QTest::addColumn<QRect>("frame");
        QTest::addColumn<QList<QRect>>("screens");
        QTest::addColumn<QRect>("expected"); // null: none
        const QRect screen(0, 0, 1600, 1000);
        const QRect right(1600, 0, 1600, 1000);
        const QRect left(-1280, 100, 1280, 800);
        const auto row = [](const char *name, const QRect &frame, const QList<QRect> &screens,
                            const QRect &expected) {
            QTest::newRow(name) << frame << screens << expected;
        };
        row("on the screen", {100, 50, 1100, 700}, {screen}, {100, 50, 1100, 700});
        row("all of the screen", screen, {screen}, screen);
        row("over the right edge", {1000, 50, 1100, 700}, {screen}, {500, 50, 1100, 700});
        row("over the left edge", {-300, 50, 1100, 700}, {screen}, {0, 50, 1100, 700});
        row("over the lower edge", {100, 800, 1100, 700}, {screen}, {100, 300, 1100, 700});
        row("over the upper edge", {100, -200, 1100, 700}, {screen}, {100, 0, 1100, 700});
        row("over a corner", {1500, 900, 1100, 700}, {screen}, {500, 300, 1100, 700});
        row("just enough to be seen", {1536, 936, 1100, 700}, {screen}, {500, 300, 1100, 700});
        row("too little to be seen, in width", {1537, 50, 1100, 700}, {screen}, {});
        row("too little to be seen, in height", {100, 937, 1100, 700}, {screen}, {});
        row("beside the screen", {2000, 50, 1100, 700}, {screen}, {});
        row("larger than the screen", {-50, -50, 3000, 2000}, {screen}, screen);
        row("too wide only", {10, 20, 3000, 700}, {screen}, {0, 20, 1600, 700});
        row("smaller than the minimum", {100, 50, 300, 300}, {screen}, {100, 50, 900, 560});
        row("a screen smaller than the minimum", {5, 5, 1100, 700}, {QRect(0, 0, 800, 480)},
            {0, 0, 900, 560});
        row("on the second screen", {1700, 50, 1100, 700}, {screen, right}, {1700, 50, 1100, 700});
        row("mostly on the second screen", {1300, 50, 1100, 700}, {screen, right},
            {1600, 50, 1100, 700});
        row("mostly on the first screen", {600, 50, 1100, 700}, {screen, right},
            {500, 50, 1100, 700});
        row("left of the first screen", {-1000, 0, 1000, 700}, {screen, left},
            {-1000, 100, 1000, 700});
        row("the second screen is gone", {1700, 50, 1100, 700}, {screen}, {});
        row("no screen", {100, 50, 1100, 700}, {}, {});
        row("no frame", {}, {screen}, {});
    }
    void visibleFrame()
    {
        QFETCH(QRect, frame);
        QFETCH(QList<QRect>, screens);
        QFETCH(QRect, expected);
        const auto visible = WindowState::visibleFrame(frame, screens, minimum);
        QCOMPARE(visible.has_value(), !expected.isNull());
        QCOMPARE(visible.value_or(QRect()), expected);
    }

    void theFileIsWhereStateBelongs()
    {
        QCOMPARE(WindowState::stateFile(), m_home->path(u".state/Plim/window.ini"_s));
        for (const QByteArray &unusable : {QByteArray(), QByteArray("state")}) {
            qputenv("XDG_STATE_HOME", unusable);
            QCOMPARE(WindowState::stateFile(), m_home->path(u".local/state/Plim/window.ini"_s));
        }
    }

    void theFirstTimeTheWindowStaysAsItIs()
    {
        Run run;
        run.show();
        QCOMPARE(run.window.geometry(), QRect(20, 30, 1100, 700));
        QCOMPARE(run.window.windowStates(), Qt::WindowNoState);
        run.state.reset();
        QVERIFY(!QFile::exists(WindowState::stateFile()));
    }

    void theFirstWindowFitsTheScreen()
    {
        const QSize screen = QGuiApplication::primaryScreen()->availableSize();
        Run run(screen * 2);
        run.show();
        QCOMPARE(run.window.size(), screen.expandedTo(run.window.minimumSize()));
    }

    void theWindowComesBackWhereItWas()
    {
        {
            Run run;
            run.show();
            run.move({40, 60, 500, 400});
        } // what was not written yet is written at the end
        QVERIFY(QFile::exists(WindowState::stateFile()));
        Run run;
        QCOMPARE(run.window.geometry(), QRect(40, 60, 500, 400)); // before it is shown
        run.show();
        QCOMPARE(run.window.geometry(), QRect(40, 60, 500, 400));
    }

    void whatChangesIsWrittenSoon()
    {
        Run run;
        run.show();
        run.move({40, 60, 500, 400});
        QTRY_VERIFY(QFile::exists(WindowState::stateFile()));
        const QSettings written(WindowState::stateFile(), QSettings::IniFormat);
        QCOMPARE(written.value(u"mainWindow/frame"_s).toRect(), QRect(40, 60, 500, 400));
    }

    void aMaximisedWindowComesBackMaximisedAndKeepsItsFrame()
    {
        {
            Run run;
            run.show();
            run.move({40, 60, 500, 400});
            QTRY_VERIFY(QFile::exists(WindowState::stateFile()));
            // The new size may be told before the reason for it.
            run.move(QGuiApplication::primaryScreen()->availableGeometry());
            run.window.setWindowStates(Qt::WindowMaximized);
            QCoreApplication::processEvents();
        }
        for (int start = 0; start < 2; ++start) {
            Run run;
            QVERIFY(run.window.windowStates() & Qt::WindowMaximized);
            run.show();
            QVERIFY(run.window.windowStates() & Qt::WindowMaximized);
            run.state.reset();
            const QSettings written(WindowState::stateFile(), QSettings::IniFormat);
            QCOMPARE(written.value(u"mainWindow/frame"_s).toRect(), QRect(40, 60, 500, 400));
            QVERIFY(written.value(u"mainWindow/isMaximized"_s).toBool());
        }
    }

    void aMinimisedWindowIsNotRememberedAsSuch()
    {
        {
            Run run;
            run.show();
            run.move({40, 60, 500, 400});
            run.window.setWindowStates(Qt::WindowMinimized);
            QCoreApplication::processEvents();
        }
        Run run;
        QCOMPARE(run.window.geometry(), QRect(40, 60, 500, 400));
        QCOMPARE(run.window.windowStates(), Qt::WindowNoState);
    }

    void aWindowThatIsNotShownIsNotRemembered()
    {
        {
            Run run;
            run.move({40, 60, 500, 400});
        }
        QVERIFY(!QFile::exists(WindowState::stateFile()));
    }

    void aFileThatSaysNothingIsAsGoodAsNone_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("no settings") << QByteArray("\x00\xff[[[\n=%&\n", 10);
        QTest::newRow("no frame") << QByteArray("[mainWindow]\nframe=hello\n");
        QTest::newRow("half a frame") << QByteArray("[mainWindow]\nframe=@Rect(1 2\n");
        QTest::newRow("an empty frame") << QByteArray("[mainWindow]\nframe=@Rect(9 9 0 0)\n");
        QTest::newRow("on no screen")
            << QByteArray("[mainWindow]\nframe=@Rect(90000 90000 500 400)\n");
    }
    void aFileThatSaysNothingIsAsGoodAsNone()
    {
        QFETCH(QByteArray, text);
        writeFile(text);
        const Run run;
        QCOMPARE(run.window.geometry(), QRect(20, 30, 1100, 700));
        QCOMPARE(run.window.windowStates(), Qt::WindowNoState);
    }

    void aFrameLargerThanTheScreenIsFitted()
    {
        writeFile("[mainWindow]\nframe=@Rect(-10 -10 9000 9000)\n");
        const Run run;
        QCOMPARE(run.window.geometry(), QGuiApplication::primaryScreen()->availableGeometry());
    }

    void aDirectoryThatCannotBeWrittenStopsNothing()
    {
        QFile obstacle(m_home->path(u".state"_s));
        QVERIFY(obstacle.open(QIODevice::WriteOnly));
        {
            Run run;
            run.show();
            run.move({40, 60, 500, 400});
        }
        const Run run;
        QCOMPARE(run.window.geometry(), QRect(20, 30, 1100, 700));
    }

    void theSettingsAreLeftAlone()
    {
        {
            Run run;
            run.show();
            run.move({40, 60, 500, 400});
        }
        QVERIFY(QSettings().allKeys().isEmpty());
        QVERIFY(!QDir(m_home->path(u".config"_s)).exists(u"Plim"_s));
    }

    void aWindowThatIsGoneIsForgotten()
    {
        WindowState state;
        QSignalSpy changed(&state, &WindowState::windowChanged);
        state.restore(); // there is none
        {
            QQuickWindow first;
            QQuickWindow second;
            state.setWindow(&first);
            state.setWindow(&first);
            QCOMPARE(changed.count(), 1);
            state.setWindow(&second);
            QCOMPARE(changed.count(), 2);
            first.setVisible(true);
            first.setGeometry(1, 2, 300, 400);
        }
        QCOMPARE(state.window(), nullptr);
        state.restore();
    }
};

QTEST_MAIN(TestWindowState)
#include "tst_window_state.moc"
