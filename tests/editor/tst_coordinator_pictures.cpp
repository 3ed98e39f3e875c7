#include "editor/EditorProfile.h"
#include "tests/editor/EditorFixture.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString a = u"<h1>a</h1>"_s;
const QByteArray picture("\x89PNG\r\n\x1a\n\0\xff", 10);

QString offer(const QString &ticket, const QString &type = u"png"_s,
              const QByteArray &bytes = picture)
{
    return u"{\"ticket\":\"%1\",\"data\":\"data:image/%2;base64,%3\"}"_s.arg(
        ticket, type, QString::fromLatin1(bytes.toBase64()));
}

QString refusal(const QString &ticket)
{
    return u"window.pictureStored(\"%1\", \"\");"_s.arg(ticket);
}
} // namespace

/// Pictures that the page hands over, to be kept beside the notes.
class TestCoordinatorPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPictureIsStoredAndItsFileTold_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("suffix");
        QTest::newRow("png") << u"png"_s << u"png"_s;
        QTest::newRow("jpeg") << u"jpeg"_s << u"jpg"_s;
        QTest::newRow("gif") << u"gif"_s << u"gif"_s;
        QTest::newRow("webp") << u"webp"_s << u"webp"_s;
        QTest::newRow("others are png") << u"bmp"_s << u"png"_s;
    }
    void aPictureIsStoredAndItsFileTold()
    {
        QFETCH(QString, type);
        QFETCH(QString, suffix);
        const QTemporaryDir images;
        EditorFixture f;
        f.coordinator.setImagesDirectory(images.path());
        f.showNote(noteA, a);
        f.view.post(u"plimImage"_s, offer(u"7"_s, type));
        const QStringList files = QDir(images.path()).entryList(QDir::Files);
        QCOMPARE(files.size(), 1);
        QCOMPARE(QFileInfo(files[0]).suffix(), suffix);
        QFile file(images.filePath(files[0]));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), picture);
        QCOMPARE(f.view.log(),
                 QStringList{u"window.pictureStored(\"7\", \"%1\");"_s.arg(
                     QUrl::fromLocalFile(file.fileName()).toString(QUrl::FullyEncoded))});
        QCOMPARE(f.changes, Changes()); // the note changes when the page says so
    }

    void theFileIsToldInItsEncodedForm()
    {
        const QTemporaryDir parent;
        const QString directory = parent.path() + u"/żółć \"a\" #1 100%"_s;
        QVERIFY(QDir().mkpath(directory));
        EditorFixture f;
        f.coordinator.setImagesDirectory(directory);
        f.showNote(noteA, a);
        f.view.post(u"plimImage"_s, offer(u"1"_s));
        QCOMPARE(f.view.log().size(), 1);
        QVERIFY(
            f.view.log()[0].contains(u"/%C5%BC%C3%B3%C5%82%C4%87%20%22a%22%20%231%20100%25/"_s));
    }

    void whatTheDiskRefusesStaysInThePage()
    {
        const QTemporaryDir parent;
        EditorFixture f;
        f.coordinator.setImagesDirectory(parent.path() + u"/absent"_s);
        f.showNote(noteA, a);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Failed to store image: .+"_s));
        f.view.post(u"plimImage"_s, offer(u"1"_s));
        QCOMPARE(f.view.log(), QStringList{refusal(u"1"_s)});
    }

    void withoutADirectoryNothingIsStored()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        QVERIFY(EditorProfile::shared().imagesDirectory().isEmpty());
        f.view.post(u"plimImage"_s, offer(u"1"_s));
        QCOMPARE(f.view.log(), QStringList{refusal(u"1"_s)});
    }

    void theSharedDirectoryIsTheUsualOne()
    {
        const QTemporaryDir images;
        EditorProfile::shared().setImagesDirectory(images.path());
        EditorFixture f;
        f.showNote(noteA, a);
        f.view.post(u"plimImage"_s, offer(u"1"_s));
        EditorProfile::shared().setImagesDirectory({});
        QCOMPARE(QDir(images.path()).entryList(QDir::Files).size(), 1);
    }

    void whatIsNoPictureIsRefused_data()
    {
        QTest::addColumn<QString>("data");
        QTest::newRow("nothing") << u""_s;
        QTest::newRow("a page") << u"data:text/html;base64,AAAA"_s;
        QTest::newRow("a file") << u"file:///etc/passwd"_s;
        QTest::newRow("corrupt") << u"data:image/png;base64,AA*A"_s;
        QTest::newRow("cut off") << u"data:image/png;base64,AAA"_s;
        QTest::newRow("empty") << u"data:image/png;base64,"_s;
        QTest::newRow("not base64") << u"data:image/svg+xml,x"_s;
    }
    void whatIsNoPictureIsRefused()
    {
        QFETCH(QString, data);
        const QTemporaryDir images;
        EditorFixture f;
        f.coordinator.setImagesDirectory(images.path());
        f.showNote(noteA, a);
        f.view.post(u"plimImage"_s, u"{\"ticket\":\"1\",\"data\":\"%1\"}"_s.arg(data));
        QCOMPARE(f.view.log(), QStringList{refusal(u"1"_s)});
        QVERIFY(QDir(images.path()).isEmpty());
    }

    void whatCannotBeReadIsNotAnswered_data()
    {
        QTest::addColumn<QString>("body");
        for (const char *body : {"", "x", "[]", "{}", "{\"data\":\"data:image/png;base64,AAAA\"}",
                                 "{\"ticket\":1,\"data\":\"data:image/png;base64,AAAA\"}"})
            QTest::newRow(*body ? body : "nothing") << QString::fromLatin1(body);
    }
    void whatCannotBeReadIsNotAnswered()
    {
        QFETCH(QString, body);
        const QTemporaryDir images;
        EditorFixture f;
        f.coordinator.setImagesDirectory(images.path());
        f.showNote(noteA, a);
        f.view.post(u"plimImage"_s, body);
        QVERIFY(f.view.log().isEmpty());
        QVERIFY(QDir(images.path()).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestCoordinatorPictures)
#include "tst_coordinator_pictures.moc"
