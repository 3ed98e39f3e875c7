#include "tests/page/PicturesTest.h"

#include "editor/ScriptLiteral.h"

#include <QDragEnterEvent>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray gif = bytesOfGif();
const QByteArray webp = QByteArray::fromBase64("UklGRhoAAABXRUJQVlA4TA0AAAAvAAAAEAcQERGIiP4HAA==");
} // namespace

/// Pictures that are pasted or dropped: which ones come into a note, and where; their files are the
/// subject of tst_page_picture_files.
class TestPagePictures : public PicturesTest
{
    Q_OBJECT

private Q_SLOTS:
    void screenshotIsPasted_data();
    void screenshotIsPasted();
    void clipboardHoldsMore_data();
    void clipboardHoldsMore();
    void titleTakesNoPicture();
    void kindsOfFiles_data();
    void kindsOfFiles();
    void filesAreDropped_data();
    void filesAreDropped();
    void largeFilesAreRefused();
    void filesAreDragged_data();
    void filesAreDragged();
    void pastedMarkupBringsItsPictures();
    void vectorPictureInMarkupStays();
    void nothingIsFetched();
    void pictureIsNoLargerThanItsLine();
    void typingBesideAPicture();
};

void TestPagePictures::screenshotIsPasted_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::newRow("empty note") << u"|"_s << u"<img src=\"F1\">|"_s;
    QTest::newRow("empty paragraph") << u"<p>a</p><p>|<br></p>"_s << u"<p>a</p><p><img src=\"F1\">|</p>"_s;
    QTest::newRow("within text") << u"<p>a|b</p>"_s << u"<p>a<img src=\"F1\">|b</p>"_s;
    QTest::newRow("over a selection") << u"<p>a[b</p><p>c]d</p>"_s << u"<p>a<img src=\"F1\">|d</p>"_s;
    QTest::newRow("heading") << u"<h2>a|</h2>"_s << u"<h2>a<img src=\"F1\">|</h2>"_s;
    QTest::newRow("item of a list") << u"<ul><li>a|</li></ul>"_s << u"<ul><li>a<img src=\"F1\">|</li></ul>"_s;
    QTest::newRow("item of a checklist") << u"<check><li.checked>☑a|b</li></check>"_s << u"<check><li.checked>☑a<img src=\"F1\">|b</li></check>"_s;
    QTest::newRow("empty item") << u"<check><li>☐|<br></li></check>"_s << u"<check><li>☐<img src=\"F1\">|</li></check>"_s;
}

/// From the real clipboard, with the real key.
void TestPagePictures::screenshotIsPasted()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    m_page.load(before);
    auto *data = new QMimeData;
    data->setImageData(QImage::fromData(bytesOfPicture(Qt::red, "PNG")));
    paste(data);
    QTRY_COMPARE(body(), after);
    QCOMPARE(files().size(), 1);
    QVERIFY(files()[0].endsWith(".png"_L1));
    const QImage stored(m_images.filePath(files()[0]));
    QCOMPARE(stored.size(), QSize(20, 10));
    QCOMPARE(stored.pixelColor(3, 3), QColor(Qt::red));
    QVERIFY(isShown());
}

void TestPagePictures::clipboardHoldsMore_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QString>("after");
    QTest::newRow("picture of a web page") << u"<meta charset='utf-8'><img src=\"https://example.org/a.png\" width=\"20\" style=\"width: 9000px\" alt=\"a\"/>"_s
                                           << QString() << u"<p>a<img src=\"F1\">|b</p>"_s;
    QTest::newRow("picture within a link") << u"<a href=\"https://example.org/\"><img src=\"https://example.org/a.png\"></a>"_s << QString()
                                           << u"<p>a<img src=\"F1\">|b</p>"_s;
    QTest::newRow("path of the file") << QString() << u"/home/ala/a.png"_s << u"<p>a<img src=\"F1\">|b</p>"_s;
    QTest::newRow("cells of a table") << u"<b>milk</b>"_s << u"milk"_s << u"<p>a<b>milk|</b>b</p>"_s;
    QTest::newRow("text") << QString() << u"milk"_s << u"<p>amilk|b</p>"_s;
    QTest::newRow("two pictures") << u"<img src=\"https://example.org/a.png\"><img src=\"https://example.org/b.png\">"_s << QString()
                                  << u"<p>a<img src=\"https://example.org/a.png\"><img src=\"https://example.org/b.png\">|b</p>"_s;
}

