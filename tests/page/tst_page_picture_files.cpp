#include "tests/page/PicturesTest.h"

#include <QImage>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

using Kind = EditorCommand::Kind;

namespace
{
const QByteArray gif = bytesOfGif();
} // namespace

/// A picture is in the note at once, and in a file of its own soon: whatever happens meanwhile.
class TestPagePictureFiles : public PicturesTest
{
    Q_OBJECT

private Q_SLOTS:
    void reportsDoNotCarryTheBytes();
    void whatIsTypedMeanwhileIsReported();
    void silentHostDoesNotHoldReportsUp();
    void switchMeanwhileLosesNothing();
    void samePictureTwiceIsOneFile();
    void refusedPictureStaysInItsNote();
    void undoAndRedo();
    void undoBeforeTheAnswer();

private:
    void waitForTheHost();
};

/// However long it takes to answer about the next picture; a busy machine may need more than the page's patience.
void TestPagePictureFiles::waitForTheHost()
{
    m_page.js(u"holdTimer = setTimeout(() => {}); null"_s);
}

void TestPagePictureFiles::reportsDoNotCarryTheBytes()
{
    m_page.load(u"<p>a|</p>"_s);
    m_page.forgetReports();
    waitForTheHost();
    m_page.js(u"throttleClock = 0"_s); // the engine's own event would be reported at once
    auto *data = new QMimeData;
    data->setImageData(QImage::fromData(bytesOfPicture(Qt::red, "PNG")));
    paste(data);
    m_page.type(u"milk"_s);
    QTRY_VERIFY(!m_page.changes.empty() && m_page.changes.back().html.endsWith("milk</p>"_L1));
    for (const PageFixture::Change &change : m_page.changes) {
        QVERIFY2(!change.html.contains(u"data:"_s) && !change.html.contains(u"blob:"_s),
                 qPrintable(change.html));
        QVERIFY(change.html.contains(u"<img src=\"file://"_s));
    }
}

void TestPagePictureFiles::whatIsTypedMeanwhileIsReported()
{
    m_page.load(u"<p>a|</p>"_s);
    m_page.forgetReports();
    holdHost(true);
    waitForTheHost();
    drop(u"#body p"_s, {scriptFile(gif, u"a.gif"_s, u"image/gif"_s)});
    m_page.type(u"milk"_s);
    QTRY_COMPARE(m_page.js(u"window.answers.length"_s).toInt(), 1);
    QVERIFY(m_page.changes.empty());
    holdHost(false);
    QTRY_COMPARE(m_page.changes.size(), 1U); // with the answer, all of it at once
    QVERIFY(m_page.changes[0].html.contains(u"<p><img src=\"file://"_s) &&
            m_page.changes[0].html.contains(u">milka</p>"_s));
}

void TestPagePictureFiles::silentHostDoesNotHoldReportsUp()
{
    m_page.load(u"<p>a|</p>"_s);
    m_page.forgetReports();
    holdHost(true);
    drop(u"#body p"_s, {scriptFile(gif, u"a.gif"_s, u"image/gif"_s)});
    QTRY_VERIFY(!m_page.changes.empty());
    QCOMPARE(m_page.changes[0].html,
             u"<h1>T</h1><p><img src=\"%1\">a</p>"_s.arg(dataAddress(gif, u"gif"_s)));
    m_page.forgetReports();
    m_page.type(u"z"_s);
    QTRY_VERIFY(!m_page.changes.empty()); // nor those that follow
    holdHost(false);                      // a late answer is welcome all the same
    QTRY_COMPARE(body(), u"<p><img src=\"F1\">z|a</p>"_s);
    QTRY_VERIFY(m_page.changes.back().html.contains(u"<img src=\"file://"_s));
}

void TestPagePictureFiles::switchMeanwhileLosesNothing()
{
    m_page.load(u"<p>a|</p>"_s);
    m_page.forgetReports();
    holdHost(true);
    drop(u"#body p"_s, {scriptFile(gif, u"a.gif"_s, u"image/gif"_s)});
    m_page.type(u"z"_s);
    const QUuid other = QUuid::createUuid();
    m_page.ask(other, u"<h1>O</h1><p>other</p>"_s);
    QTRY_COMPARE(m_page.coordinator().loadedNoteID(), other);
    QTRY_VERIFY(!m_page.changes.empty());
    QCOMPARE(m_page.changes.back().noteID, m_note);
    QCOMPARE(m_page.changes.back().html,
             u"<h1>T</h1><p><img src=\"%1\">za</p>"_s.arg(dataAddress(gif, u"gif"_s)));
    holdHost(false); // the answer is not for this note
    QCOMPARE(m_page.text(u"bodyEl.innerHTML"_s), u"<p>other</p>"_s);
    m_page.ask(m_note, u"<h1>T</h1>"_s);
    QTRY_COMPARE(m_page.coordinator().loadedNoteID(), m_note);
}

void TestPagePictureFiles::samePictureTwiceIsOneFile()
{
    m_page.load(u"<p>milk</p>"_s);
    const QString picture = scriptFile(gif, u"a.gif"_s, u"image/gif"_s);
    drop(u"#body p"_s, {picture, picture});
    QTRY_COMPARE(body(), u"<p><img src=\"F1\"><img src=\"F1\">|milk</p>"_s);
    QCOMPARE(files().size(), 1);
}

void TestPagePictureFiles::refusedPictureStaysInItsNote()
{
    m_page.coordinator().setImagesDirectory(m_images.filePath(u"absent"_s));
    const QString address = dataAddress(gif, u"gif"_s);
    m_page.load(u"<p>milk</p>"_s);
    m_page.forgetReports();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Failed to store image: .+"_s));
    drop(u"#body p"_s, {scriptFile(gif, u"a.gif"_s, u"image/gif"_s)});
    QTRY_COMPARE(m_page.js(u"picturesUnderWay.size"_s).toInt(), 0);
    QTRY_VERIFY(!m_page.changes.empty());
    QCOMPARE(m_page.changes.back().html, u"<h1>T</h1><p><img src=\"%1\">milk</p>"_s.arg(address));
    m_page.js(u"picturesRefused.clear(); null"_s);
}

void TestPagePictureFiles::undoAndRedo()
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

void TestPagePictureFiles::undoBeforeTheAnswer()
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

PLIM_PAGE_TEST_MAIN(TestPagePictureFiles)
#include "tst_page_picture_files.moc"
