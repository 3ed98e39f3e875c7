#pragma once

#include "core/NoteStore.h"

#include <QObject>
#include <QTimer>
#include <qqmlregistration.h>

#include <chrono>

/// For some seconds after notes were deleted, the offer to put them back.
class DeletionUndo : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window has one.")
    Q_PROPERTY(bool isOffered READ isOffered NOTIFY isOfferedChanged)
    Q_PROPERTY(QString text READ text NOTIFY textChanged)

public:
    static constexpr std::chrono::milliseconds defaultOfferTime{8000};

    explicit DeletionUndo(NoteStore &store, std::chrono::milliseconds offerTime = defaultOfferTime,
                          QObject *parent = nullptr);

    [[nodiscard]] bool isOffered() const { return !m_notes.isEmpty(); }
    /// What was deleted, in the current language; it stays while the offer fades away.
    [[nodiscard]] QString text() const;

    /// Offers to put these back, in place of whatever was offered before.
    void offer(const QList<PlacedNote> &notes);
    /// The note is one of those on offer, and takes the words that its editor had not reported yet.
    bool applyEdit(const QUuid &noteID, const QString &html);
    Q_INVOKABLE void undo();
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void isOfferedChanged();
    void textChanged();
    /// These are in the store again.
    void restored(const QList<QUuid> &noteIDs);

private:
    NoteStore &m_store;
    QList<PlacedNote> m_notes;
    int m_count = 0;
    QTimer m_end;
};
