#include "shell/ApplicationMenus.h"

#include "shell/LanguageManager.h"
#include "tests/Patience.h"
#include "tests/ThrowAwayHome.h"

#include <QQuickWindow>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// Two menus at two buttons of a window.
struct Fixture {
    Fixture()
    {
        LanguageManager::shared().setLanguage(AppLanguage::en);
        window.resize(300, 200);
        for (int i = 0; i < 2; ++i) {
            auto *button = new QQuickItem(window.contentItem());
            button->setPosition(QPointF(10 + 100 * i, 10));
            button->setSize(QSizeF(80, 30));
            menus.attach(i, button);
        }
        window.show();
        window.requestActivate();
        if (!QTest::qWaitForWindowActive(&window, longEnough))
            qFatal("The window does not come up");
    }

    [[nodiscard]] std::vector<Command> table()
    {
        std::vector<Command> table;
        for (const QString &id : {u"a"_s, u"b"_s, u"c"_s}) {
            Command command;
            command.id = id;
            command.title = {id, id};
            command.symbol = u"plus"_s;
            command.action = [this, id] { done << id; };
            table.push_back(command);
        }
        return table;
    }
    static std::vector<CommandMenu> plan()
    {
        return {{u"first"_s, {u"Pierwsze"_s, u"First"_s}, {u"a"_s, QString(), u"b"_s}},
                {u"second"_s, {u"Drugie"_s, u"Second"_s}, {u"c"_s}}};
    }
    [[nodiscard]] QStringList itemsOf(int index)
    {
        QStringList items;
        for (const QAction *action : menus.menu(index)->actions())
            items << (action->isSeparator() ? u"-"_s : action->text());
        return items;
    }

    ThrowAwayHome home;
    QStringList done;
    QQuickWindow window;
    Commands commands{table(), plan()};
    ApplicationMenus menus{commands};
};
} // namespace

class TestApplicationMenus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // What this display cannot do is none of the menus' business.
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
    }

    void aMenuHasItsCommandsAndLines()
    {
        Fixture f;
        QCOMPARE(f.menus.titles(), (QStringList{u"First"_s, u"Second"_s}));
        QCOMPARE(f.itemsOf(0), (QStringList{u"a"_s, u"-"_s, u"b"_s}));
        QCOMPARE(f.menus.menu(0), f.menus.menu(0)); // made once
        QVERIFY(!f.menus.menu(0)->actions()[0]->icon().isNull());
        QVERIFY(f.menus.menu(0)->toolTipsVisible());
        QSignalSpy retitled(&f.menus, &ApplicationMenus::titlesChanged);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(retitled.count(), 1);
        QCOMPARE(f.menus.titles(), (QStringList{u"Pierwsze"_s, u"Drugie"_s}));
    }

    void whatIsMarkedHasNoSymbolBesides()
    {
        Fixture f;
        f.commands.action(u"c"_s)->setCheckable(true);
        QVERIFY(f.menus.menu(1)->actions()[0]->icon().isNull());
    }

    void itOpensBelowItsButtonAndBelongsToTheWindow()
    {
        Fixture f;
        QSignalSpy told(&f.menus, &ApplicationMenus::openIndexChanged);
        f.menus.press(1);
        QTRY_VERIFY(f.menus.menu(1)->isVisible());
        QCOMPARE(f.menus.openIndex(), 1);
        QCOMPARE(told.count(), 1);
        QCOMPARE(f.menus.menu(1)->pos(), f.window.mapToGlobal(QPoint(110, 40)));
        QCOMPARE(f.menus.menu(1)->windowHandle()->transientParent(), &f.window);
        f.menus.menu(1)->hide();
        QCOMPARE(f.menus.openIndex(), -1);
        QCOMPARE(told.count(), 2);
    }

    void withoutAButtonThereIsNoPlaceToOpen()
    {
        Fixture f;
        ApplicationMenus loose(f.commands);
        loose.press(0);
        QCOMPARE(loose.openIndex(), -1);
    }

    void whatIsOffIsNotTheFirstToBeChosen()
    {
        Fixture f;
        f.commands.action(u"a"_s)->setEnabled(false);
        f.menus.openByKey(0);
        QTRY_COMPARE(f.menus.menu(0)->activeAction(), f.commands.action(u"b"_s));
        f.menus.menu(0)->hide();
        f.commands.action(u"b"_s)->setEnabled(false);
        f.menus.openByKey(0);
        QTRY_VERIFY(f.menus.menu(0)->isVisible());
        QTest::keyClick(f.menus.menu(0), Qt::Key_Return);
        QCOMPARE(f.done, QStringList());
    }

    void thePressThatClosedItDoesNotOpenItAgain()
    {
        Fixture f;
        f.menus.press(0);
        QTRY_VERIFY(f.menus.menu(0)->isVisible());
        f.menus.menu(0)->hide(); // the popup hears of the press before its button does
        f.menus.press(0);
        QVERIFY(!f.menus.menu(0)->isVisible());
        f.menus.press(1); // another one is not meant by that
        QTRY_VERIFY(f.menus.menu(1)->isVisible());
        f.menus.menu(1)->hide();
        // A little later the same press opens it.
        QTRY_VERIFY([&] {
            f.menus.press(1);
            return f.menus.menu(1)->isVisible();
        }());
    }

    void oneIsOpenAtATime()
    {
        Fixture f;
        f.menus.press(0);
        QTRY_VERIFY(f.menus.menu(0)->isVisible());
        f.menus.openByKey(1);
        QTRY_VERIFY(f.menus.menu(1)->isVisible());
        QVERIFY(!f.menus.menu(0)->isVisible());
        QCOMPARE(f.menus.openIndex(), 1);
        QTest::keyClick(f.menus.menu(1), Qt::Key_Right); // behind the last comes the first
        QTRY_VERIFY(f.menus.menu(0)->isVisible());
        QVERIFY(!f.menus.menu(1)->isVisible());
    }

    void whatIsChosenIsDone()
    {
        Fixture f;
        f.menus.openByKey(0);
        QTRY_VERIFY(f.menus.menu(0)->isVisible());
        QTest::keyClick(f.menus.menu(0), Qt::Key_Down);
        QTest::keyClick(f.menus.menu(0), Qt::Key_Return);
        QTRY_COMPARE(f.done, QStringList{u"b"_s});
        QVERIFY(!f.menus.menu(0)->isVisible());
        QTRY_COMPARE(f.menus.openIndex(), -1);
    }

    void theLookIsGivenToThoseThatAreThereAndThoseThatCome()
    {
        Fixture f;
        (void)f.menus.menu(0);
        f.menus.setLook(u"QMenu { color: red; }"_s, Qt::red);
        QCOMPARE(f.menus.menu(0)->styleSheet(), u"QMenu { color: red; }"_s);
        QCOMPARE(f.menus.menu(1)->styleSheet(), u"QMenu { color: red; }"_s);
    }
};

QTEST_MAIN(TestApplicationMenus)
#include "tst_application_menus.moc"
