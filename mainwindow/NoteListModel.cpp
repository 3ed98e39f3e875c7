#include "mainwindow/NoteListModel.h"

#include "core/NoteColor.h"
#include "mainwindow/MarkedText.h"
#include "mainwindow/TimestampFormat.h"
#include "shell/L10n.h"

#include <algorithm>

NoteListModel::NoteListModel(NoteStore &store, SelectionManager &selection, DayWatch::Clock clock,
                             QObject *parent)
    : QAbstractListModel(parent), m_store(store), m_selection(selection), m_days(std::move(clock))
{
    lookForTwins();
    m_texts.setNotes(m_store.notes());
    reload();
    connect(&m_store, &NoteStore::notesChanged, this, &NoteListModel::follow);
    connect(&m_texts, &NoteTexts::derived, this, &NoteListModel::followTexts);
    connect(&m_days, &DayWatch::changed, this, [this] { tellChanged({TimestampRole}); });
    connect(&m_selection, &SelectionManager::selectedTabChanged, this, [this] {
        reload();
        tellCompleteness();
    });
    connect(&L10n::shared(), &L10n::changed, this, &NoteListModel::retranslate);
}

int NoteListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_ids.size());
}

QVariant NoteListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Note *note = m_store.note(m_ids[index.row()]);
    if (!note)
        return {};
    switch (role) {
    case NoteIDRole:
        return note->id;
    case Qt::DisplayRole:
    case TitleRole: {
        const QString &heading = m_texts.lines(*note).heading;
        return heading.isEmpty() ? L10n::untitled() : heading;
    }
    case TitleMarkupRole: // a search does not look at the placeholder of a title
        return markup(m_texts.lines(*note).heading);
    case PreviewRole:
    case PreviewMarkupRole: {
        const QString &text = m_texts.lines(*note).preview;
        const QString &preview = text.isEmpty() ? L10n::noContent() : text;
        return role == PreviewRole ? preview : markup(preview);
    }
    case TimestampRole:
        return TimestampFormat::text(note->updatedAt, m_days.now());
    case ColorRole:
        return displayNoteColor(note->color);
    case ColorNameRole:
        return L10n::colorName(noteColorFromRawValue(note->color).value_or(NoteColor::yellow));
    case IsArchivedRole:
        return note->isArchived;
    default:
        return {};
    }
}

QHash<int, QByteArray> NoteListModel::roleNames() const
{
    return {{NoteIDRole, "noteID"},
            {TitleRole, "titleText"},
            {TitleMarkupRole, "titleMarkup"},
            {PreviewRole, "previewText"},
            {PreviewMarkupRole, "previewMarkup"},
            {TimestampRole, "timestampText"},
            {ColorRole, "noteColor"},
            {ColorNameRole, "colorName"},
            {IsArchivedRole, "isArchived"}};
}

int NoteListModel::rowOf(const QUuid &id) const
{
    // The rows are in the order of the store. Not so amid a change, with twins, and for a note
    // that has no row: then nothing is spared by looking at each, which takes some microseconds.
    const qsizetype storeRow = m_store.indexOf(id);
    if (storeRow >= 0) {
        const int row = placeOf(storeRow);
        if (row < rowCount() && m_ids[row] == id)
            return row;
    }
    const auto found = std::ranges::find(m_ids, id);
    return found == m_ids.end() ? -1 : int(found - m_ids.begin());
}

void NoteListModel::setSearchText(const QString &text)
{
    if (m_searchText == text)
        return;
    m_searchText = text;
    const SearchQuery query(text);
    const bool wasSearching = isSearching();
    if (query != m_query) {
        m_query = query;
        repeatSearch();
        tellChanged({TitleMarkupRole, PreviewMarkupRole});
    }
    Q_EMIT searchTextChanged();
    if (isSearching() != wasSearching)
        Q_EMIT isSearchingChanged();
    tellCompleteness();
}

void NoteListModel::setHitColor(const QColor &color)
{
    if (m_hitColor == color)
        return;
    m_hitColor = color;
    Q_EMIT hitColorChanged();
    if (isSearching())
        tellChanged({TitleMarkupRole, PreviewMarkupRole});
}

