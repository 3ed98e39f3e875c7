#include "core/NoteStore.h"

#include "core/NotesJson.h"
#include "tests/RandomSeed.h"
#include "tests/core/DataDirectory.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QStringList pieces{
    u"<h1>"_s,
    u"</h1>"_s,
    u"<H1 class=\"a\">"_s,
    u"<h1 "_s,
    u"<div>"_s,
    u"</div>"_s,
    u"<div style=\"x\">"_s,
    u"<span>"_s,
    u"</span>"_s,
    u"<p style='b' class=\"checklist\">"_s,
    u"<b"_s,
    u">"_s,
    u"/"_s,
    u"=\"c\""_s,
    u" class=\"a\""_s,
    u" style=\"a"_s,
    u"\""_s,
    u"'"_s,
    u"<"_s,
    u"&"_s,
    u"#6"_s,
    u"amp;"_s,
    u"<!--"_s,
    u"-->"_s,
    u"<![CDATA["_s,
    u"]]>"_s,
    u"<?"_s,
    u"<title>"_s,
    u"</title>"_s,
    u"<style>"_s,
    u"</style"_s,
    u"<script>"_s,
    u"<br>"_s,
    u"<img src=\"data:image/gif;base64,R0lGODlh\">"_s,
    u"<img src='data:image/png;base64,R0lG' style=\"w\" src=\"data:image/png;base64,R0lG\">"_s,
    u" src=\"data:image/jpeg;base64,AAAA\""_s,
    u"<img src=\"data:image/png;base64,*\">"_s,
    u"data:image/"_s,
    u"word"_s,
    u"zażółć"_s,
    u" "_s,
    u"\n"_s,
    QString(QChar::Nbsp),
    QString(QChar::Null),
    QString(QChar(0x2028)),
    QString::fromUtf8("\xF0\x9F\x8D\x8E")};

QString hostileText(QRandomGenerator &random, int longest)
{
    QString text;
    for (int count = random.bounded(longest); count > 0; --count)
        text += pieces[random.bounded(pieces.size())];
    return text;
}
} // namespace

class TestRepairs : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        if (const QFileInfo memory(u"/dev/shm"_s); memory.isWritable())
            qputenv("TMPDIR", "/dev/shm"); // many pictures, and no disk is the subject
    }

private Q_SLOTS:
    /// What one start has repaired no later one touches.
    void aSecondStartFindsNothingToRepair()
    {
        const quint32 seed = randomSeed();
        QRandomGenerator random(seed);
        for (int round = 0; round < 10; ++round) {
            const DataDirectory data;
            NoteArray notes;
            for (int i = 0; i < 300; ++i) {
                Note note = Note::fresh(Timestamp{1000});
                note.title = random.bounded(2) == 0 ? hostileText(random, 4) : QString();
                note.body = hostileText(random, 24);
                notes.append(note);
            }
            data.write(u"notes.json"_s, encodeNotes(notes).value_or(QByteArray()));
            const NoteArray once = NoteStore(data.path()).notes();
            QCOMPARE(once.size(), notes.size());
            QVERIFY(once != notes);
            const QStringList pictures = QDir(data.path(u"images"_s)).entryList(QDir::Files);
            QVERIFY(!pictures.isEmpty());

            const NoteArray twice = NoteStore(data.path()).notes();
            for (qsizetype row = 0; row < once.size(); ++row) {
                if (twice[row] != once[row])
                    QFAIL(qPrintable(u"seed %1: %2 -> %3 -> %4"_s.arg(seed).arg(
                        notes[row].body, once[row].body, twice[row].body)));
            }
            QCOMPARE(QDir(data.path(u"images"_s)).entryList(QDir::Files), pictures);
            QCOMPARE(data.names(), (QStringList{u"notes.json"_s, u"notes.json.bak.1"_s}));
        }
    }
};

QTEST_GUILESS_MAIN(TestRepairs)
#include "tst_repairs.moc"
