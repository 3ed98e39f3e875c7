#include "tests/page/PageFixture.h"

#include "editor/EditorProfile.h"
#include "editor/ScriptLiteral.h"

#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QDragEnterEvent>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

using Kind = EditorCommand::Kind;

namespace
{
QByteArray bytesOfPicture(const QColor &color, const char *format, QSize size = {20, 10})
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!image.save(&buffer, format))
        qFatal("no picture of kind %s", format);
    return bytes;
}

const QByteArray gif = QByteArray::fromBase64("R0lGODlhAQABAIAAAP8AAAAAACwAAAAAAQABAAACAkQBADs=");
const QByteArray webp = QByteArray::fromBase64("UklGRhoAAABXRUJQVlA4TA0AAAAvAAAAEAcQERGIiP4HAA==");

/// A file of a drag or of the clipboard, as the page's own script writes it.
QString scriptFile(const QByteArray &bytes, const QString &name, const QString &type)
{
    return u"new File([Uint8Array.from(atob('%1'), c => c.charCodeAt(0))], '%2', { type: '%3' })"_s
        .arg(QString::fromLatin1(bytes.toBase64()), name, type);
}

QString dataAddress(const QByteArray &bytes, const QString &kind)
{
    return u"data:image/"_s + kind + u";base64,"_s + QString::fromLatin1(bytes.toBase64());
}
} // namespace

/// Pictures that are pasted or dropped: they are in the note at once, and in a file of their own soon.
class TestPagePictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
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
    void reportsDoNotCarryTheBytes();
    void whatIsTypedMeanwhileIsReported();
    void silentHostDoesNotHoldReportsUp();
    void switchMeanwhileLosesNothing();
    void samePictureTwiceIsOneFile();
    void refusedPictureStaysInItsNote();
    void undoAndRedo();
    void undoBeforeTheAnswer();
    void pictureIsNoLargerThanItsLine();
    void typingBesideAPicture();

private:
    void paste(QMimeData *data);
    void drop(const QString &selector, const QStringList &files);
    /// The body with each picture's file as F1, F2, … in the order they stand there.
    QString body();
    [[nodiscard]] QStringList files() const { return QDir(m_images.path()).entryList(QDir::Files); }
    [[nodiscard]] QList<QByteArray> contents();
    [[nodiscard]] bool isShown();
    void holdHost(bool isHeld);

    QTemporaryDir m_images;
    QTcpServer m_server;
    PageFixture m_page;
    const QUuid m_note = QUuid::createUuid();
};

void TestPagePictures::initTestCase()
{
    EditorProfile::shared().setImagesDirectory(m_images.path());
    QVERIFY(m_server.listen(QHostAddress::LocalHost));
    QVERIFY(m_page.open(m_note, u"<h1>T</h1>"_s));
}

void TestPagePictures::init()
{
    for (const QString &name : files())
        QFile::remove(m_images.filePath(name));
    m_page.coordinator().setImagesDirectory(m_images.path());
}

void TestPagePictures::cleanup()
{
    holdHost(false);
    QTRY_COMPARE(m_page.js(u"picturesUnderWay.size"_s).toInt(), 0);
}

/// As if the host took its time: its answers wait in the page.
void TestPagePictures::holdHost(bool isHeld)
{
    m_page.js(isHeld ? u"window.storedNow = pictureStored; window.answers = []; "
                       "window.pictureStored = (...answer) => { window.answers.push(answer); }; null"_s
                     : u"if (window.storedNow) { window.pictureStored = storedNow; for (const answer of window.answers) pictureStored(...answer); "
                       "window.storedNow = null; } null"_s);
}

void TestPagePictures::paste(QMimeData *data)
{
    QGuiApplication::clipboard()->setMimeData(data);
    m_page.press(Qt::Key_V, Qt::ControlModifier);
}

/// Drops the files at the start of the element's first line.
void TestPagePictures::drop(const QString &selector, const QStringList &files)
{
    m_page.js(u"{ const data = new DataTransfer(); for (const file of [%1]) data.items.add(file); "
              "const element = document.querySelector(%2); const r = element.getBoundingClientRect(); "
              "element.dispatchEvent(new DragEvent('drop', { dataTransfer: data, bubbles: true, cancelable: true, "
              "clientX: r.left + 1, clientY: r.top + 8 })); } null"_s.arg(files.join(u", "_s), jsString(selector)));
}

