#include "mainwindow/FirstInput.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

#include <memory>

/// When a window's user has come to it.
class TestFirstInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsDoneToTheWindowCounts_data()
    {
        QTest::addColumn<std::shared_ptr<QEvent>>("event");
        const QPointF place(20, 20);
        const auto row = [](const char *name, auto event) {
            QTest::newRow(name) << std::shared_ptr<QEvent>(std::move(event));
        };
        row("the pointer moves", std::make_shared<QMouseEvent>(QEvent::MouseMove, place, place, Qt::NoButton,
                                                               Qt::NoButton, Qt::NoModifier));
        row("a button", std::make_shared<QMouseEvent>(QEvent::MouseButtonPress, place, place, Qt::LeftButton,
                                                      Qt::LeftButton, Qt::NoModifier));
        row("the wheel", std::make_shared<QWheelEvent>(place, place, QPoint(), QPoint(0, 120), Qt::NoButton,
                                                       Qt::NoModifier, Qt::NoScrollPhase, false));
        row("a key", std::make_shared<QKeyEvent>(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier));
    }
    void whatIsDoneToTheWindowCounts()
    {
        QFETCH(std::shared_ptr<QEvent>, event);
        QWindow window;
        FirstInput first;
        first.setWindow(&window);
        QSignalSpy happened(&first, &FirstInput::happened);
        QCoreApplication::sendEvent(&window, event.get());
        QCOMPARE(happened.count(), 1);
        QCoreApplication::sendEvent(&window, event.get()); // it is told once
        QCOMPARE(happened.count(), 1);
    }

    void aWindowThatComesUpBeneathThePointerIsNotMeant()
    {
        QWindow window;
        FirstInput first;
        first.setWindow(&window);
        QSignalSpy happened(&first, &FirstInput::happened);
        const QPointF place(20, 20);
        QEnterEvent enter(place, place, place);
        QCoreApplication::sendEvent(&window, &enter);
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&window, &leave);
        QFocusEvent focus(QEvent::FocusIn);
        QCoreApplication::sendEvent(&window, &focus);
        QCOMPARE(happened.count(), 0);
    }

    void onlyItsOwnWindowCounts()
    {
        QWindow former;
        QWindow window;
        FirstInput first;
        first.setWindow(&former);
        first.setWindow(&window);
        QSignalSpy happened(&first, &FirstInput::happened);
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
        QCoreApplication::sendEvent(&former, &key);
        QCOMPARE(happened.count(), 0);
        QCoreApplication::sendEvent(&window, &key);
        QCOMPARE(happened.count(), 1);
    }
};

QTEST_MAIN(TestFirstInput)
#include "tst_first_input.moc"
