#include "editor/HeldKeys.h"
#include "tests/Patience.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto document = R"(
    import QtQuick
    Window {
        width: 300
        height: 200
        visible: true

        Item {
            objectName: "list"
            property string heard
            focus: true
            Keys.onPressed: event => heard += event.text
        }
        TextInput { objectName: "search" }
        Item {
            objectName: "page"
            TextInput {
                objectName: "text"
                property var releases: 0
                Keys.onReleased: ++releases
            }
        }
    })";
} // namespace

/// What is typed before there is a page for it.
class TestHeldKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_engine = std::make_unique<QQmlEngine>();
        QQmlComponent component(m_engine.get());
        component.setData(document, QUrl(u"qrc:/test.qml"_s));
        m_window.reset(qobject_cast<QQuickWindow *>(component.create()));
        QVERIFY2(m_window, qPrintable(component.errorString()));
        QVERIFY(QTest::qWaitForWindowActive(m_window.get(), longEnough));
        m_keys = std::make_unique<HeldKeys>();
        m_keys->setWindow(m_window.get());
        m_keys->setPage(item("page"));
        item("list")->forceActiveFocus();
        QTRY_COMPARE(m_window->activeFocusItem(), item("list"));
    }
    void cleanup()
    {
        m_keys.reset();
        m_window.reset();
    }

    void areGivenToThePageInOrder()
    {
        m_keys->setIsHolding(true);
        type("te");
        item("text")->forceActiveFocus();
        type("a"); // it has the keyboard, but not its caret yet
        QCOMPARE(text("text"), QString());
        m_keys->setIsHolding(false);
        QCOMPARE(text("text"), u"tea"_s);
        QCOMPARE(item("text")->property("releases").toInt(), 3);
        type("s");
        QCOMPARE(text("text"), u"teas"_s);
        QCOMPARE(item("list")->property("heard").toString(), QString());
    }

    void areLetThroughOtherwise()
    {
        type("a");
        QCOMPARE(item("list")->property("heard").toString(), u"a"_s);
    }

    void areNoCommandsForAnythingElse()
    {
        m_keys->setIsHolding(true);
        type("abc");
        m_keys->setIsHolding(false); // the note is gone: the list has the keyboard
        QCOMPARE(item("list")->property("heard").toString(), QString());
        item("text")->forceActiveFocus();
        type("d");
        QCOMPARE(text("text"), u"d"_s);
    }

    void doNotReachWhoTurnsToAnotherText()
    {
        m_keys->setIsHolding(true);
        type("ab");
        item("search")->forceActiveFocus();
        type("cd");
        QCOMPARE(text("search"), u"cd"_s);
        item("text")->forceActiveFocus();
        m_keys->setIsHolding(false);
        QCOMPARE(text("text"), u"ab"_s);
        // The next time it is as before.
        m_keys->setIsHolding(true);
        type("x");
        QCOMPARE(text("text"), u"ab"_s);
        m_keys->setIsHolding(false);
        QCOMPARE(text("text"), u"abx"_s);
    }

    void doNotReachWhoLeavesThePage()
    {
        m_keys->setIsHolding(true);
        item("text")->forceActiveFocus();
        item("list")->forceActiveFocus();
        type("a");
        QCOMPARE(item("list")->property("heard").toString(), u"a"_s);
    }

    void waitOnWhenOneOfThemAsksForAnotherNote()
    {
        item("text")->forceActiveFocus();
        m_keys->setIsHolding(true);
        type("abc");
        const auto again = connect(item("text"), SIGNAL(textChanged()), this, SLOT(holdAgain()));
        m_keys->setIsHolding(false);
        QCOMPARE(text("text"), u"a"_s);
        QVERIFY(disconnect(again));
        m_keys->setIsHolding(false);
        QCOMPARE(text("text"), u"abc"_s);
    }

    void belongToTheirWindow()
    {
        m_keys->setIsHolding(true);
        type("ab");
        m_keys->setWindow(nullptr);
        item("text")->forceActiveFocus();
        m_keys->setIsHolding(false);
        QCOMPARE(text("text"), QString());
        type("c");
        QCOMPARE(text("text"), u"c"_s);
    }

public Q_SLOTS:
    void holdAgain() { m_keys->setIsHolding(true); }

private:
    [[nodiscard]] QQuickItem *item(const char *name) const
    {
        return m_window->findChild<QQuickItem *>(QLatin1StringView(name));
    }
    [[nodiscard]] QString text(const char *name) const
    {
        return item(name)->property("text").toString();
    }
    void type(const char *letters)
    {
        for (; *letters != '\0'; ++letters)
            QTest::keyClick(m_window.get(), *letters);
    }

    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    std::unique_ptr<HeldKeys> m_keys;
};

QTEST_MAIN(TestHeldKeys)
#include "tst_held_keys.moc"
