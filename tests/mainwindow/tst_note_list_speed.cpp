#include "mainwindow/NoteListModel.h"

#include "tests/core/Duration.h"
#include "tests/mainwindow/ManyNotes.h"
#include "tests/mainwindow/NoteListFixture.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{
constexpr int noteCount = 10'000;

/// In milliseconds of the processor, the median of seven runs.
template <typename Prepare, typename Work>
double medianDuration(Prepare prepare, Work work)
{
    std::array<double, 7> durations{};
    for (double &milliseconds : durations) {
        prepare();
        milliseconds = duration(work) / 1e6;
    }
    std::ranges::nth_element(durations, durations.begin() + durations.size() / 2);
    return durations[durations.size() / 2];
}
} // namespace

/// Catches a catastrophe on any machine; what things cost exactly, bench_note_list tells.
class TestNoteListSpeed : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_f.store.setNotes(manyNotes(noteCount));
        m_model.setSearchText(u"x"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_model.isSearchComplete(), 120'000);
    }

    void aKeystroke_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::newRow("the first letter") << u""_s << u"e"_s;
        QTest::newRow("a rare letter") << u""_s << u"q"_s;
        QTest::newRow("here and there") << u""_s << u"7"_s;
        QTest::newRow("here and there back") << u"7"_s << u""_s;
        QTest::newRow("a word") << u"mil"_s << u"milk"_s;
        QTest::newRow("no hit") << u"milk"_s << u"milkx"_s;
        QTest::newRow("no hit of two letters") << u""_s << u"źź"_s;
        QTest::newRow("back") << u"milkx"_s << u"milk"_s;
        QTest::newRow("cleared") << u"milkx"_s << u""_s;
    }
    void aKeystroke()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        const double duration = medianDuration([&] { m_model.setSearchText(before); },
                                               [&] { m_model.setSearchText(after); });
        QVERIFY2(duration < 100 * slowness, qPrintable(u"%1 ms"_s.arg(duration)));
        QVERIFY(m_model.isSearchComplete());
    }

    void anEditAmidASearch()
    {
        m_model.setSearchText(u"milk"_s);
        Note note = m_f.store.notes()[noteCount / 2];
        const double duration = medianDuration([&] { note.body += u"<p>more</p>"_s; },
                                               [&] { m_f.store.updateNote(note); });
        QVERIFY2(duration < 5 * slowness, qPrintable(u"%1 ms"_s.arg(duration)));
    }

    void aSearchBeforeAnyTextIsThere()
    {
        std::unique_ptr<NoteListModel> model;
        const double duration = medianDuration(
            [&] { model = std::make_unique<NoteListModel>(m_f.store, m_f.selection); },
            [&] { model->setSearchText(u"milk"_s); });
        QVERIFY2(duration < 150 * slowness, qPrintable(u"%1 ms"_s.arg(duration)));
        QVERIFY(!model->isSearchComplete());
    }

private:
    NoteListFixture m_f;
    NoteListModel m_model{m_f.store, m_f.selection};
};

QTEST_MAIN(TestNoteListSpeed)
#include "tst_note_list_speed.moc"