void TestPagePictures::clipboardHoldsMore()
{
    QFETCH(QString, html);
    QFETCH(QString, plain);
    QFETCH(QString, after);
    m_page.load(u"<p>a|b</p>"_s);
    auto *data = new QMimeData;
    data->setImageData(QImage::fromData(bytesOfPicture(Qt::red, "PNG")));
    if (!html.isNull())
        data->setHtml(html);
    if (!plain.isNull())
        data->setText(plain);
    paste(data);
    QTRY_COMPARE(body(), after);
    QCOMPARE(files().size(), after.contains(u"F1"_s) ? 1 : 0);
}

void TestPagePictures::titleTakesNoPicture()
{
    m_page.load(u"<p>x</p>"_s, u"Sh|op"_s);
    auto *data = new QMimeData;
    data->setImageData(QImage::fromData(bytesOfPicture(Qt::red, "PNG")));
    paste(data);
    drop(u"#title"_s, {scriptFile(bytesOfPicture(Qt::red, "PNG"), u"a.png"_s, u"image/png"_s)});
    m_page.type(u"z"_s);
    QTRY_COMPARE(m_page.title(), u"Shz|op"_s);
    QCOMPARE(m_page.body(), u"<p>x</p>"_s);
    QVERIFY(files().isEmpty());
}

void TestPagePictures::kindsOfFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("png") << bytesOfPicture(Qt::blue, "PNG") << u"image/png"_s << u"png"_s;
    QTest::newRow("jpeg") << bytesOfPicture(Qt::blue, "JPG") << u"image/jpeg"_s << u"jpg"_s;
    QTest::newRow("gif") << gif << u"image/gif"_s << u"gif"_s;
    QTest::newRow("webp") << webp << u"image/webp"_s << u"webp"_s;
    QTest::newRow("bmp") << bytesOfPicture(Qt::blue, "BMP") << u"image/bmp"_s << u"png"_s; // named as when a note is loaded; shown all the same
    QTest::newRow("large") << bytesOfPicture(Qt::blue, "BMP", {1400, 1000}) << u"image/bmp"_s << u"png"_s;
    for (const char *type : {"image/svg+xml", "image/tiff", "text/plain", "text/html", "application/pdf", ""})
        QTest::newRow(*type ? type : "no type") << "<svg xmlns='http://www.w3.org/2000/svg'/>"_ba << QString::fromLatin1(type) << QString();
    QTest::newRow("nothing in it") << QByteArray() << u"image/png"_s << QString();
}

void TestPagePictures::kindsOfFiles()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, type);
    QFETCH(QString, suffix);
    m_page.load(u"<p>milk</p>"_s);
    drop(u"#body p"_s, {scriptFile(bytes, u"file"_s, type)});
    if (suffix.isEmpty()) {
        QCOMPARE(m_page.text(u"bodyEl.innerHTML"_s), u"<p>milk</p>"_s);
        QCOMPARE(m_page.js(u"past.length"_s).toInt(), 0);
        return;
    }
    QTRY_COMPARE(body(), u"<p><img src=\"F1\">|milk</p>"_s);
    QCOMPARE(files().size(), 1);
    QCOMPARE(QFileInfo(files()[0]).suffix(), suffix);
    QCOMPARE(contents(), QList<QByteArray>{bytes});
    QVERIFY(isShown());
}

void TestPagePictures::filesAreDropped_data()
{
    const QByteArray png = bytesOfPicture(Qt::red, "PNG");
    const QByteArray jpeg = bytesOfPicture(Qt::green, "JPG");
    const QString first = scriptFile(png, u"a.png"_s, u"image/png"_s);
    const QString second = scriptFile(jpeg, u"b.jpg"_s, u"image/jpeg"_s);
    const QString other = scriptFile("x"_ba, u"x.html"_s, u"text/html"_s);
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QList<QByteArray>>("stored");
    QTest::newRow("one") << QStringList{first} << u"<p>a</p><p><img src=\"F1\">|milk</p>"_s << QList<QByteArray>{png};
    QTest::newRow("two") << QStringList{first, second} << u"<p>a</p><p><img src=\"F1\"><img src=\"F2\">|milk</p>"_s << QList<QByteArray>{png, jpeg};
    QTest::newRow("with another file") << QStringList{other, second} << u"<p>a</p><p><img src=\"F1\">|milk</p>"_s << QList<QByteArray>{jpeg};
    QTest::newRow("other files") << QStringList{other, other} << u"<p>a|</p><p>milk</p>"_s << QList<QByteArray>();
}

