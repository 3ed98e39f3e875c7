#include "pages/engine/PageRequestFilter.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestPageRequestFilter : public QObject
{
    Q_OBJECT

    /// Fonts, pictures, and beside them what is nobody's business.
    struct Room {
        Room()
        {
            for (const QString &file :
                 {u"app/Fonts/Outfit-Bold.ttf"_s, u"app/Fonts/OFL.txt"_s, u"app/Fonts/more/x.ttf"_s,
                  u"app/FontsX/a.ttf"_s, u"data/images/a.png"_s, u"data/images/ą ć%41.png"_s,
                  u"data/images/sub/b.png"_s, u"data/imagesX/a.png"_s, u"data/notes.json"_s,
                  u"data/a.ttf"_s}) {
                const QString path = at(file);
                QDir().mkpath(QFileInfo(path).path());
                QFile(path).open(QIODevice::WriteOnly);
            }
            QFile::link(at(u"data/notes.json"_s), at(u"data/images/out.png"_s));
            QFile::link(at(u"data"_s), at(u"data/images/up"_s));
            QFile::link(at(u"data/images/a.png"_s), at(u"data/images/in.png"_s));
            QFile::link(at(u"nowhere"_s), at(u"data/images/broken.png"_s));
            QFile::link(at(u"data/images"_s), at(u"pictures"_s));
            QFile::link(at(u"data/notes.json"_s), at(u"app/Fonts/notes.ttf"_s));
        }
        [[nodiscard]] QString at(const QString &name) const
        {
            return QDir(m_directory.path()).filePath(name);
        }
        [[nodiscard]] QString url(const QString &name) const { return u"file://"_s + at(name); }
        PageRequestFilter filter() const { return {at(u"app/Fonts"_s), at(u"data/images"_s)}; }

        QTemporaryDir m_directory;
    };

private Q_SLOTS:
    void requests_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<bool>("isAllowed");
        const auto row = [](const char *name, const QString &url, bool isAllowed) {
            QTest::newRow(name) << url << isAllowed;
        };
        // "~/" stands for the room.
        row("font", u"~/app/Fonts/Outfit-Bold.ttf"_s, true);
        row("font further down", u"~/app/Fonts/more/x.ttf"_s, true);
        row("picture", u"~/data/images/a.png"_s, true);
        row("picture further down", u"~/data/images/sub/b.png"_s, true);
        row("picture with a query", u"~/data/images/a.png?x#y"_s, true);
        row("encoded name", u"~/data/images/%C4%85%20%C4%87%2541.png"_s, true);
        row("link to a picture", u"~/data/images/in.png"_s, true);
        row("picture by way of a link", u"~/pictures/a.png"_s, true);
        row("there and back", u"~/data/images/../images/a.png"_s, true);
        row("data", u"data:image/png;base64,AAAA"_s, true);
        row("data of any kind", u"data:text/html,x"_s, true);
        row("blob", u"blob:null/0f8fad5b-d9cb-469f-a165-70867728950e"_s, true);
        row("scheme in capitals", u"DATA:image/png,x"_s, true);

        row("http", u"http://plim.org/a.png"_s, false);
        row("https", u"https://plim.org/Outfit-Bold.ttf"_s, false);
        row("ftp", u"ftp://plim.org/a.png"_s, false);
        row("ws", u"ws://plim.org/"_s, false);
        row("qrc", u"qrc:/qt/qml/Plim/Editor/page/style.css"_s, false);
        row("chrome", u"chrome://gpu"_s, false);
        row("javascript", u"javascript:alert(1)"_s, false);
        row("filesystem", u"filesystem:file:///temporary/a.png"_s, false);
        row("no scheme", u"/etc/passwd"_s, false);
        row("empty", u""_s, false);
        row("file elsewhere", u"file:///etc/passwd"_s, false);
        row("the notes", u"~/data/notes.json"_s, false);
        row("a font elsewhere", u"~/data/a.ttf"_s, false);
        row("no font beside the fonts", u"~/app/Fonts/OFL.txt"_s, false);
        row("names that begin alike", u"~/data/imagesX/a.png"_s, false);
        row("font directories that begin alike", u"~/app/FontsX/a.ttf"_s, false);
        row("the directory", u"~/data/images"_s, false);
        row("the directory, with a slash", u"~/data/images/"_s, false);
        row("a directory in it", u"~/data/images/sub/"_s, false);
        row("missing", u"~/data/images/c.png"_s, false);
        row("up", u"~/data/images/../notes.json"_s, false);
        row("up, encoded", u"~/data/images/%2e%2e/notes.json"_s, false);
        row("up, slash encoded", u"~/data/images/..%2Fnotes.json"_s, false);
        row("up, encoded twice", u"~/data/images/%252e%252e/notes.json"_s, false);
        row("zero in the name", u"~/data/images/a.png%00.ttf"_s, false);
        row("link out", u"~/data/images/out.png"_s, false);
        row("directory link out", u"~/data/images/up/notes.json"_s, false);
        row("link to nowhere", u"~/data/images/broken.png"_s, false);
        row("link out among the fonts", u"~/app/Fonts/notes.ttf"_s, false);
        row("another host", u"host~/data/images/a.png"_s, false);
        row("this host", u"localhost~/data/images/a.png"_s, false);
    }
    void requests()
    {
        QFETCH(QString, url);
        const Room room;
        url.replace(u"~/"_s, room.m_directory.path() + u'/');
        if (url.contains(room.m_directory.path()))
            url.prepend(u"file://"_s);
        if (url.contains(u"%00"_s)) {
            for (int lookUps = 0; lookUps < 2; ++lookUps)
                QTest::ignoreMessage(QtWarningMsg, "Broken filename passed to function");
        }
        QTEST(room.filter().isAllowed(QUrl(url)), "isAllowed");
    }

    void picturesMayComeLater()
    {
        const QTemporaryDir data;
        const QString images = data.filePath(u"Plim/images"_s);
        const PageRequestFilter filter({}, images);
        const QUrl url = QUrl::fromLocalFile(images + u"/a.png"_s);
        QVERIFY(!filter.isAllowed(url));
        QVERIFY(QDir().mkpath(images));
        QVERIFY(!filter.isAllowed(url));
        QFile picture(url.toLocalFile());
        QVERIFY(picture.open(QIODevice::WriteOnly));
        QVERIFY(filter.isAllowed(url));
        QVERIFY(picture.remove());
        QVERIFY(!filter.isAllowed(url));
    }

    void noDirectoryLetsNothingThrough()
    {
        const Room room;
        const PageRequestFilter nothing({}, {});
        QVERIFY(!nothing.isAllowed(QUrl(room.url(u"data/images/a.png"_s))));
        QVERIFY(!nothing.isAllowed(QUrl(room.url(u"app/Fonts/Outfit-Bold.ttf"_s))));
        QVERIFY(nothing.isAllowed(QUrl(u"data:,x"_s)));
        const PageRequestFilter missing(room.at(u"none"_s), room.at(u"none"_s));
        QVERIFY(!missing.isAllowed(QUrl(room.url(u"data/images/a.png"_s))));
    }

    void directoriesMayBeLinks()
    {
        const Room room;
        const PageRequestFilter filter({}, room.at(u"pictures"_s));
        QVERIFY(filter.isAllowed(QUrl(room.url(u"data/images/a.png"_s))));
        QVERIFY(filter.isAllowed(QUrl(room.url(u"pictures/a.png"_s))));
        QVERIFY(!filter.isAllowed(QUrl(room.url(u"data/notes.json"_s))));
    }
};

QTEST_GUILESS_MAIN(TestPageRequestFilter)
#include "tst_page_request_filter.moc"
