#pragma once

#include "core/NoteStore.h"
#include "core/NotesChange.h"
#include "core/SearchQuery.h"
#include "mainwindow/DayWatch.h"
#include "mainwindow/NoteTexts.h"
#include "mainwindow/SelectionManager.h"

#include <QAbstractListModel>
#include <QColor>
#include <QSet>
#include <QUuid>
#include <qqmlregistration.h>

#include <vector>

/// The notes of the selected tab in the store's order, narrowed by a search.
///
/// A change of one note touches its row alone, whatever the number of notes, and a change of many
/// is told in runs of rows. A search that begins before every note's text is derived shows what it
/// finds in those that are ready, and the rest as it comes.
class NoteListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window has one.")
    /// As it was typed. White space around it does not count, and alone it is no search.
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(bool isSearching READ isSearching NOTIFY isSearchingChanged)
    /// False while notes are still to be looked at; an empty list may yet fill.
    Q_PROPERTY(bool isSearchComplete READ isSearchComplete NOTIFY isSearchCompleteChanged)
    /// Of what is found, in titleMarkup and previewMarkup.
    Q_PROPERTY(QColor hitColor READ hitColor WRITE setHitColor NOTIFY hitColorChanged)

public:
    enum Role {
        NoteIDRole = Qt::UserRole,
        TitleRole,
        TitleMarkupRole, ///< empty where nothing is found, as with the preview's
        PreviewRole,
        PreviewMarkupRole,
        TimestampRole,
        ColorRole,
        ColorNameRole,
        IsArchivedRole,
    };

    NoteListModel(NoteStore &store, SelectionManager &selection, QObject *parent = nullptr)
        : NoteListModel(
              store, selection, [] { return QDateTime::currentDateTime(); }, parent)
    {
    }
    NoteListModel(NoteStore &store, SelectionManager &selection, DayWatch::Clock clock,
                  QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// The notes of the rows, in order.
    [[nodiscard]] QList<QUuid> noteIDs() const { return {m_ids.begin(), m_ids.end()}; }
    /// Row of the note in this list, or -1.
    [[nodiscard]] int rowOf(const QUuid &id) const;

    [[nodiscard]] QString searchText() const { return m_searchText; }
    void setSearchText(const QString &text);
    [[nodiscard]] bool isSearching() const { return !m_query.isEmpty(); }
    [[nodiscard]] bool isSearchComplete() const { return m_isSearchComplete; }
    [[nodiscard]] QColor hitColor() const { return m_hitColor; }
    void setHitColor(const QColor &color);

    /// Looks whether another day has begun; happens by itself as well.
    void checkDay() { m_days.check(); }

Q_SIGNALS:
    void searchTextChanged();
    void isSearchingChanged();
    void isSearchCompleteChanged();
    void hitColorChanged();

private:
    struct Wanted {
        QUuid id;
        qsizetype storeRow;
    };

    void follow(const NotesChange &change);
    bool followNote(const QUuid &id);
    void followMany(const QList<QUuid> &ids);
    void followMove(const QUuid &id);
    void followTexts(const QList<QUuid> &ids);
    void showDerived(const QList<QUuid> &ids);
    void lookForTwins();
    void reload();
    void retranslate();
    void repeatSearch();
    void tellCompleteness();
    void tellChanged(const QList<int> &roles);

    [[nodiscard]] std::vector<Wanted> wantedNotes();
    void show(const std::vector<Wanted> &wanted);
    void removeRun(int first, int last);

    [[nodiscard]] QString markup(const QString &text) const;
    [[nodiscard]] bool isVisible(const Note &note) const;
    [[nodiscard]] bool isWanted(const Note &note) const;
    [[nodiscard]] int placeOf(qsizetype storeRow, int exceptRow = -1) const;

    NoteStore &m_store;
    SelectionManager &m_selection;
    mutable NoteTexts m_texts; ///< a row that is looked at may be the first to need its texts
    DayWatch m_days;
    std::vector<QUuid> m_ids;
    bool m_hasTwins = false; ///< a damaged file may hold an id twice; then rows have no names
    QString m_searchText;
    SearchQuery m_query;
    bool m_isPlaceholderHit = false; ///< the preview of a note without text
    QSet<QUuid> m_undecided;         ///< of this tab, while their new texts are not there
    bool m_isSearchComplete = true;
    QColor m_hitColor{0xff, 0xd6, 0x6b};
};