QString TestPagePictures::body()
{
    QString text = m_page.body();
    static const QRegularExpression file(u"file://[^\"]*/([0-9A-F-]{36}\\.[a-z]+)"_s);
    for (int n = 1; text.contains(file); ++n)
        text.replace(file.match(text).captured(0), u"F%1"_s.arg(n));
    return text;
}

/// Of the pictures' files, in the order they stand in the note.
QList<QByteArray> TestPagePictures::contents()
{
    QList<QByteArray> found;
    for (const QVariant &address : m_page.js(u"[...bodyEl.querySelectorAll('img')].map(img => img.getAttribute('src'))"_s).toList()) {
        QFile file(QUrl(address.toString()).toLocalFile());
        if (file.open(QIODevice::ReadOnly))
            found.push_back(file.readAll());
    }
    return found;
}

bool TestPagePictures::isShown()
{
    return QTest::qWaitFor([this] {
        return m_page.js(u"[...bodyEl.querySelectorAll('img')].every(img => img.complete && img.naturalWidth > 0)"_s).toBool();
    });
}

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
    QTRY_COMPARE_WITH_TIMEOUT(body(), after, 3000);
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
    QTRY_COMPARE_WITH_TIMEOUT(body(), after, 3000);
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
    m_page.logs.clear();
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
    m_page.load(u"<p>a|</p>"_s);
    auto *data = new QMimeData;
    const QString address = u"http://127.0.0.1:%1/a.png"_s.arg(m_server.serverPort());
    data->setHtml(u"<b>x</b><img src=\"%1\">"_s.arg(address));
    paste(data);
    QTRY_COMPARE(m_page.body(), u"<p>a<b>x</b><img src=\"%1\">|</p>"_s.arg(address));
    QTRY_VERIFY(m_page.js(u"bodyEl.querySelector('img').complete"_s).toBool());
    QVERIFY(!m_server.hasPendingConnections());
}

void TestPagePictures::reportsDoNotCarryTheBytes()
{
    m_page.load(u"<p>a|</p>"_s);
    m_page.js(u"flushNow()"_s);
    m_page.changes.clear();
    m_page.js(u"throttleClock = 0"_s); // the engine's own event would be reported at once
    auto *data = new QMimeData;
    data->setImageData(QImage::fromData(bytesOfPicture(Qt::red, "PNG")));
    paste(data);
    m_page.type(u"milk"_s);
    QTRY_VERIFY(!m_page.changes.empty() && m_page.changes.back().html.endsWith("milk</p>"_L1));
    for (const PageFixture::Change &change : m_page.changes) {
        QVERIFY2(!change.html.contains(u"data:"_s) && !change.html.contains(u"blob:"_s), qPrintable(change.html));
        QVERIFY(change.html.contains(u"<img src=\"file://"_s));
    }
}

void TestPagePictures::whatIsTypedMeanwhileIsReported()
{
    m_page.load(u"<p>a|</p>"_s);
    m_page.js(u"flushNow()"_s);
    holdHost(true);
    drop(u"#body p"_s, {scriptFile(gif, u"a.gif"_s, u"image/gif"_s)});
    m_page.changes.clear();
    m_page.type(u"milk"_s);
    QTRY_COMPARE(m_page.js(u"window.answers.length"_s).toInt(), 1);
    QVERIFY(m_page.changes.empty());
    holdHost(false);
    QTRY_COMPARE(m_page.changes.size(), 1U); // with the answer, all of it at once
    QVERIFY(m_page.changes[0].html.contains(u"<p><img src=\"file://"_s) && m_page.changes[0].html.contains(u">milka</p>"_s));
}

void TestPagePictures::silentHostDoesNotHoldReportsUp()
{
    m_page.load(u"<p>a|</p>"_s);
    m_page.js(u"flushNow()"_s);
    holdHost(true);
    m_page.changes.clear();
    drop(u"#body p"_s, {scriptFile(gif, u"a.gif"_s, u"image/gif"_s)});
    QTRY_VERIFY_WITH_TIMEOUT(!m_page.changes.empty(), 3000);
    QCOMPARE(m_page.changes[0].html, u"<h1>T</h1><p><img src=\"%1\">a</p>"_s.arg(dataAddress(gif, u"gif"_s)));
    m_page.changes.clear();
    m_page.type(u"z"_s);
    QTRY_VERIFY(!m_page.changes.empty()); // nor those that follow
    holdHost(false); // a late answer is welcome all the same
    QTRY_COMPARE(body(), u"<p><img src=\"F1\">z|a</p>"_s);
    QTRY_VERIFY(m_page.changes.back().html.contains(u"<img src=\"file://"_s));
}

