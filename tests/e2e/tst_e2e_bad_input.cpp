#include "tests/e2e/PlimRun.h"
#include "tests/e2e/StoredNotes.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QScopeGuard>
#include <QTest>

#include <csignal>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// Whatever lies where the notes should be: the program starts, says so in one line, keeps what it
/// could not read and keeps working.
class TestBadInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsOnAnything_data();
    void startsOnAnything();
    void directoryInPlaceOfTheFile();
    void fileInPlaceOfTheDirectory();
    void unreadableDirectory();
    void unknownKeysAreIgnored();
    void hostileNotesAreOnlyNotes();
};

void TestBadInput::startsOnAnything_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isDamaged");
    QTest::newRow("no file") << QByteArray() << false;
    QTest::newRow("no notes") << QByteArray("[]") << false;
    QTest::newRow("empty file") << QByteArray("") << true;
    QTest::newRow("cut off") << QByteArray(R"([{"id":"11111111-1111-4111-8111-111111111111","body":"<h1>A</h1>precious)") << true;
    QTest::newRow("not UTF-8") << QByteArray("[{\"body\":\"precious \xff\xfe\"}]") << true;
    QTest::newRow("not an array") << QByteArray(R"({"body":"precious"})") << true;
    QTest::newRow("an array of other things") << QByteArray(R"([1,"precious",null])") << true;
    QTest::newRow("a value of the wrong type")
        << QByteArray(R"([{"id":"11111111-1111-4111-8111-111111111111","body":"precious","textSize":3}])") << true;
    QTest::newRow("random bytes") << QByteArray("\x00\x01\x02\xff precious \x7f\x1b", 16) << true;
}

void TestBadInput::startsOnAnything()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isDamaged);
    const ThrowAwayHome home;
    if (!bytes.isNull()) {
        QDir().mkpath(home.data());
        QFile file(home.data() + u"/notes.json"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }
    PlimRun plim(home);
    QVERIFY(plim.open());
    if (!bytes.isNull())
        QCOMPARE(home.read(u"data/Plim/notes.json"_s), bytes); // untouched until there is something to save
    QVERIFY(plim.addNote());
    plim.type(u"new words"_s);
    QTRY_COMPARE(plim.bodyOnDisk(), u"<h1>new words</h1>"_s);
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(plim.notesOnDisk().size(), 1);
    QCOMPARE(plim.warnings().size(), isDamaged ? 1 : 0);
    if (isDamaged) {
        const QStringList kept = QDir(home.data()).entryList({u"notes.json.damaged-*"_s});
        QCOMPARE(kept.size(), 1);
        QCOMPARE(home.read(u"data/Plim/"_s + kept[0]), bytes);
    }
}

void TestBadInput::directoryInPlaceOfTheFile()
{
    const ThrowAwayHome home;
    QVERIFY(QDir().mkpath(home.data() + u"/notes.json/inside"_s));
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.addNote());
    plim.type(u"new words"_s);
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QVERIFY2(!plim.warnings().isEmpty(), qPrintable(plim.said()));
    // Where the file cannot be, or after the directory was put aside: nothing of it is gone.
    bool isThere = false;
    for (QDirIterator it(home.data(), QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories); it.hasNext();)
        isThere |= it.next().endsWith("/inside"_L1);
    QVERIFY(isThere);
}

void TestBadInput::fileInPlaceOfTheDirectory()
{
    const ThrowAwayHome home;
    QVERIFY(QDir().mkpath(home.path(u"data"_s)));
    QFile file(home.data());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write("precious"), 8);
    file.close();
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.addNote());
    plim.type(u"new words"_s);
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QVERIFY(!plim.warnings().isEmpty());
    QCOMPARE(home.read(u"data/Plim"_s), QByteArray("precious"));
}

void TestBadInput::unreadableDirectory()
{
    if (geteuid() == 0)
        QSKIP("nothing is forbidden to root");
    const ThrowAwayHome home;
    QDir().mkpath(home.data());
    const QByteArray bytes = R"([{"id":"11111111-1111-4111-8111-111111111111","body":"<h1>A</h1>precious"}])";
    QFile file(home.data() + u"/notes.json"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
    file.close();
    QVERIFY(QFile::setPermissions(home.data(), QFile::ReadOwner | QFile::ExeOwner));
    const auto restore = qScopeGuard([&] { QFile::setPermissions(home.data(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner); });
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.selectRow(0, u"11111111-1111-4111-8111-111111111111"_s));
    plim.type(u"new words"_s);
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QVERIFY(!plim.warnings().isEmpty());
    QCOMPARE(home.read(u"data/Plim/notes.json"_s), bytes);
}

void TestBadInput::unknownKeysAreIgnored()
{
    const ThrowAwayHome home;
    QJsonObject note = storedNote(u"11111111-1111-4111-8111-111111111111"_s, u"<h1>A</h1>b"_s);
    note.insert(u"pinnedAt"_s, 12);
    note.insert(u"color"_s, u"ultraviolet"_s);
    note.insert(u"textSize"_s, u"huge"_s);
    QDir().mkpath(home.data());
    QFile file(home.data() + u"/notes.json"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write(QJsonDocument(QJsonArray{note}).toJson()) > 0);
    file.close();
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.selectRow(0, u"11111111-1111-4111-8111-111111111111"_s));
    plim.type(u"c"_s);
    QTRY_COMPARE(plim.bodyOnDisk(), u"<h1>A</h1>bc"_s);
    QCOMPARE(plim.notesOnDisk().at(0).toObject().value("color"_L1).toString(), u"ultraviolet"_s);
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(plim.warnings(), QStringList());
}

void TestBadInput::hostileNotesAreOnlyNotes()
{
    const ThrowAwayHome home;
    const QString id = u"11111111-1111-4111-8111-111111111111"_s;
    const QString attack = u"<h1>A<img src=x onerror=\"document.title='attacked'\"></h1><p>words</p><script>setContent('gone')</script>"
                           "<a href=\"javascript:setContent('gone')\">x</a><iframe src=\"file:///etc/passwd\"></iframe>"
                           "<meta http-equiv=\"refresh\" content=\"0;url=file:///etc/passwd\">"_s;
    QDir().mkpath(home.data());
    QFile file(home.data() + u"/notes.json"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write(QJsonDocument(QJsonArray{storedNote(id, attack)}).toJson()) > 0);
    file.close();
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.selectRow(0, id));
    plim.type(u"!"_s);
    QTRY_VERIFY2(plim.bodyOnDisk().contains(u"!"_s), qPrintable(plim.bodyOnDisk()));
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(plim.bodyOnDisk(), u"<h1>A<img src=\"x\"></h1><p>words</p><a>x!</a>"_s);
}

QTEST_GUILESS_MAIN(TestBadInput)
#include "tst_e2e_bad_input.moc"
