#include "core/NoteArray.h"

#include "tests/RandomSeed.h"
#include "tests/core/Duration.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <ranges>
#include <vector>

using namespace Qt::Literals::StringLiterals;

static_assert(std::forward_iterator<NoteArray::const_iterator>);
static_assert(std::ranges::forward_range<const NoteArray>);

namespace
{
Note numbered(int number)
{
    Note note;
    note.title = QString::number(number);
    return note;
}

NoteArray numberedUpTo(int count)
{
    NoteArray notes;
    for (int i = 0; i < count; ++i)
        notes.append(numbered(i));
    return notes;
}
} // namespace

class TestNoteArray : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void empty()
    {
        const NoteArray notes;
        QVERIFY(notes.isEmpty());
        QCOMPARE(notes.size(), 0);
        QVERIFY(notes.begin() == notes.end());
        QVERIFY(notes == NoteArray{});
        QVERIFY(notes != NoteArray{numbered(1)});
    }

    void movedFromIsEmpty()
    {
        NoteArray notes = numberedUpTo(300);
        const NoteArray taken = std::move(notes);
        notes = NoteArray();
        notes.append(numbered(1));
        QCOMPARE(notes.size(), 1);
        QCOMPARE(taken.size(), 300);
    }

    void doesWhatAVectorDoes()
    {
        const quint32 seed = randomSeed();
        QRandomGenerator random(seed);
        std::vector<Note> expected;
        NoteArray notes;
        for (int step = 0; step < 6000; ++step) {
            const int size = int(expected.size());
            const int operation = size == 0 ? 0 : random.bounded(step < 4000 ? 6 : 12);
            if (operation < 4) {
                const int at = operation == 0 ? size : random.bounded(size + 1);
                expected.insert(expected.begin() + at, numbered(step));
                notes.insert(at, numbered(step));
            } else if (operation == 4) {
                const int at = random.bounded(size);
                expected[std::size_t(at)] = numbered(step);
                notes.replace(at, numbered(step));
            } else {
                const int at = random.bounded(size);
                const Note taken = notes.takeAt(at);
                QVERIFY(taken == expected[std::size_t(at)]);
                expected.erase(expected.begin() + at);
            }
            QCOMPARE(notes.size(), qsizetype(expected.size()));
            if (step % 97 == 0)
                QVERIFY(std::ranges::equal(notes, expected));
        }
        QVERIFY(std::ranges::equal(notes, expected));
        for (std::size_t i = 0; i < expected.size(); ++i)
            QVERIFY(notes[qsizetype(i)] == expected[i]);
    }

    void equalityLooksAtNotesNotAtChunks()
    {
        NoteArray front;
        for (int i = 999; i >= 0; --i)
            front.insert(0, numbered(i));
        const NoteArray back = numberedUpTo(1000);
        QVERIFY(front == back);
        front.replace(500, numbered(-1));
        QVERIFY(front != back);
    }

    void aSnapshotKeepsWhatItSaw()
    {
        NoteArray notes = numberedUpTo(1000);
        const NoteArray snapshot = notes;
        notes.replace(3, numbered(-3));
        notes.insert(500, numbered(-500));
        notes.removeAt(900);
        notes.append(numbered(-1));
        QVERIFY(snapshot == numberedUpTo(1000));
        QCOMPARE(notes[3].title, u"-3"_s);
        QCOMPARE(notes.size(), 1001);
    }

    void anEditBesideASnapshotCopiesOneChunk()
    {
        NoteArray notes = numberedUpTo(10'000);
        const NoteArray snapshot = notes;
        notes.replace(5000, numbered(-1));
        int copied = 0;
        for (qsizetype i = 0; i < notes.size(); ++i)
            copied += &notes[i] == &snapshot[i] ? 0 : 1;
        QVERIFY2(copied > 0 && copied <= 128, qPrintable(QString::number(copied)));
    }

    void anEditWithoutSnapshotsCopiesNothing()
    {
        NoteArray notes = numberedUpTo(1000);
        const Note *before = &notes[501];
        notes.replace(500, numbered(-1));
        QCOMPARE(&notes[501], before);
    }

    void anEditCostsTheSameInALongList()
    {
        // Here a list is a thousand times longer, so a copy of it would take a thousand times as
        // long; ten times is the deeper search for the place.
        const auto edits = [](NoteArray notes) {
            return bestDuration([notes]() mutable {
                for (int i = 0; i < 2000; ++i) {
                    const NoteArray snapshot = notes;
                    notes.replace(notes.size() / 2, numbered(i));
                }
            });
        };
        const double few = edits(numberedUpTo(128));
        const double many = edits(numberedUpTo(10'000));
        QVERIFY2(many < 10 * few, qPrintable(u"%1 ns, %2 ns"_s.arg(few).arg(many)));
    }
};

QTEST_MAIN(TestNoteArray)
#include "tst_note_array.moc"
