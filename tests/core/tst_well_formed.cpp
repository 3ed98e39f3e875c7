#include "core/WellFormed.h"

#include <QTest>

class TestWellFormed : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// At every place of texts that are shorter and longer than what is looked at at once.
    void itSaysWhatQtSays()
    {
        constexpr char16_t high = 0xd83d;
        constexpr char16_t low = 0xde00;
        constexpr int longest = 40;
        for (int size = 0; size <= longest; ++size) {
            const QString text(size, u'a');
            QVERIFY(isWellFormed(text));
            for (int at = 0; at < size; ++at) {
                for (const char16_t c : {high, low, char16_t(0xd7ff), char16_t(0xe000)}) {
                    QString changed = text;
                    changed[at] = c;
                    QCOMPARE(isWellFormed(changed), changed.isValidUtf16());
                    if (at + 1 == size)
                        continue;
                    changed[at + 1] = low;
                    QCOMPARE(isWellFormed(changed), changed.isValidUtf16());
                }
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestWellFormed)
#include "tst_well_formed.moc"
