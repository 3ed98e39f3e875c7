#include "mainwindow/NoteListModel.h"

#include "core/NoteColor.h"
#include "shell/L10n.h"

#include <QSet>

#include <algorithm>

NoteListModel::NoteListModel(NoteStore &store, SelectionManager &selection, QObject *parent)
    : QAbstractListModel(parent), m_store(store), m_selection(selection)
{
    lookForTwins();
    reload();
    connect(&m_store, &NoteStore::notesChanged, this, &NoteListModel::follow);
    connect(&m_selection, &SelectionManager::selectedTabChanged, this, &NoteListModel::reload);
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
    case HeadingRole: {
        const QString heading = texts(*note).heading;
        return heading.isEmpty() ? L10n::untitled() : heading;
    }
    case PreviewRole: {
        const QString preview = texts(*note).preview;
        return preview.isEmpty() ? L10n::noContent() : preview;
    }
    case ColorRole:
        return displayNoteColor(note->color);
    default:
        return {};
    }
}

QHash<int, QByteArray> NoteListModel::roleNames() const
{
    return {{NoteIDRole, "noteID"},
            {HeadingRole, "headingText"},
            {PreviewRole, "previewText"},
            {ColorRole, "noteColor"}};
}

int NoteListModel::rowOf(const QUuid &id) const
{
    const auto found = std::ranges::find(m_ids, id);
    return found == m_ids.end() ? -1 : int(found - m_ids.begin());
}

void NoteListModel::follow(const NotesChange &change)
{
    if (change.kind == NotesChange::Kind::Reset)
        lookForTwins();
    if (change.kind == NotesChange::Kind::Reset || m_hasTwins) {
        m_texts.clear();
        reload();
        return;
    }
    switch (change.kind) {
    case NotesChange::Kind::Reset:
        break;
    case NotesChange::Kind::Inserted:
    case NotesChange::Kind::Updated:
    case NotesChange::Kind::Deleted:
        for (const QUuid &id : change.ids)
            m_texts.remove(id);
        followRows(change.ids);
        break;
    case NotesChange::Kind::Moved:
        for (const QUuid &id : change.ids)
            followMove(id);
        break;
    }
}

// A note enters and leaves the list when its place in the tabs changes; else its row is redrawn.
// The notes are gone through once, not once for each id: there may be thousands of both.
void NoteListModel::followRows(const QList<QUuid> &ids)
{
    const QSet<QUuid> several = ids.size() > 1 ? QSet<QUuid>(ids.begin(), ids.end()) : QSet<QUuid>();
    const auto isConcerned = [&](int row) {
        return ids.size() > 1 ? several.contains(m_ids[row]) : ids.contains(m_ids[row]);
    };
    const auto isLeaving = [&](int row) { return isConcerned(row) && !isWanted(m_ids[row]); };
    for (int last = rowCount() - 1; last >= 0; --last) {
        if (!isLeaving(last))
            continue;
        int first = last;
        while (first > 0 && isLeaving(first - 1))
            --first;
        removeRun(first, last);
        last = first;
    }
    qsizetype shown = 0;
    for (int first = 0; first < rowCount(); ++first) {
        if (!isConcerned(first))
            continue;
        int last = first;
        while (last + 1 < rowCount() && isConcerned(last + 1))
            ++last;
        shown += last - first + 1;
        Q_EMIT dataChanged(index(first), index(last), {Qt::DisplayRole, HeadingRole, PreviewRole, ColorRole});
        first = last;
    }
    if (shown < std::ranges::count_if(ids, [this](const QUuid &id) { return isWanted(id); }))
        insertMissing();
}

void NoteListModel::removeRun(int first, int last)
{
    beginRemoveRows({}, first, last);
    m_ids.erase(m_ids.begin() + first, m_ids.begin() + last + 1);
    endRemoveRows();
}

void NoteListModel::insertMissing()
{
    int row = 0;
    std::vector<QUuid> missing; // before that row
    const auto insertRun = [&] {
        if (missing.empty())
            return;
        const int count = int(missing.size());
        beginInsertRows({}, row, row + count - 1);
        m_ids.insert(m_ids.begin() + row, missing.begin(), missing.end());
        endInsertRows();
        row += count;
        missing.clear();
    };
    for (const Note &note : m_store.notes()) {
        if (!isVisible(note))
            continue;
        if (row == rowCount() || m_ids[row] != note.id) {
            missing.push_back(note.id);
            continue;
        }
        insertRun();
        ++row;
    }
    insertRun();
}

void NoteListModel::followMove(const QUuid &id)
{
    const int from = rowOf(id);
    if (from < 0)
        return;
    const int to = visibleRowBefore(id);
    if (from == to)
        return;
    beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
    m_ids.erase(m_ids.begin() + from);
    m_ids.insert(m_ids.begin() + to, id);
    endMoveRows();
}

// They come with a file, never with an operation.
void NoteListModel::lookForTwins()
{
    qsizetype row = 0;
    m_hasTwins = std::ranges::any_of(m_store.notes(),
                                     [&](const Note &note) { return m_store.indexOf(note.id) != row++; });
}

void NoteListModel::reload()
{
    beginResetModel();
    m_ids.clear();
    for (const Note &note : m_store.notes()) {
        if (isVisible(note))
            m_ids.push_back(note.id);
    }
    endResetModel();
}

void NoteListModel::retranslate()
{
    if (!m_ids.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {Qt::DisplayRole, HeadingRole, PreviewRole});
}

bool NoteListModel::isVisible(const Note &note) const
{
    return note.isArchived == (m_selection.selectedTab() == SidebarTab::Archive);
}

bool NoteListModel::isWanted(const QUuid &id) const
{
    const Note *note = m_store.note(id);
    return note && isVisible(*note);
}

/// How many notes of this list stand before the note in the store.
int NoteListModel::visibleRowBefore(const QUuid &id) const
{
    int row = 0;
    for (const Note &note : m_store.notes()) {
        if (note.id == id)
            break;
        row += isVisible(note);
    }
    return row;
}

const NoteListModel::Texts &NoteListModel::texts(const Note &note) const
{
    const auto known = m_texts.constFind(note.id);
    if (known != m_texts.constEnd())
        return *known;
    return *m_texts.insert(note.id, Texts{note.headingText(), note.previewText({})});
}