void NoteListModel::follow(const NotesChange &change)
{
    if (change.kind == NotesChange::Kind::Reset)
        lookForTwins();
    if (change.kind == NotesChange::Kind::Reset || m_hasTwins) {
        m_texts.setNotes(m_store.notes());
        reload();
        tellCompleteness();
        return;
    }
    if (change.kind == NotesChange::Kind::Moved) {
        for (const QUuid &id : change.ids)
            followMove(id);
        return;
    }
    for (const QUuid &id : change.ids) {
        if (const Note *note = m_store.note(id))
            m_texts.update(*note);
        else
            m_texts.remove(id);
    }
    if (change.ids.size() > 1) {
        followMany(change.ids);
    } else {
        for (const QUuid &id : change.ids) {
            if (followNote(id)) {
                const QModelIndex row = index(rowOf(id));
                Q_EMIT dataChanged(row, row);
            }
        }
    }
    tellCompleteness();
}

/// Lets the note enter or leave the list. Returns whether it was and is in it.
bool NoteListModel::followNote(const QUuid &id)
{
    const Note *note = m_store.note(id);
    if (note && isSearching() && isVisible(*note) && !m_texts.isDerived(id))
        m_undecided.insert(id);
    else
        m_undecided.remove(id);
    const bool isWantedNow = note && isWanted(*note);
    const int row = rowOf(id);
    if (row >= 0 && isWantedNow)
        return true;
    if (row >= 0) {
        removeRun(row, row);
    } else if (isWantedNow) {
        const int place = placeOf(m_store.indexOf(id));
        beginInsertRows({}, place, place);
        m_ids.insert(m_ids.begin() + place, id);
        endInsertRows();
    }
    return false;
}

// The notes are gone through once, not once for each id: there may be thousands of both.
void NoteListModel::followMany(const QList<QUuid> &ids)
{
    const QSet<QUuid> concerned(ids.begin(), ids.end());
    const auto stays = [&](int row) {
        if (!concerned.contains(m_ids[row]))
            return false;
        const Note *note = m_store.note(m_ids[row]);
        return note && isWanted(*note);
    };
    for (int first = 0; first < rowCount(); ++first) {
        if (!stays(first))
            continue;
        int last = first;
        while (last + 1 < rowCount() && stays(last + 1))
            ++last;
        Q_EMIT dataChanged(index(first), index(last));
        first = last;
    }
    show(wantedNotes());
}

void NoteListModel::followMove(const QUuid &id)
{
    const int from = rowOf(id);
    if (from < 0)
        return;
    const int to = placeOf(m_store.indexOf(id), from);
    if (from == to)
        return;
    beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
    m_ids.erase(m_ids.begin() + from);
    m_ids.insert(m_ids.begin() + to, id);
    endMoveRows();
}

// Rows that were looked at have derived by themselves what they show; only a search waits for more.
void NoteListModel::followTexts(const QList<QUuid> &ids)
{
    if (!isSearching())
        return;
    if (m_hasTwins)
        reload();
    else if (ids.size() > 1)
        showDerived(ids);
    else
        followNote(ids.front());
    tellCompleteness();
}

// A first search is told of thousands, a good many at a time.
void NoteListModel::showDerived(const QList<QUuid> &ids)
{
    const QSet<QUuid> concerned(ids.begin(), ids.end());
    std::vector<Wanted> wanted;
    wanted.reserve(m_ids.size() + ids.size());
    for (const QUuid &id : m_ids) {
        if (!concerned.contains(id))
            wanted.push_back({id, m_store.indexOf(id)});
    }
    for (const QUuid &id : concerned) {
        if (m_texts.isDerived(id))
            m_undecided.remove(id);
        const Note *note = m_store.note(id);
        if (note && isWanted(*note))
            wanted.push_back({id, m_store.indexOf(id)});
    }
    std::ranges::sort(wanted, {}, &Wanted::storeRow);
    show(wanted);
}

// They come with a file, never with an operation.
void NoteListModel::lookForTwins()
{
    qsizetype row = 0;
    m_hasTwins = std::ranges::any_of(
        m_store.notes(), [&](const Note &note) { return m_store.indexOf(note.id) != row++; });
}

void NoteListModel::reload()
{
    beginResetModel();
    m_ids.clear();
    for (const Wanted &note : wantedNotes())
        m_ids.push_back(note.id);
    endResetModel();
}

void NoteListModel::retranslate()
{
    repeatSearch(); // it looks at the placeholder of previews
    tellChanged({Qt::DisplayRole, TitleRole, TitleMarkupRole, PreviewRole, PreviewMarkupRole,
                 TimestampRole, ColorNameRole});
    tellCompleteness();
}

void NoteListModel::repeatSearch()
{
    m_isPlaceholderHit = m_query.occursIn(searchableText({L10n::noContent()}));
    if (m_hasTwins)
        reload();
    else
        show(wantedNotes());
}

