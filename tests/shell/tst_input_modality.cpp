#include "shell/InputModality.h"

#include <QPointingDevice>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

#include <memory>

class TestInputModality : public QObject
{
    Q_OBJECT

    QWindow m_window;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(!InputModality::shared().isKeyboard());
        m_window.resize(100, 100);
        m_window.setVisible(true);
    }

    void keysThatGoSomewhere_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<bool>("isKeyboard");
        const QMetaEnum keys = QMetaEnum::fromType<Qt::Key>();
        for (const Qt::Key key :
             {Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right,
              Qt::Key_Home, Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Return,
              Qt::Key_Enter, Qt::Key_Escape})
            QTest::newRow(keys.valueToKey(key)) << key << true;
        for (const Qt::Key key :
             {Qt::Key_A, Qt::Key_Space, Qt::Key_Control, Qt::Key_Shift, Qt::Key_Delete})
            QTest::newRow(keys.valueToKey(key)) << key << false;
    }
    void keysThatGoSomewhere()
    {
        QFETCH(Qt::Key, key);
        auto &modality = InputModality::shared();
        QTest::mouseClick(&m_window, Qt::LeftButton, {}, {5, 5});
        QVERIFY(!modality.isKeyboard());
        QSignalSpy changed(&modality, &InputModality::isKeyboardChanged);
        QTest::keyClick(&m_window, key);
        QTest::keyClick(&m_window, key);
        QTEST(modality.isKeyboard(), "isKeyboard");
        QCOMPARE(changed.count(), modality.isKeyboard() ? 1 : 0);
    }

    void typingKeepsTheKeyboard()
    {
        QTest::keyClick(&m_window, Qt::Key_Tab);
        QTest::keyClick(&m_window, Qt::Key_A);
        QTest::keyClick(&m_window, Qt::Key_Space);
        QVERIFY(InputModality::shared().isKeyboard());
    }

    void aPressEndsItAMoveDoesNot()
    {
        auto &modality = InputModality::shared();
        QTest::keyClick(&m_window, Qt::Key_Tab);
        QTest::mouseMove(&m_window, {20, 20});
        QVERIFY(modality.isKeyboard());
        QTest::mousePress(&m_window, Qt::RightButton, {}, {20, 20});
        QVERIFY(!modality.isKeyboard());
        QTest::mouseRelease(&m_window, Qt::RightButton, {}, {20, 20});
    }

    void aFingerEndsIt()
    {
        const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
        QTest::keyClick(&m_window, Qt::Key_Down);
        QVERIFY(InputModality::shared().isKeyboard());
        QTest::touchEvent(&m_window, screen.get()).press(0, QPoint(5, 5));
        QVERIFY(!InputModality::shared().isKeyboard());
        QTest::touchEvent(&m_window, screen.get()).release(0, QPoint(5, 5));
    }

    void thereIsOneForAll()
    {
        QCOMPARE(InputModality::create(nullptr, nullptr), &InputModality::shared());
    }
};

QTEST_MAIN(TestInputModality)
#include "tst_input_modality.moc"
