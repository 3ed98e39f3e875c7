#include "core/NoteColor.h"
#include "core/String+HTML.h"
#include "mainwindow/MarkedText.h"
#include "mainwindow/TimestampFormat.h"
#include "shell/L10n.h"
#include "tests/Patience.h"
#include "tests/RandomSeed.h"
#include "tests/mainwindow/NoteListFixture.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// The clock of the list. The store has its own, which goes.
QDateTime noon()
{
    static const QDateTime noon(QDate::currentDate(), QTime(12, 0));
    return noon;
}

struct Row {
    QUuid id;
    QString heading;
    QString titleMarkup;
    QString preview;
    QString previewMarkup;
    QString time;
    QColor color;

    [[nodiscard]] bool operator==(const Row &) const = default;
};

/// A view that knows only what the model has told it: it reads a row when the row comes in and
/// when the model says that it has changed.
class FaithfulView : public QObject
{
public:
    explicit FaithfulView(const NoteListModel &model) : m_model(model)
    {
        readAll();
        connect(&model, &NoteListModel::modelReset, this, [this] { readAll(); });
        connect(&model, &NoteListModel::rowsInserted, this,
                [this](const QModelIndex &, int first, int last) {
                    for (int row = first; row <= last; ++row)
                        rows.insert(row, read(row));
                });
        connect(&model, &NoteListModel::rowsRemoved, this,
                [this](const QModelIndex &, int first, int last) {
                    rows.remove(first, last - first + 1);
                });
        connect(&model, &NoteListModel::rowsMoved, this,
                [this](const QModelIndex &, int from, int, const QModelIndex &, int to) {
                    rows.move(from, to > from ? to - 1 : to);
                });
        connect(&model, &NoteListModel::dataChanged, this,
                [this](const QModelIndex &first, const QModelIndex &last) {
                    for (int row = first.row(); row <= last.row(); ++row)
                        rows[row] = read(row);
                });
    }

    QList<Row> rows;

private:
    [[nodiscard]] Row read(int row) const
    {
        const QModelIndex index = m_model.index(row);
        return {index.data(NoteListModel::NoteIDRole).toUuid(),
                index.data(NoteListModel::TitleRole).toString(),
                index.data(NoteListModel::TitleMarkupRole).toString(),
                index.data(NoteListModel::PreviewRole).toString(),
                index.data(NoteListModel::PreviewMarkupRole).toString(),
                index.data(NoteListModel::TimestampRole).toString(),
                index.data(NoteListModel::ColorRole).value<QColor>()};
    }
    void readAll()
    {
        rows.clear();
        for (int row = 0; row < m_model.rowCount(); ++row)
            rows << read(row);
    }

    const NoteListModel &m_model;
};

bool isFound(const Note &note, const QString &query)
{
    const QStringList texts{note.headingText(), note.previewText(L10n::noContent()),
                            slowStrippingHTML(note.body)};
    return query.isEmpty() || std::ranges::any_of(texts, [&](const QString &text) {
               return text.contains(query, Qt::CaseInsensitive);
           });
}

/// The list as it should be, straight from the store.
QList<Row> filtered(const NoteListFixture &f, const QString &typed)
{
    QList<Row> rows;
    for (const Note &note : f.store.notes()) {
        if (note.isArchived != (f.selection.selectedTab() == SidebarTab::Archive) ||
            !isFound(note, typed.trimmed()))
            continue;
        const QString heading = note.headingText();
        const QString preview = note.previewText(L10n::noContent());
        const SearchQuery query(typed);
        const QColor hitColor(u"#ffd66b"_s);
        rows << Row{note.id,
                    heading.isEmpty() ? L10n::untitled() : heading,
                    markedText(heading, query, hitColor),
                    preview,
                    markedText(preview, query, hitColor),
                    TimestampFormat::text(note.updatedAt, noon()),
                    displayNoteColor(note.color)};
    }
    return rows;
}

/// One user, or several at once, doing anything a store can do.
class RandomUser
{
public:
    RandomUser(NoteListFixture &f, NoteListModel &model, quint32 seed)
        : m_f(f), m_model(model), m_random(seed)
    {
    }

