#include "core/ImageStore.h"

#include "tests/core/Duration.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QByteArray picture("\x89PNG\r\n\x1a\n\0\xff", 10);

QString base64()
{
    return QString::fromLatin1(picture.toBase64());
}

QString inlineImage(const QString &type = u"png"_s)
{
    return u"<img src=\"data:image/"_s + type + u";base64,"_s + base64() + u"\">"_s;
}

/// The file URLs in the HTML, in order.
QStringList sources(const QString &html)
{
    static const QRegularExpression source(u"src=\"(file://[^\"]*)\""_s);
    QStringList found;
    for (auto it = source.globalMatch(html); it.hasNext();)
        found += it.next().captured(1);
    return found;
}

QByteArray content(const QString &url)
{
    QFile file(QUrl(url).toLocalFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

class TestImageStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void twoPicturesBecomeTwoFiles()
    {
        const QTemporaryDir images;
        const MigratedHTML migrated = migrateImages(u"<h1>a</h1>"_s + inlineImage() +
                                                        u"<div>b</div>"_s + inlineImage() + u"c"_s,
                                                    images.path());
        QVERIFY(migrated.changed);
        const QStringList files = sources(migrated.html);
        QCOMPARE(files.size(), 2);
        QVERIFY(files[0] != files[1]);
        QCOMPARE(content(files[0]), picture);
        QCOMPARE(content(files[1]), picture);
        QCOMPARE(migrated.html, u"<h1>a</h1><img src=\"%1\"><div>b</div><img src=\"%2\">c"_s.arg(
                                    files[0], files[1]));
        QCOMPARE(QDir(images.path()).entryList(QDir::Files).size(), 2);
        QVERIFY(!migrateImages(migrated.html, images.path()).changed);
    }

    // What looks like a picture in another attribute's value is words, and a quote written there would
    // end them.
    void wordsInAValueStay()
    {
        const QTemporaryDir images;
        const QString words = u"src='data:image/png;base64,"_s + base64() + u"'"_s;
        for (const QString &html : {u"<a title=\"see %1 there\">a</a>"_s.arg(words),
                                    u"<img alt=\"%1\">"_s.arg(words),
                                    u"<img <a href=\"x%1y ` style = \"z>"_s.arg(words),
                                    u"<img alt='a src='data:image/png;base64,"_s + base64() +
                                        u"\">b <p style=\"c\">"_s}) {
            const MigratedHTML migrated = migrateImages(html, images.path());
            QVERIFY2(!migrated.changed, qPrintable(html));
            QCOMPARE(migrated.html, html);
        }
        // Beside them a picture is one.
        const MigratedHTML migrated =
            migrateImages(u"<img alt=\"%1\" %1 title=\"%1\">"_s.arg(words), images.path());
        QCOMPARE(sources(migrated.html).size(), 1);
        QCOMPARE(migrated.html, u"<img alt=\"%1\" src=\"%2\" title=\"%1\">"_s.arg(
                                    words, sources(migrated.html)[0]));
        QCOMPARE(QDir(images.path()).entryList(QDir::Files).size(), 1);
    }

    void fileNamesAreIdentities()
    {
        const QTemporaryDir images;
        const std::optional<QUrl> url = storeImageData(picture, u"JPG"_s, images.path());
        QVERIFY(url);
        static const QRegularExpression name(
            u"^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\\.jpg$"_s);
        QVERIFY2(name.match(url->fileName()).hasMatch(), qPrintable(url->fileName()));
        QCOMPARE(QFileInfo(url->toLocalFile()).absolutePath(), images.path());
    }

    void extensions_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("extension");
        QTest::newRow("png") << u"png"_s << u"png"_s;
        QTest::newRow("jpeg") << u"jpeg"_s << u"jpg"_s;
        QTest::newRow("jpg") << u"JPG"_s << u"jpg"_s;
        QTest::newRow("gif") << u"gif"_s << u"gif"_s;
        QTest::newRow("webp") << u"WebP"_s << u"webp"_s;
        QTest::newRow("others are png") << u"svg+xml"_s << u"png"_s;
    }
    void extensions()
    {
        QFETCH(QString, type);
        const QTemporaryDir images;
        const QStringList files = sources(migrateImages(inlineImage(type), images.path()).html);
        QCOMPARE(files.size(), 1);
        QTEST(QFileInfo(files[0]).suffix(), "extension");
    }

    void quotesAndSpaces_data()
    {
        QTest::addColumn<QString>("html");
        const QString data = u"data:image/png;base64,"_s + base64();
        QTest::newRow("apostrophes") << u"<img src='"_s + data + u"' alt=\"a\">"_s;
        QTest::newRow("spaces") << u"<img src \n= \""_s + data + u" \n\" alt=\"a\">"_s;
    }
    void quotesAndSpaces()
    {
        QFETCH(QString, html);
        const QTemporaryDir images;
        const MigratedHTML migrated = migrateImages(html, images.path());
        QVERIFY(migrated.changed);
        const QStringList files = sources(migrated.html);
        QCOMPARE(files.size(), 1);
        QCOMPARE(content(files[0]), picture);
        QCOMPARE(migrated.html, u"<img src=\""_s + files[0] + u"\" alt=\"a\">"_s);
    }

    void staysAsItWas_data()
    {
        QTest::addColumn<QString>("html");
        const auto image = [](const QString &payload) {
            return u"<img src=\"data:image/png;base64,"_s + payload + u"\">"_s;
        };
        QTest::newRow("no picture") << u"<h1>a</h1>"_s;
        QTest::newRow("corrupt") << image(u"AA*A"_s);
        QTest::newRow("corrupt inside") << image(u"AAAA\nAAAA"_s);
        QTest::newRow("the other alphabet") << image(u"AA-_"_s);
        QTest::newRow("not padded") << image(u"AAA"_s);
        QTest::newRow("padded inside") << image(u"AA==AAAA"_s);
        QTest::newRow("not Latin") << image(u"AAAż"_s);
        QTest::newRow("blank") << image(u" "_s);
        QTest::newRow("empty") << image(u""_s);
        QTest::newRow("not base64") << u"<img src=\"data:image/svg+xml,%3Csvg%3E\">"_s;
        QTest::newRow("with parameters")
            << u"<img src=\"data:image/svg+xml;charset=utf-8;base64,AAAA\">"_s;
        QTest::newRow("not quoted") << u"<img src=data:image/png;base64,AAAA>"_s;
        QTest::newRow("not closed") << u"<img src=\"data:image/png;base64,AAAA"_s;
        QTest::newRow("a file") << u"<img src=\"file:///a.png\">"_s;
        QTest::newRow("words about sources") << u"<p>src=\"data:image/png;base64,AAAA\"</p>"_s;
    }
    void staysAsItWas()
    {
        QFETCH(QString, html);
        const QTemporaryDir images;
        const MigratedHTML migrated = migrateImages(html, images.path());
        QVERIFY(!migrated.changed);
        QCOMPARE(migrated.html, html);
        QVERIFY(QDir(images.path()).isEmpty());
    }

    void oneBadPictureLeavesTheOthers()
    {
        const QTemporaryDir images;
        const QString bad = u"<img src=\"data:image/png;base64,*\">"_s;
        const QString open = u"<img src=\"data:image/svg+xml,%3C\"><p>words</p>"_s;
        const MigratedHTML migrated = migrateImages(bad + open + inlineImage(), images.path());
        QVERIFY(migrated.changed);
        QVERIFY(migrated.html.startsWith(bad + open + u"<img src=\"file://"_s));
        QCOMPARE(sources(migrated.html).size(), 1);
    }

    void pathsAreEncoded()
    {
        const QTemporaryDir parent;
        const QString directory = parent.path() + u"/żółć & \"more\" #1 100%"_s;
        QVERIFY(QDir().mkpath(directory));
        const MigratedHTML migrated = migrateImages(inlineImage(), directory);
        QVERIFY(migrated.changed);
        const QStringList files = sources(migrated.html);
        QCOMPARE(files.size(), 1);
        QVERIFY(files[0].contains(u"%20&amp;%20%22more%22%20%231%20100%25"_s));
        QString url = files[0];
        QCOMPARE(content(url.replace(u"&amp;"_s, u"&"_s)), picture);
    }

    void oneInlinePictureIsStoredTheSameWay()
    {
        const QTemporaryDir images;
        // The name goes by the kind it says, not by what its letters happen to spell.
        const QByteArray data = QByteArray::fromBase64("gifjpegw");
        const std::optional<QUrl> url =
            storeInlineImage(u"data:image/png;base64,gifjpegw"_s, images.path());
        QVERIFY(url);
        QCOMPARE(QFileInfo(url->fileName()).suffix(), u"png"_s);
        QCOMPARE(content(url->toString(QUrl::FullyEncoded)), data);
        for (const QString &address :
             {u""_s, u"data:text/html;base64,AAAA"_s, u"data:image/png;base64,AA*A"_s,
              u"data:image/png,AAAA"_s, u"file:///etc/passwd"_s})
            QVERIFY(!storeInlineImage(address, images.path()));
        QVERIFY(!storeInlineImage(u"data:image/png;base64,AAAA"_s, {}));
        QCOMPARE(QDir(images.path()).entryList(QDir::Files).size(), 1);
    }

    void whatCannotBeWrittenStaysInline()
    {
        const QTemporaryDir parent;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Failed to store image: .+"_s));
        const MigratedHTML migrated = migrateImages(inlineImage(), parent.path() + u"/absent"_s);
        QVERIFY(!migrated.changed);
        QCOMPARE(migrated.html, inlineImage());
    }

    void time_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::newRow("sources not closed") << u"<img src=\"data:image/png"_s;
        QTest::newRow("apostrophes not closed") << u"<img src='data:image/png;base64,A"_s;
        QTest::newRow("corrupt") << u"<img src=\"data:image/png;base64,*\">"_s;
        QTest::newRow("in one tag") << u" src=\"data:image/png;base64,*\""_s;
        QTest::newRow("no type") << u"<img src=\"data:image/\">"_s;
        QTest::newRow("spaces") << u"src   "_s;
    }
    void time()
    {
        QFETCH(QString, pattern);
        const QTemporaryDir images;
        const double ratio = growth(
            [&](qsizetype size) {
                const QString html = u"<p data:image/ "_s + pattern.repeated(size) + u"\">"_s;
                QVERIFY(!migrateImages(html, images.path()).changed);
            },
            10'000);
        QVERIFY2(ratio < linearGrowthBound, qPrintable(QString::number(ratio)));
    }
};

QTEST_MAIN(TestImageStore)
#include "tst_image_store.moc"
