#pragma once

#include "core/NoteStore.h"
#include "mainwindow/UndoOffer.h"

/// After notes were deleted, the offer to put them back.
class DeletionUndo : public UndoOffer
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window has one.")

public:
    explicit DeletionUndo(NoteStore &store, std::chrono::milliseconds offerTime = defaultOfferTime,
                          QObject *parent = nullptr);

    [[nodiscard]] QString text() const override;

    /// Offers to put these back, in place of whatever was offered before.
    void offer(const QList<PlacedNote> &notes);
    /// The note is one of those on offer, and takes the words that its editor had not reported yet.
    bool applyEdit(const QUuid &noteID, const QString &html);

Q_SIGNALS:
    /// These are in the store again.
    void restored(const QList<QUuid> &noteIDs);

protected:
    void takeBack() override;
    void forget() override;

private:
    NoteStore &m_store;
    QList<PlacedNote> m_notes;
    int m_count = 0;
};
