#pragma once

#include "core/NotesChange.h"
#include "core/NoteStore.h"
#include "mainwindow/SelectionManager.h"

#include <QAbstractListModel>
#include <QHash>
#include <QUuid>
#include <qqmlregistration.h>

#include <vector>

/// The notes of the selected tab in the store's order.
///
/// A change of one note touches its row alone, whatever the number of notes, and a change of many
/// is told in runs of rows. A row's texts are derived when it is first shown and again after that
/// note has changed.
class NoteListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window has one.")

public:
    enum Role { NoteIDRole = Qt::UserRole, HeadingRole, PreviewRole, ColorRole };

    NoteListModel(NoteStore &store, SelectionManager &selection, QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// Row of the note in this list, or -1.
    [[nodiscard]] int rowOf(const QUuid &id) const;

private:
    struct Texts {
        QString heading;
        QString preview; ///< empty when the note has no text below its heading
    };

    void follow(const NotesChange &change);
    void followRows(const QList<QUuid> &ids);
    void removeRun(int first, int last);
    void insertMissing();
    void followMove(const QUuid &id);
    void lookForTwins();
    void reload();
    void retranslate();
    [[nodiscard]] bool isVisible(const Note &note) const;
    [[nodiscard]] bool isWanted(const QUuid &id) const;
    [[nodiscard]] int visibleRowBefore(const QUuid &id) const;
    [[nodiscard]] const Texts &texts(const Note &note) const;

    NoteStore &m_store;
    SelectionManager &m_selection;
    std::vector<QUuid> m_ids;
    bool m_hasTwins = false; ///< a damaged file may hold an id twice; then rows have no names
    mutable QHash<QUuid, Texts> m_texts;
};
