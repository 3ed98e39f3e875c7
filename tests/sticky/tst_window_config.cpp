#include "sticky/WindowConfigView.h"

#include "sticky/WindowHolder.h"

#include <QQuickWindow>
#include <QTest>

#include <memory>

class TestWindowConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { WindowHolder::shared() = {}; }

    void itsWindowBecomesTheMainWindow()
    {
        QQuickWindow window;
        const Qt::WindowFlags before = window.flags();
        WindowConfigView config;
        QVERIFY(!WindowHolder::shared().window);
        config.setParentItem(window.contentItem());
        QCOMPARE(WindowHolder::shared().window, &window);
        QCOMPARE(window.color(), QColor(Qt::transparent));
        QCOMPARE(window.flags(), before | Qt::FramelessWindowHint);
        QVERIFY(!window.isVisible());
    }

    void leavingAWindowChangesNothing()
    {
        QQuickWindow window;
        WindowConfigView config;
        config.setParentItem(window.contentItem());
        config.setParentItem(nullptr);
        QCOMPARE(WindowHolder::shared().window, &window);
        QVERIFY(window.flags() & Qt::FramelessWindowHint);
    }

    void aWindowThatIsGoneIsNotHeld()
    {
        auto window = std::make_unique<QQuickWindow>();
        auto *config = new WindowConfigView;
        config->setParentItem(window->contentItem());
        config->setParent(window->contentItem());
        window.reset();
        QVERIFY(!WindowHolder::shared().window);
    }

    void theNoteToBeSelectedIsLeftAlone()
    {
        const QUuid note = QUuid::createUuid();
        WindowHolder::shared().pendingSelectedID = note;
        QQuickWindow window;
        WindowConfigView config;
        config.setParentItem(window.contentItem());
        QVERIFY(WindowHolder::shared().pendingSelectedID == note);
        WindowHolder::shared() = {};
    }
};

QTEST_MAIN(TestWindowConfig)
#include "tst_window_config.moc"
