#include "shell/FocusReturn.h"
#include "tests/Patience.h"

#include <QQuickWindow>
#include <QTest>

#include <memory>

namespace
{
/// A column with two fields in it, a field beside it, and a popup over all of them.
struct Scene {
    Scene()
    {
        column = add(window.contentItem());
        column->setFlag(QQuickItem::ItemIsFocusScope);
        first = add(column);
        second = add(column);
        beside = add(window.contentItem());
        popup = add(window.contentItem());
        popup->setFlag(QQuickItem::ItemIsFocusScope);
        window.show();
        window.requestActivate();
    }
    static QQuickItem *add(QQuickItem *parent)
    {
        auto *item = new QQuickItem(parent); // the scene's
        item->setParent(parent);
        return item;
    }
    void openPopup()
    {
        focusReturn.remember(popup);
        popup->forceActiveFocus();
    }
    void closePopup()
    {
        popup->setFocus(false);
        focusReturn.giveBack();
    }

    QQuickWindow window;
    QQuickItem *column = nullptr;
    QQuickItem *first = nullptr;
    QQuickItem *second = nullptr;
    QQuickItem *beside = nullptr;
    QQuickItem *popup = nullptr;
    FocusReturn focusReturn;
};
} // namespace

class TestFocusReturn : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesBackToWhatHadTheKeyboard()
    {
        Scene scene;
        QVERIFY(QTest::qWaitForWindowActive(&scene.window, longEnough));
        for (QQuickItem *item : {scene.second, scene.beside, scene.first}) {
            item->forceActiveFocus();
            scene.openPopup();
            QVERIFY(!item->hasActiveFocus());
            scene.closePopup();
            QCOMPARE(scene.window.activeFocusItem(), item);
        }
    }

    void aScopeWhoseFieldIsGoneGetsItForWhatComesNext()
    {
        Scene scene;
        QVERIFY(QTest::qWaitForWindowActive(&scene.window, longEnough));
        scene.first->forceActiveFocus();
        scene.openPopup();
        delete scene.first;
        scene.second->setFocus(true);
        scene.closePopup();
        QCOMPARE(scene.window.activeFocusItem(), scene.second);
    }

    void whoeverTookItMeanwhileKeepsIt()
    {
        Scene scene;
        QVERIFY(QTest::qWaitForWindowActive(&scene.window, longEnough));
        scene.first->forceActiveFocus();
        scene.openPopup();
        scene.beside->forceActiveFocus();
        scene.closePopup();
        QCOMPARE(scene.window.activeFocusItem(), scene.beside);
    }

    void nothingIsGivenBackTwice()
    {
        Scene scene;
        QVERIFY(QTest::qWaitForWindowActive(&scene.window, longEnough));
        scene.beside->forceActiveFocus();
        scene.openPopup();
        scene.closePopup();
        scene.beside->setFocus(false);
        scene.focusReturn.giveBack();
        QVERIFY(!scene.beside->hasActiveFocus());
    }

    void whatIsHiddenGetsNothing()
    {
        Scene scene;
        QVERIFY(QTest::qWaitForWindowActive(&scene.window, longEnough));
        scene.beside->forceActiveFocus();
        scene.openPopup();
        scene.beside->setVisible(false);
        scene.closePopup();
        QVERIFY(!scene.beside->hasActiveFocus());
    }

    void whatIsGoneGetsNothing()
    {
        Scene scene;
        QVERIFY(QTest::qWaitForWindowActive(&scene.window, longEnough));
        scene.beside->forceActiveFocus();
        scene.openPopup();
        delete scene.beside;
        scene.closePopup();
        QCOMPARE(scene.window.activeFocusItem(), scene.window.contentItem());
    }
};

QTEST_MAIN(TestFocusReturn)
#include "tst_focus_return.moc"
