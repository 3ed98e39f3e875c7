#include "shell/InputModality.h"
#include "tests/views/Stage.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray views = R"(
    Row {
        y: 40
        spacing: 10
        SymbolButton { objectName: "first"; symbol: "plus"; helpText: "Add" }
        SymbolButton { objectName: "second"; symbol: "xmark"; helpText: "Close" }
        ActionButton { objectName: "third"; symbol: "trash"; text: "Delete" }
        ActionButton { objectName: "fourth"; text: "Cancel"; enabled: false }
    }
)";

const QStringList names{u"first"_s, u"second"_s, u"third"_s};

/// The ring around the item with the keyboard, if one is drawn.
bool hasRing(QQuickItem *button)
{
    bool found = false;
    visitItems(button, [&](QQuickItem *item) {
        if (QByteArray(item->metaObject()->className()).startsWith("FocusRing") && isDrawn(item))
            found = true;
    });
    return found;
}
} // namespace

class TestButtons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void keysActivateAButton_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("key");
        for (const QString &name : names) {
            for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space})
                QTest::addRow("%s, %x", qPrintable(name), key) << name << key;
        }
    }
    void keysActivateAButton()
    {
        QFETCH(QString, name);
        QFETCH(int, key);
        const Stage w(views);
        QSignalSpy clicked(w.item(name), SIGNAL(clicked()));
        w.item(name)->forceActiveFocus(Qt::TabFocusReason);
        press(w.window(), Qt::Key(key));
        QCOMPARE(clicked.size(), 1);
    }

    void aClickActivatesAButton()
    {
        const Stage w(views);
        for (const QString &name : names) {
            QSignalSpy clicked(w.item(name), SIGNAL(clicked()));
            click(w.item(name));
            QCOMPARE(clicked.size(), 1);
        }
    }

    void aDisabledButtonDoesNothing()
    {
        const Stage w(views);
        QSignalSpy clicked(w.item(u"fourth"_s), SIGNAL(clicked()));
        click(w.item(u"fourth"_s));
        QCOMPARE(clicked.size(), 0);
    }

    void theRingIsForThoseWhoUseKeys()
    {
        const Stage w(views);
        forgetKeyboard(w.window());
        for (const QString &name : names) {
            click(w.item(name));
            w.item(name)->forceActiveFocus();
            QVERIFY2(!hasRing(w.item(name)), qPrintable(name));
        }
        press(w.window(), Qt::Key_Tab);
        QVERIFY(InputModality::shared().isKeyboard());
        QTRY_VERIFY(hasRing(w.item(u"first"_s)));
        press(w.window(), Qt::Key_Tab);
        QVERIFY(!hasRing(w.item(u"first"_s)));
        QVERIFY(hasRing(w.item(u"second"_s)));
        forgetKeyboard(w.window());
        QVERIFY(!hasRing(w.item(u"second"_s)));
    }

    void tabPassesADisabledButtonBy()
    {
        const Stage w(views);
        w.item(u"first"_s)->forceActiveFocus(Qt::TabFocusReason);
        QStringList walk;
        for (int i = 0; i < 3; ++i) {
            press(w.window(), Qt::Key_Tab);
            walk << w.window()->activeFocusItem()->objectName();
        }
        QCOMPARE(walk, (QStringList{u"second"_s, u"third"_s, u"first"_s}));
    }

    void typingIsNoUseOfTheKeyboardForGoingAbout()
    {
        const Stage w(views);
        forgetKeyboard(w.window());
        type(w.window(), u"a"_s);
        QVERIFY(!InputModality::shared().isKeyboard());
    }
};

QTEST_MAIN(TestButtons)
#include "tst_buttons.moc"