void TestPagePictures::switchMeanwhileLosesNothing()
{
    m_page.load(u"<p>a|</p>"_s);
    m_page.js(u"flushNow()"_s);
    holdHost(true);
    m_page.changes.clear();
    drop(u"#body p"_s, {scriptFile(gif, u"a.gif"_s, u"image/gif"_s)});
    m_page.type(u"z"_s);
    const QUuid other = QUuid::createUuid();
    m_page.ask(other, u"<h1>O</h1><p>other</p>"_s);
    QTRY_COMPARE(m_page.coordinator().loadedNoteID(), other);
    QTRY_VERIFY(!m_page.changes.empty());
    QCOMPARE(m_page.changes.back().noteID, m_note);
    QCOMPARE(m_page.changes.back().html, u"<h1>T</h1><p><img src=\"%1\">za</p>"_s.arg(dataAddress(gif, u"gif"_s)));
    holdHost(false); // the answer is not for this note
    QCOMPARE(m_page.text(u"bodyEl.innerHTML"_s), u"<p>other</p>"_s);
    m_page.ask(m_note, u"<h1>T</h1>"_s);
    QTRY_COMPARE(m_page.coordinator().loadedNoteID(), m_note);
}

void TestPagePictures::samePictureTwiceIsOneFile()
{
    m_page.load(u"<p>milk</p>"_s);
    const QString picture = scriptFile(gif, u"a.gif"_s, u"image/gif"_s);
    drop(u"#body p"_s, {picture, picture});
    QTRY_COMPARE(body(), u"<p><img src=\"F1\"><img src=\"F1\">|milk</p>"_s);
    QCOMPARE(files().size(), 1);
}

void TestPagePictures::refusedPictureStaysInItsNote()
{
    m_page.coordinator().setImagesDirectory(m_images.filePath(u"absent"_s));
    const QString address = dataAddress(gif, u"gif"_s);
    m_page.load(u"<p>milk</p>"_s);
    m_page.changes.clear();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Failed to store image: .+"_s));
    drop(u"#body p"_s, {scriptFile(gif, u"a.gif"_s, u"image/gif"_s)});
    QTRY_COMPARE(m_page.js(u"picturesUnderWay.size"_s).toInt(), 0);
    QTRY_VERIFY(!m_page.changes.empty());
    QCOMPARE(m_page.changes.back().html, u"<h1>T</h1><p><img src=\"%1\">milk</p>"_s.arg(address));
    m_page.js(u"picturesRefused.clear(); null"_s);
}

void TestPagePictures::undoAndRedo()
{
    m_page.load(u"<p>a|b</p>"_s);
    auto *data = new QMimeData;
    data->setImageData(QImage::fromData(bytesOfPicture(Qt::red, "PNG")));
    paste(data);
    QTRY_COMPARE(body(), u"<p>a<img src=\"F1\">|b</p>"_s);
    m_page.type(u"z"_s);
    m_page.run(Kind::undo);
    QCOMPARE(body(), u"<p>a<img src=\"F1\">|b</p>"_s);
    m_page.run(Kind::undo);
    QCOMPARE(body(), u"<p>a|b</p>"_s);
    m_page.run(Kind::redo);
    QCOMPARE(body(), u"<p>a<img src=\"F1\">|b</p>"_s);
    QVERIFY(isShown());
    m_page.run(Kind::redo);
    QCOMPARE(body(), u"<p>a<img src=\"F1\">z|b</p>"_s);
}

void TestPagePictures::undoBeforeTheAnswer()
{
    m_page.load(u"<p>a|b</p>"_s);
    holdHost(true);
    auto *data = new QMimeData;
    data->setImageData(QImage::fromData(bytesOfPicture(Qt::red, "PNG")));
    paste(data);
    QTRY_COMPARE(m_page.js(u"window.answers.length"_s).toInt(), 1);
    m_page.type(u"z"_s);
    m_page.run(Kind::undo);
    m_page.run(Kind::undo);
    QCOMPARE(body(), u"<p>a|b</p>"_s);
    holdHost(false);
    m_page.run(Kind::redo);
    QCOMPARE(body(), u"<p>a<img src=\"F1\">|b</p>"_s);
    m_page.run(Kind::redo);
    QCOMPARE(body(), u"<p>a<img src=\"F1\">z|b</p>"_s);
    QVERIFY(!m_page.composed().contains(u"data:"_s));
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