void TestPagePictures::filesAreDropped()
{
    QFETCH(QStringList, files);
    QFETCH(QString, after);
    QFETCH(QList<QByteArray>, stored);
    m_page.load(u"<p>a|</p><p>milk</p>"_s);
    drop(u"#body p:last-child"_s, files);
    QTRY_COMPARE(body(), after);
    QCOMPARE(contents(), stored);
}

void TestPagePictures::largeFilesAreRefused()
{
    m_page.load(u"<p>milk</p>"_s);
    m_page.forgetReports();
    drop(u"#body p"_s, {u"new File([new Uint8Array(LARGEST_PICTURE + 1)], 'a.png', { type: 'image/png' })"_s});
    QTRY_COMPARE(m_page.logs.size(), 1U);
    QVERIFY(m_page.logs[0].startsWith(u"picture-too-large: "_s));
    QCOMPARE(m_page.text(u"bodyEl.innerHTML"_s), u"<p>milk</p>"_s);
}

void TestPagePictures::filesAreDragged_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("selector");
    QTest::addColumn<QString>("after");
    QTest::newRow("picture") << QStringList{u"a.png"_s} << u"#body p"_s << u"<p><img src=\"F1\">|milk</p>"_s;
    QTest::newRow("capitals") << QStringList{u"B.JPG"_s} << u"#body p"_s << u"<p><img src=\"F1\">|milk</p>"_s;
    QTest::newRow("two pictures") << QStringList{u"a.png"_s, u"B.JPG"_s} << u"#body p"_s << u"<p><img src=\"F1\"><img src=\"F2\">|milk</p>"_s;
    QTest::newRow("picture and other files") << QStringList{u"x.pdf"_s, u"a.png"_s, u"x"_s} << u"#body p"_s << u"<p><img src=\"F1\">|milk</p>"_s;
    QTest::newRow("other file") << QStringList{u"x.pdf"_s} << u"#body p"_s << QString();
    QTest::newRow("page") << QStringList{u"x.html"_s} << u"#body p"_s << QString();
    QTest::newRow("file without a kind") << QStringList{u"x"_s} << u"#body p"_s << QString();
    QTest::newRow("drawing") << QStringList{u"x.svg"_s} << u"#body p"_s << QString();
    QTest::newRow("over the title") << QStringList{u"a.png"_s} << u"#title"_s << QString();
}

/// A real drag, as the window system tells of it: what brings no picture, or has it over the title,
/// is refused while it is still held, which is what the pointer shows.
void TestPagePictures::filesAreDragged()
{
    QFETCH(QStringList, names);
    QFETCH(QString, selector);
    QFETCH(QString, after);
    const QTemporaryDir desk;
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &name : names) {
        QFile file(desk.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(name == u"a.png" ? bytesOfPicture(Qt::red, "PNG") : bytesOfPicture(Qt::green, "JPG"));
        urls.push_back(QUrl::fromLocalFile(file.fileName()));
    }
    data.setUrls(urls);
    m_page.load(u"<p>milk</p>"_s);
    const QVariantList at = m_page.js(u"(() => { const r = document.querySelector(%1).getBoundingClientRect(); return [r.left + 1, r.top + 8]; })()"_s
                                          .arg(jsString(selector))).toList();
    const QPoint point(at[0].toInt(), at[1].toInt());
    const auto actions = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    QDragEnterEvent enter(point, actions, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&m_page.view(), &enter);
    QDragMoveEvent move(point, actions, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&m_page.view(), &move); // the window takes the first one as part of the entering
    QCoreApplication::sendEvent(&m_page.view(), &move);
    QCOMPARE(move.isAccepted(), !after.isNull());
    if (after.isNull()) {
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(&m_page.view(), &leave);
        QCOMPARE(m_page.text(u"bodyEl.innerHTML"_s), u"<p>milk</p>"_s);
        return;
    }
    QDropEvent drop(point, actions, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&m_page.view(), &drop);
    QTRY_COMPARE(body(), after);
    QVERIFY(isShown());
}

