#include "mainwindow/PutAwayHint.h"

#include "mainwindow/WindowState.h"
#include "tests/mainwindow/ContentFixture.h"

using namespace Qt::StringLiterals;

namespace
{
/// The main window's list, and a main window that is on the screen.
struct Fixture : ContentFixture {
    explicit Fixture(const QString &words = u"A B c"_s) : ContentFixture(words)
    {
        window.show();
        WindowHolder::shared().window = &window;
    }

    void putAway(const QString &heading) { Q_EMIT sticky.stickyPutAway(id(heading)); }
    /// The rows and headings that were pointed out since the last time.
    [[nodiscard]] QString takeShown()
    {
        QStringList shown;
        for (const auto &arguments : std::as_const(pointedOut)) {
            const QUuid noteID(arguments[1].toString());
            shown << arguments[0].toString() + u' ' + store.note(noteID)->headingText();
        }
        pointedOut.clear();
        return shown.join(u", "_s);
    }
    [[nodiscard]] bool isRemembered() const
    {
        return QSettings(WindowState::stateFile(), QSettings::IniFormat)
            .value(u"hints/putAwayIsShown"_s)
            .toBool();
    }

    QWindow window;
    QSignalSpy pointedOut{content.putAwayHint(), &PutAwayHint::pointedOut};
};
} // namespace

class TestPutAwayHint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFirstNoteThatIsPutAwayIsPointedOut()
    {
        Fixture f;
        QVERIFY(!f.isRemembered());
        f.putAway(u"B"_s);
        QCOMPARE(f.takeShown(), u"1 B"_s);
        QVERIFY(f.isRemembered());
    }

    void onceIsEnough()
    {
        Fixture f;
        f.putAway(u"B"_s);
        (void)f.takeShown();
        f.putAway(u"B"_s);
        f.putAway(u"A"_s);
        QCOMPARE(f.takeShown(), QString());
        // Nor in later runs of the program.
        ContentController later(f.store, f.selection, f.sticky);
        QSignalSpy pointedOut(later.putAwayHint(), &PutAwayHint::pointedOut);
        f.putAway(u"A"_s);
        QCOMPARE(pointedOut.size(), 0);
    }

    void whatCannotBeSeenDoesNotCount_data()
    {
        QTest::addColumn<QString>("obstacle");
        for (const char *obstacle :
             {"hidden window", "minimised window", "no window", "other tab", "search"})
            QTest::newRow(obstacle) << QString::fromLatin1(obstacle);
    }
    void whatCannotBeSeenDoesNotCount()
    {
        QFETCH(QString, obstacle);
        Fixture f;
        if (obstacle == u"hidden window"_s)
            f.window.hide();
        else if (obstacle == u"minimised window"_s)
            f.window.setWindowStates(Qt::WindowMinimized);
        else if (obstacle == u"no window"_s)
            WindowHolder::shared().window = nullptr;
        else if (obstacle == u"other tab"_s)
            f.content.selectTab(SidebarTab::Archive);
        else
            f.content.filteredNotes()->setSearchText(u"about A"_s);
        const QString list = f.list();
        const auto states = f.window.windowStates();
        const bool wasVisible = f.window.isVisible();
        f.putAway(u"B"_s);
        QCOMPARE(f.takeShown(), QString());
        QVERIFY(!f.isRemembered());
        // Nothing is done to bring it about.
        QCOMPARE(f.list(), list);
        QCOMPARE(f.window.windowStates(), states);
        QCOMPARE(f.window.isVisible(), wasVisible);

        f.window.setWindowStates({});
        f.window.show();
        WindowHolder::shared().window = &f.window;
        f.content.selectTab(SidebarTab::Notes);
        f.content.filteredNotes()->setSearchText({});
        QCOMPARE(f.list(), u"A B"_s);
        f.putAway(u"B"_s);
        QCOMPARE(f.takeShown(), u"1 B"_s);
    }

    void theRowIsThatOfTheListAsItIs()
    {
        Fixture f(u"A B C d E"_s);
        f.content.filteredNotes()->setSearchText(u"about E"_s);
        QCOMPARE(f.list(), u"E"_s);
        f.putAway(u"E"_s);
        QCOMPARE(f.takeShown(), u"0 E"_s);
    }

    void theStateOfTheWindowAndTheHintLeaveEachOtherAlone()
    {
        Fixture f;
        {
            QSettings settings(WindowState::stateFile(), QSettings::IniFormat);
            settings.setValue(u"mainWindow/frame"_s, QRect(1, 2, 900, 600));
        }
        f.putAway(u"A"_s);
        QCOMPARE(QSettings(WindowState::stateFile(), QSettings::IniFormat)
                     .value(u"mainWindow/frame"_s)
                     .toRect(),
                 QRect(1, 2, 900, 600));
        QVERIFY(!QSettings().contains(u"hints/putAwayIsShown"_s)); // no matter of the user's
    }
};

QTEST_MAIN(TestPutAwayHint)
#include "tst_put_away_hint.moc"
