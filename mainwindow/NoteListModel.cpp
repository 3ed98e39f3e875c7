#include "mainwindow/NoteListModel.h"

#include "core/NoteColor.h"
#include "shell/L10n.h"

#include <algorithm>

NoteListModel::NoteListModel(NoteStore &store, SelectionManager &selection, QObject *parent)
    : QAbstractListModel(parent), m_store(store), m_selection(selection)
{
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
    if (m_rows.isEmpty()) {
        m_rows.reserve(qsizetype(m_ids.size()));
        for (int row = 0; row < int(m_ids.size()); ++row)
            m_rows.insert(m_ids[row], row);
    }
    return m_rows.value(id, -1);
}

void NoteListModel::follow(const NotesChange &change)
{
    switch (change.kind) {
    case NotesChange::Kind::Reset:
        m_texts.clear();
        reload();
        break;
    case NotesChange::Kind::Inserted:
        for (const QUuid &id : change.ids)
            followUpdate(id);
        break;
    case NotesChange::Kind::Updated:
        for (const QUuid &id : change.ids) {
            m_texts.remove(id);
            followUpdate(id);
        }
        break;
    case NotesChange::Kind::Deleted:
        for (const QUuid &id : change.ids) {
            m_texts.remove(id);
            if (const int row = rowOf(id); row >= 0)
                removeRow(row);
        }
        break;
    case NotesChange::Kind::Moved:
        for (const QUuid &id : change.ids) {
            if (const int row = rowOf(id); row >= 0)
                moveRow(row, visibleRowBefore(id));
        }
        break;
    }
}

// A note enters and leaves the list when its place in the tabs changes; else its row is redrawn.
void NoteListModel::followUpdate(const QUuid &id)
{
    const Note *note = m_store.note(id);
    const int row = rowOf(id);
    const bool isWanted = note && isVisible(*note);
    if (isWanted && row >= 0)
        Q_EMIT dataChanged(index(row), index(row), {Qt::DisplayRole, HeadingRole, PreviewRole, ColorRole});
    else if (isWanted)
        insertRow(visibleRowBefore(id), id);
    else if (row >= 0)
        removeRow(row);
}

void NoteListModel::insertRow(int row, const QUuid &id)
{
    beginInsertRows({}, row, row);
    m_ids.insert(m_ids.begin() + row, id);
    m_rows.clear();
    endInsertRows();
}

void NoteListModel::removeRow(int row)
{
    beginRemoveRows({}, row, row);
    m_ids.erase(m_ids.begin() + row);
    m_rows.clear();
    endRemoveRows();
}

void NoteListModel::moveRow(int from, int to)
{
    if (from == to)
        return;
    beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
    const QUuid id = m_ids[from];
    m_ids.erase(m_ids.begin() + from);
    m_ids.insert(m_ids.begin() + to, id);
    m_rows.clear();
    endMoveRows();
}

void NoteListModel::reload()
{
    beginResetModel();
    m_ids.clear();
    m_rows.clear();
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
