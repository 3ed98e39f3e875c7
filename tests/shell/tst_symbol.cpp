#include "shell/Symbol.h"

#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr int side = 32;

QImage painted(const QString &name, const QColor &color = Qt::white, bool isBold = false)
{
    Symbol symbol;
    symbol.setName(name);
    symbol.setColor(color);
    symbol.setIsBold(isBold);
    symbol.setSize(side);
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    symbol.paint(&painter);
    return image;
}

/// Sum of how much each pixel is covered, in whole pixels.
double ink(const QImage &image)
{
    double ink = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ink += image.pixelColor(x, y).alphaF();
    }
    return ink;
}
} // namespace

class TestSymbol : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void everySymbolOfTheViewsIsThere_data()
    {
        QTest::addColumn<QString>("name");
        // "symbol: …" of whatever shows one, and "name: …" of the symbol itself.
        const QRegularExpression use(u"(?:\\bsymbol:|\\bSymbol \\{[^}]*?\\bname:)([^\\n]*)"_s);
        const QRegularExpression literal(u"\"([^\"]+)\""_s);
        int files = 0;
        for (const QString &folder : {u"shell"_s, u"editor"_s, u"mainwindow"_s, u"sticky"_s}) {
            QDirIterator views(QStringLiteral(PLIM_SOURCES) + u'/' + folder, {u"*.qml"_s});
            while (views.hasNext()) {
                QFile file(views.next());
                QVERIFY(file.open(QIODevice::ReadOnly));
                ++files;
                const QString text = QString::fromUtf8(file.readAll());
                for (const auto &line : use.globalMatch(text)) {
                    for (const auto &name : literal.globalMatch(line.captured(1)))
                        QTest::newRow(qPrintable(views.fileName() + u": "_s + name.captured(1)))
                            << name.captured(1);
                }
            }
        }
        QVERIFY(files > 20);
    }
    void everySymbolOfTheViewsIsThere()
    {
        QFETCH(QString, name);
        QVERIFY(Symbol::isKnown(name));
        QVERIFY(ink(painted(name)) > 10);
    }

    void anUnknownSymbolDrawsNothing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("no name") << QString();
        QTest::newRow("a misspelt one") << u"trsh"_s;
        QTest::newRow("with its file's ending") << u"trash.svg"_s;
    }
    void anUnknownSymbolDrawsNothing()
    {
        QFETCH(QString, name);
        QVERIFY(!Symbol::isKnown(name));
        QCOMPARE(ink(painted(name)), 0.0);
    }

    void aSymbolIsDrawnInItsColor_data()
    {
        QTest::addColumn<QColor>("color");
        QTest::newRow("white") << QColor(Qt::white);
        QTest::newRow("black") << QColor(Qt::black);
        QTest::newRow("a colour") << QColor(0x29, 0x80, 0xb9);
        QTest::newRow("half transparent") << QColor(255, 0, 0, 128);
    }
    void aSymbolIsDrawnInItsColor()
    {
        QFETCH(QColor, color);
        const QImage image = painted(u"xmark.circle.fill"_s, color);
        int strongest = 0;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                const QColor pixel = image.pixelColor(x, y);
                strongest = std::max(strongest, pixel.alpha());
                if (pixel.alpha() < color.alpha() / 2)
                    continue; // an edge
                QVERIFY(std::abs(pixel.red() - color.red()) <= 3);
                QVERIFY(std::abs(pixel.green() - color.green()) <= 3);
                QVERIFY(std::abs(pixel.blue() - color.blue()) <= 3);
            }
        }
        QVERIFY(std::abs(strongest - color.alpha()) <= 1);
    }

    void aBoldSymbolHasMoreInk()
    {
        for (const QString &name : {u"plus"_s, u"trash"_s, u"magnifyingglass"_s})
            QVERIFY(ink(painted(name, Qt::white, true)) > 1.1 * ink(painted(name)));
    }

    void valuesAreAnnouncedWhenTheyAreOthers()
    {
        Symbol symbol;
        QSignalSpy name(&symbol, &Symbol::nameChanged);
        QSignalSpy color(&symbol, &Symbol::colorChanged);
        QSignalSpy size(&symbol, &Symbol::sizeChanged);
        QSignalSpy bold(&symbol, &Symbol::isBoldChanged);
        for (int again = 0; again < 2; ++again) {
            symbol.setName(u"plus"_s);
            symbol.setColor(Qt::red);
            symbol.setSize(20);
            symbol.setIsBold(true);
        }
        QCOMPARE(name.count(), 1);
        QCOMPARE(color.count(), 1);
        QCOMPARE(size.count(), 1);
        QCOMPARE(bold.count(), 1);
        QCOMPARE(QSizeF(symbol.width(), symbol.height()), QSizeF(20, 20));
    }
};

QTEST_MAIN(TestSymbol)
#include "tst_symbol.moc"
