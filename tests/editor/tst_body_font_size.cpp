#include "editor/BodyFontSize.h"

#include <QTest>

class TestBodyFontSize : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTextSizeHasItsPixels_data()
    {
        QTest::addColumn<NoteTextSize>("size");
        QTest::addColumn<double>("pixels");
        QTest::newRow("extra small") << NoteTextSize::extraSmall << 12.0;
        QTest::newRow("small") << NoteTextSize::small << 14.0;
        QTest::newRow("medium") << NoteTextSize::medium << 16.0;
        QTest::newRow("big") << NoteTextSize::big << 19.0;
    }
    void everyTextSizeHasItsPixels()
    {
        QFETCH(NoteTextSize, size);
        QTEST(bodyFontSize(size), "pixels");
    }
};

QTEST_GUILESS_MAIN(TestBodyFontSize)
#include "tst_body_font_size.moc"