    /// Returns what was done.
    QString act()
    {
        const int size = int(m_f.store.notes().size());
        switch (m_random.bounded(17)) {
        case 0:
        case 1:
        case 2:
            m_f.store.addNote();
            return u"add"_s;
        case 3:
        case 4:
        case 5:
            return edit();
        case 6: {
            const bool isArchived = m_random.bounded(2) == 0;
            const QSet<QUuid> ids = someIDs();
            m_f.store.setArchived(isArchived, ids);
            return u"archive %1 of %2: %3"_s.arg(ids.size()).arg(size).arg(isArchived);
        }
        case 7: {
            const QUuid id = anyID();
            m_f.store.deleteNote(id);
            return u"delete one of %1"_s.arg(size);
        }
        case 8: {
            if (m_random.bounded(4) > 0)
                return u"nothing"_s; // or there would never be many
            const QSet<QUuid> ids = someIDs();
            m_f.store.deleteNotes(ids);
            return u"delete %1 of %2"_s.arg(ids.size()).arg(size);
        }
        case 9:
            m_f.store.moveNote(anyID(), anyID());
            return u"move one of %1"_s.arg(size);
        case 10:
            m_f.store.moveNoteToEnd(anyID());
            return u"move one of %1 to the end"_s.arg(size);
        case 11:
            if (m_random.bounded(8) > 0)
                return u"nothing"_s;
            m_f.store.setNotes(otherNotes());
            return u"other notes, %1 before"_s.arg(size);
        case 12:
        case 13:
        case 14:
        case 15:
            return search();
        default:
            if (m_random.bounded(4) == 0)
                LanguageManager::shared().setLanguage(AppLanguage(m_random.bounded(2)));
            m_f.selection.setSelectedTab(m_random.bounded(2) == 0 ? SidebarTab::Notes
                                                                  : SidebarTab::Archive);
            return u"switch"_s;
        }
    }

private:
    /// Nearly always the id of a note.
    QUuid anyID()
    {
        const int size = int(m_f.store.notes().size());
        return size == 0 || m_random.bounded(20) == 0
                   ? QUuid::createUuid()
                   : m_f.store.notes()[m_random.bounded(size)].id;
    }
    QSet<QUuid> someIDs()
    {
        QSet<QUuid> ids;
        for (int count = m_random.bounded(8); count > 0; --count)
            ids << anyID();
        return ids;
    }
    QString edit()
    {
        const Note *note = m_f.store.note(anyID());
        if (!note)
            return u"edit nothing"_s;
        Note edited = *note;
        edited.body = m_random.bounded(5) == 0
                          ? u"<h1><br></h1>"_s
                          : noteNamed(QString::number(m_random.bounded(1000))).body;
        edited.color = rawValue(allNoteColors[m_random.bounded(int(allNoteColors.size()))]);
        edited.isArchived ^= m_random.bounded(5) == 0;
        m_f.store.updateNote(edited);
        return u"edit row %1"_s.arg(m_f.store.indexOf(edited.id));
    }
    QString search()
    {
        // Notes are called by numbers, all previews have "about", and letters come and go.
        static const QStringList texts{u""_s,           u" "_s,    u"1"_s,      u"12"_s,
                                       u"123"_s,        u"7"_s,    u"7 "_s,     u"ABOUT 5"_s,
                                       u"o"_s,          u"ot"_s,   u"other"_s,  u"restored"_s,
                                       u"no content"_s, u"brak"_s, u"treści"_s, u"nowhere"_s};
        const QString &text = texts[m_random.bounded(int(texts.size()))];
        m_model.setSearchText(text);
        return u"search %1"_s.arg(text);
    }
    /// Some notes are those before, with other texts; that is what a restored backup looks like.
    NoteArray otherNotes()
    {
        NoteArray notes;
        for (Note note : m_f.store.notes()) {
            if (m_random.bounded(2) == 0)
                continue;
            note.body = noteNamed(u"restored"_s).body;
            notes.append(note);
        }
        for (int count = m_random.bounded(20); count > 0; --count)
            notes.append(noteNamed(u"other"_s, m_random.bounded(2) == 0));
        return notes;
    }

    NoteListFixture &m_f;
    NoteListModel &m_model;
    QRandomGenerator m_random;
};
} // namespace

class TestNoteListModelRandom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void theListIsTheStoreFiltered_data()
    {
        QTest::addColumn<quint32>("seed");
        const quint32 first = randomSeed();
        for (quint32 seed = first; seed != first + 4; ++seed)
            QTest::addRow("PLIM_TEST_SEED=%u", seed) << seed;
    }
    void theListIsTheStoreFiltered()
    {
        QFETCH(quint32, seed);
        NoteListFixture f(u"A b C d E"_s);
        NoteListModel model(f.store, f.selection, &noon);
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::Fatal);
        const FaithfulView view(model);
        QSignalSpy completeness(&model, &NoteListModel::isSearchCompleteChanged);
        RandomUser user(f, model, seed);
        for (int step = 0; step < 1000; ++step) {
            const QString act = user.act();
            QVERIFY(model.isSearchComplete() || completeness.wait(longEnough));
            const QList<Row> wanted = filtered(f, model.searchText());
            QVERIFY2(view.rows == wanted,
                     qPrintable(u"seed %1, step %2: %3"_s.arg(seed).arg(step).arg(act)));
            for (int row = 0; row < wanted.size(); ++row)
                QCOMPARE(model.rowOf(wanted[row].id), row);
        }
    }
};

QTEST_MAIN(TestNoteListModelRandom)
#include "tst_note_list_model_random.moc"