void TestPagePictures::pastedMarkupBringsItsPictures()
{
    const QByteArray png = bytesOfPicture(Qt::red, "PNG");
    m_page.load(u"<p>a|</p>"_s);
    auto *data = new QMimeData;
    data->setHtml(u"<p>milk<img src=\"%1\" width=\"5\" height=\"5\" style=\"width:5px\"></p><p><img src='%2'>tea</p>"_s
                      .arg(dataAddress(png, u"png"_s), dataAddress(gif, u"gif"_s)));
    data->setText(u"milk\ntea"_s);
    paste(data);
    QTRY_COMPARE(body(), u"<p>amilk<img src=\"F1\"></p><p><img src=\"F2\">tea|</p>"_s);
    QCOMPARE(contents(), QList<QByteArray>({png, gif}));
}

/// As it was: the host would give its file the name of another kind, which does not show.
void TestPagePictures::vectorPictureInMarkupStays()
{
    m_page.load(u"<p>a|</p>"_s);
    auto *data = new QMimeData;
    const QString address = dataAddress("<svg xmlns='http://www.w3.org/2000/svg'/>"_ba, u"svg+xml"_s);
    data->setHtml(u"<b>x</b><img src=\"%1\">"_s.arg(address));
    paste(data);
    QTRY_COMPARE(m_page.body(), u"<p>a<b>x</b><img src=\"%1\">|</p>"_s.arg(address));
    QCOMPARE(m_page.js(u"picturesUnderWay.size"_s).toInt(), 0);
}

void TestPagePictures::nothingIsFetched()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    m_page.load(u"<p>a|</p>"_s);
    auto *data = new QMimeData;
    const QString address = u"http://127.0.0.1:%1/a.png"_s.arg(server.serverPort());
    data->setHtml(u"<b>x</b><img src=\"%1\">"_s.arg(address));
    paste(data);
    QTRY_COMPARE(m_page.body(), u"<p>a<b>x</b><img src=\"%1\">|</p>"_s.arg(address));
    QTRY_VERIFY(m_page.js(u"bodyEl.querySelector('img').complete"_s).toBool());
    QVERIFY(!server.hasPendingConnections());
}

void TestPagePictures::pictureIsNoLargerThanItsLine()
{
    m_page.load(u"<p>milk</p>"_s);
    drop(u"#body p"_s, {scriptFile(bytesOfPicture(Qt::red, "PNG", {3000, 100}), u"a.png"_s, u"image/png"_s)});
    QTRY_COMPARE(body(), u"<p><img src=\"F1\">|milk</p>"_s);
    QVERIFY(isShown());
    QVERIFY(m_page.js(u"bodyEl.querySelector('img').getBoundingClientRect().width <= bodyEl.clientWidth"_s).toBool());
    m_page.click(u"#body img"_s); // selects it at most; nothing to resize it by appears
    QCOMPARE(m_page.js(u"document.body.children.length - document.body.querySelectorAll('script').length"_s).toInt(), 2);
    m_page.type(u"z"_s);
    QVERIFY(!m_page.composed().contains(QRegularExpression(u"<img[^>]*(style|width|height)"_s)));
}

void TestPagePictures::typingBesideAPicture()
{
    m_page.load(u"<p>ab</p>"_s);
    drop(u"#body p"_s, {scriptFile(gif, u"a.gif"_s, u"image/gif"_s)});
    QTRY_COMPARE(body(), u"<p><img src=\"F1\">|ab</p>"_s);
    m_page.press(Qt::Key_Return, {}, u"\r"_s);
    QTRY_COMPARE(body(), u"<p><img src=\"F1\"></p><p>|ab</p>"_s);
    m_page.press(Qt::Key_Backspace);
    QTRY_COMPARE(body(), u"<p><img src=\"F1\">|ab</p>"_s);
    m_page.press(Qt::Key_Backspace);
    QTRY_COMPARE(body(), u"<p>|ab</p>"_s);
}

PLIM_PAGE_TEST_MAIN(TestPagePictures)
#include "tst_page_pictures.moc"