void NoteListModel::tellCompleteness()
{
    if (m_isSearchComplete == m_undecided.isEmpty())
        return;
    m_isSearchComplete = m_undecided.isEmpty();
    m_texts.setHurried(!m_isSearchComplete);
    Q_EMIT isSearchCompleteChanged();
}

void NoteListModel::tellChanged(const QList<int> &roles)
{
    if (!m_ids.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), roles);
}

std::vector<NoteListModel::Wanted> NoteListModel::wantedNotes()
{
    m_undecided.clear();
    std::vector<Wanted> wanted;
    wanted.reserve(m_ids.size());
    qsizetype storeRow = -1;
    for (const Note &note : m_store.notes()) {
        ++storeRow;
        if (isWanted(note))
            wanted.push_back({note.id, storeRow});
        if (isSearching() && isVisible(note) && !m_texts.isDerived(note.id))
            m_undecided.insert(note.id);
    }
    return wanted;
}

// A keystroke may pick here and there among thousands of notes, and to tell thousands of runs one
// by one takes longer than a frame, in the views most of all. From some number of runs on, the rows
// behind them are therefore told as one run that goes and one that comes; those in front, where the
// user looks after a keystroke, stay exact.
void NoteListModel::show(const std::vector<Wanted> &wanted)
{
    constexpr int mostRuns = 64;
    enum class Step { Stays, Leaves, Enters };
    std::vector<bool> stays(m_ids.size());
    std::size_t row = 0;
    std::size_t next = 0;
    Step last = Step::Stays;
    for (int runs = 0; row < m_ids.size() || next < wanted.size();) {
        const bool hasRow = row < m_ids.size();
        const bool hasNote = next < wanted.size();
        Step step = Step::Enters;
        if (hasRow && hasNote && m_ids[row] == wanted[next].id)
            step = Step::Stays;
        else if (!hasNote || (hasRow && m_store.indexOf(m_ids[row]) < wanted[next].storeRow))
            step = Step::Leaves; // deleted ones are at -1
        if (step != Step::Stays && step != last && ++runs > mostRuns)
            break;
        last = step;
        if (step != Step::Enters)
            stays[row++] = step == Step::Stays;
        if (step != Step::Leaves)
            ++next;
    }
    for (int end = rowCount(); end > 0; --end) {
        if (stays[end - 1])
            continue;
        int first = end - 1;
        while (first > 0 && !stays[first - 1])
            --first;
        removeRun(first, end - 1);
        end = first + 1;
    }
    int place = 0;
    for (auto note = wanted.begin(); note != wanted.end(); ++note, ++place) {
        const auto isThere = [&](const Wanted &other) {
            return place < rowCount() && m_ids[place] == other.id;
        };
        const auto end = std::find_if(note, wanted.end(), isThere);
        if (end == note)
            continue;
        const int count = int(end - note);
        beginInsertRows({}, place, place + count - 1);
        m_ids.insert(m_ids.begin() + place, count, {});
        std::ranges::transform(note, end, m_ids.begin() + place, &Wanted::id);
        endInsertRows();
        if (end == wanted.end())
            break;
        place += count;
        note = end;
    }
}

void NoteListModel::removeRun(int first, int last)
{
    beginRemoveRows({}, first, last);
    m_ids.erase(m_ids.begin() + first, m_ids.begin() + last + 1);
    endRemoveRows();
}

QString NoteListModel::markup(const QString &text) const
{
    return markedText(text, m_query, m_hitColor);
}

bool NoteListModel::isVisible(const Note &note) const
{
    return note.isArchived == (m_selection.selectedTab() == SidebarTab::Archive);
}

bool NoteListModel::isWanted(const Note &note) const
{
    if (!isVisible(note) || !isSearching())
        return isVisible(note);
    const NoteTexts::Searched *searched = m_texts.searched(note.id);
    return searched &&
           (m_query.occursIn(searched->text) || (m_isPlaceholderHit && !searched->hasPreview));
}

/// The row at which a note of the store's row stands or would stand; without looking at a row that
/// is still in its old place.
int NoteListModel::placeOf(qsizetype storeRow, int exceptRow) const
{
    int low = 0;
    int high = rowCount() - (exceptRow < 0 ? 0 : 1);
    while (low < high) {
        const int middle = (low + high) / 2;
        const bool isBehind = exceptRow >= 0 && middle >= exceptRow;
        if (m_store.indexOf(m_ids[isBehind ? middle + 1 : middle]) < storeRow)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}
