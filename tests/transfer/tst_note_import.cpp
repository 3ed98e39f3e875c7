#include "transfer/NoteImport.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr Timestamp now{801'777'602.25};

const QByteArray picture = QByteArray::fromBase64(
    "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAQAAAC1HAwCAAAAC0lEQVR42mNkYAAAAAYAAjCB0C8AAAAASUVORK5CYII=");
} // namespace

class TestNoteImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir().mkpath(images()));
    }

    void kindsGoByTheName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("body");
        const auto row = [](const char *name, const QByteArray &bytes, const QString &body) {
            QTest::newRow(name) << QString::fromLatin1(name) << bytes << body;
        };
        row("a.md", "# A\n\n*b*\n", u"<h1>A</h1><p><i>b</i></p>"_s);
        row("a.MARKDOWN", "A\n\n*b*\n", u"<h1>A</h1><p><i>b</i></p>"_s);
        row("a.txt", "\n  A \n\n  *b*\n", u"<h1>A</h1><p><br></p><p>&nbsp;&nbsp;*b*</p>"_s);
        row("a.html", "<title>A</title><p><i>b</i></p>", u"<h1>A</h1><p><i>b</i></p>"_s);
        row("a.htm", "<h1>A</h1><p>b</p>", u"<h1>A</h1><p>b</p>"_s);
        row("list.md", "- a\n- b\n", u"<h1>list</h1><ul><li>a</li><li>b</li></ul>"_s);
        row("empty.txt", "", u"<h1><br></h1>"_s);
        row("crlf.txt", "A\r\nb\r\nc\r\n", u"<h1>A</h1><p>b</p><p>c</p>"_s);
        row("tags.txt", "<h1>a</h1>\n&amp;", u"<h1>&lt;h1&gt;a&lt;/h1&gt;</h1><p>&amp;amp;</p>"_s);
    }
    void kindsGoByTheName()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        const Note note = imported(name, bytes);
        if (name == u"a.txt"_s)
            QCOMPARE(note.headingText(), u"A"_s);
        else
            QTEST(note.body, "body");
        QVERIFY(!note.id.isNull());
        QVERIFY(note.createdAt == now);
        QVERIFY(note.updatedAt == now);
        QVERIFY(!note.isArchived);
    }

    void linesAboutTheFileAreNoHeading_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("body");
        QTest::newRow("with a title")
            << QByteArray("---\ntitle: \"A: b\"\ntags: [c, d]\n---\n\n*e*\n")
            << u"<h1>A: b</h1><p><i>e</i></p><p>tags: [c, d]</p>"_s;
        QTest::newRow("with a heading below")
            << QByteArray("---\ntitle: A\n---\n# B\n\nc\n") << u"<h1>B</h1><p>c</p>"_s;
        QTest::newRow("without a title") << QByteArray("---\ndate: 2024-05-01\n...\nA\n\nb\n")
                                         << u"<h1>A</h1><p>b</p><p>date: 2024-05-01</p>"_s;
        QTest::newRow("a divider")
            << QByteArray("---\n\nA\n\n---\n\nb\n") << u"<h1>A</h1><hr><hr><p>b</p>"_s;
        QTest::newRow("one that does not end")
            << QByteArray("---\nA: b\n\nc\n") << u"<h1>A: b</h1><hr><p>c</p>"_s;
    }
    void linesAboutTheFileAreNoHeading()
    {
        QFETCH(QByteArray, bytes);
        QTEST(imported(u"a.md"_s, bytes).body, "body");
    }

    void encodings_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QString text = u"Zażółć gęślą jaźń\nŚĆŻ"_s;
        const auto encoded = [&text](const char *name) {
            return QByteArray(QStringEncoder(name).encode(text));
        };
        QTest::newRow("UTF-8") << text.toUtf8();
        QTest::newRow("UTF-8 with a mark") << "\xef\xbb\xbf" + text.toUtf8();
        QTest::newRow("UTF-16, little end first") << "\xff\xfe" + encoded("UTF-16LE");
        QTest::newRow("UTF-16, big end first") << "\xfe\xff" + encoded("UTF-16BE");
        QTest::newRow("Windows-1250")
            << QByteArray("Za\xbf\xf3\xb3\xe6 g\xea\x9cl\xb9 ja\x9f\xf1\n\x8c\xc6\xaf");
        QTest::newRow("ISO-8859-2")
            << QByteArray("Za\xbf\xf3\xb3\xe6 g\xea\xb6l\xb1 ja\xbc\xf1\n\xa6\xc6\xaf");
    }
    void encodings()
    {
        QFETCH(QByteArray, bytes);
        QCOMPARE(imported(u"a.txt"_s, bytes).body, u"<h1>Zażółć gęślą jaźń</h1><p>ŚĆŻ</p>"_s);
        QCOMPARE(imported(u"a.md"_s, bytes).headingText(), u"Zażółć gęślą jaźń ŚĆŻ"_s);
    }

    void pagesSayTheirEncoding()
    {
        const QByteArray page = "<meta charset=\"iso-8859-2\"><h1>\xb1 \x8c</h1>";
        QVERIFY(imported(u"a.html"_s, page).body.startsWith(u"<h1>ą"_s));
    }

    void failuresHaveAReason()
    {
        using Reason = ImportFailure::Reason;
        write(u"a.pdf"_s, "a");
        write(u"picture.txt"_s, picture);
        write(u"large.md"_s, QByteArray(largestImport + 1, 'a'));
        write(u"good.md"_s, "a");
        QVERIFY(QDir().mkdir(path(u"folder.md"_s)));
        const ImportedNotes result =
            importNotes({path(u"a.pdf"_s), path(u"picture.txt"_s), path(u"large.md"_s),
                         path(u"good.md"_s), path(u"absent.md"_s), path(u"folder.md"_s)},
                        images(), now);
        QCOMPARE(result.notes.size(), std::size_t(1));
        QCOMPARE(result.notes[0].headingText(), u"a"_s);
        QCOMPARE(result.failures.size(), std::size_t(5));
        QVERIFY((result.failures[0] == ImportFailure{u"a.pdf"_s, Reason::unknownKind}));
        QVERIFY((result.failures[1] == ImportFailure{u"picture.txt"_s, Reason::notText}));
        QVERIFY((result.failures[2] == ImportFailure{u"large.md"_s, Reason::tooLarge}));
        QCOMPARE(result.failures[3].fileName, u"absent.md"_s);
        QCOMPARE(result.failures[3].reason, Reason::unreadable);
        QVERIFY(!result.failures[3].detail.isEmpty());
        QCOMPARE(result.failures[4].reason, Reason::unreadable);
    }

    void theLargestFileIsTaken()
    {
        QByteArray bytes(largestImport, 'a');
        for (qsizetype i = 80; i < bytes.size(); i += 81)
            bytes[i] = '\n';
        QVERIFY(imported(u"a.txt"_s, bytes).body.size() > largestImport);
    }

    void picturesAreTakenAlong_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::newRow("Markdown") << u"a.md"_s
                                  << u"# A\n\n![x](pic/b%20c.png) ![y](<pic/b c.png>)"_s;
        QTest::newRow("HTML") << u"a.html"_s
                              << u"<h1>A</h1><img src=\"pic/b%20c.png\" alt=\"x\">"_s;
        QTest::newRow("inline") << u"a.html"_s
                                << u"<h1>A</h1><img src=\"data:image/png;base64,%1\">"_s.arg(
                                       QString::fromLatin1(picture.toBase64()));
    }
    void picturesAreTakenAlong()
    {
        QFETCH(QString, name);
        QFETCH(QString, text);
        write(u"pic/b c.png"_s, picture);
        const Note note = imported(name, text.toUtf8());
        static const QRegularExpression source(u"src=\"(file://[^\"]+)\""_s);
        const QRegularExpressionMatch match = source.match(note.body);
        QVERIFY2(match.hasMatch(), qPrintable(note.body));
        QFile file(QUrl(match.captured(1)).toLocalFile());
        QCOMPARE(QFileInfo(file).path(), images());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), picture);
    }

    void otherFilesAreNotTaken_data()
    {
        QTest::addColumn<QString>("address");
        QTest::newRow("above") << u"../secret.png"_s;
        QTest::newRow("anywhere") << u"/etc/passwd"_s;
        QTest::newRow("as an address") << u"file:///etc/passwd"_s;
        QTest::newRow("on another machine") << u"file://server/share/a.png"_s;
        QTest::newRow("through a link") << u"link.png"_s;
        QTest::newRow("no picture") << u"text.png"_s;
        QTest::newRow("a folder") << u"."_s;
        QTest::newRow("absent") << u"absent.png"_s;
        QTest::newRow("damaged") << u"data:image/png;base64,*"_s;
    }
    void otherFilesAreNotTaken()
    {
        QFETCH(QString, address);
        write(u"secret.png"_s, picture);
        write(u"notes/text.png"_s, "words");
        QVERIFY(QFile::link(path(u"secret.png"_s), path(u"notes/link.png"_s)));
        const Note note =
            imported(u"notes/a.md"_s, u"# A\n\n![words](%1)\n"_s.arg(address).toUtf8());
        QCOMPARE(note.body, u"<h1>A</h1><p>words</p>"_s);
        QVERIFY(QDir(images()).isEmpty());
    }

    void picturesOfTheWebBecomeLinks()
    {
        const Note note = imported(u"a.md"_s, "# A\n\n![](https://x.org/b.png)\n");
        QCOMPARE(note.body,
                 u"<h1>A</h1><p><a href=\"https://x.org/b.png\">https://x.org/b.png</a></p>"_s);
    }

private:
    [[nodiscard]] QString path(const QString &name) const
    {
        return QDir(m_folder->path()).canonicalPath() + u'/' + name;
    }
    [[nodiscard]] QString images() const { return path(u"data/images"_s); }

    void write(const QString &name, const QByteArray &bytes) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("the test's own file could not be written");
    }

    [[nodiscard]] Note imported(const QString &name, const QByteArray &bytes) const
    {
        write(name, bytes);
        const auto result = importNote(path(name), images(), now);
        const Note *note = std::get_if<Note>(&result);
        if (!note)
            qFatal("not imported: %d", int(std::get<ImportFailure>(result).reason));
        return *note;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_APPLESS_MAIN(TestNoteImport)
#include "tst_note_import.moc"
