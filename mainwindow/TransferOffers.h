#pragma once

#include "core/NoteStore.h"
#include "mainwindow/UndoOffer.h"

#include <QHash>

/// After notes were imported, the offer to take them out again; but not those that somebody has
/// written in meanwhile.
class ImportUndo : public UndoOffer
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window has one.")

public:
    explicit ImportUndo(NoteStore &store, std::chrono::milliseconds offerTime = defaultOfferTime,
                        QObject *parent = nullptr);

    [[nodiscard]] QString text() const override;
    void offer(const QSet<QUuid> &noteIDs);

protected:
    void takeBack() override;
    void forget() override;

private:
    NoteStore &m_store;
    QHash<QUuid, QString> m_texts; ///< of each note, as it came
    int m_count = 0;
};

/// After notes were exported, the offer to show where they are.
class ExportedOffer : public UndoOffer
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window has one.")

public:
    explicit ExportedOffer(std::chrono::milliseconds offerTime = defaultOfferTime,
                           QObject *parent = nullptr);

    [[nodiscard]] QString text() const override;
    [[nodiscard]] QString actionText() const override;
    [[nodiscard]] bool takesBack() const override { return false; }
    void offer(int count, const QString &path);

protected:
    void takeBack() override;
    void forget() override;

private:
    int m_count = 0;
    QString m_folder;
};
