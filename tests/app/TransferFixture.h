#pragma once

#include "core/NotesJson.h"
#include "core/app/NoteTransfer.h"
#include "tests/Patience.h"
#include "tests/mainwindow/ContentFixture.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

#include <memory>

/// The program's transfers, over a store of their own.
struct TransferFixture : ContentFixture {
    explicit TransferFixture(const QString &words = {}) : ContentFixture(words)
    {
        QDir().mkpath(home.path(QStringLiteral("out")));
    }
    ~TransferFixture()
    {
        transfer.reset();
        StickyNoteManager::shared().setFactory({});
    }
    Q_DISABLE_COPY_MOVE(TransferFixture)

    [[nodiscard]] QString path(const QString &name) const
    {
        return home.path(QStringLiteral("out/") + name);
    }
    [[nodiscard]] QByteArray read(const QString &name) const
    {
        return home.read(QStringLiteral("out/") + name);
    }
    void write(const QString &name, const QByteArray &bytes) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("The test's own file cannot be written");
    }
    /// What lies in a folder, hidden files too.
    [[nodiscard]] QStringList names(const QString &folder = {}) const
    {
        return QDir(path(folder))
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name);
    }
    [[nodiscard]] bool ends() const
    {
        return QTest::qWaitFor([this] { return !transfer->isBusy(); }, longEnough);
    }
    [[nodiscard]] QString offer()
    {
        return content.undoOffer()->isOffered() ? content.undoOffer()->text() : QString();
    }
    /// The one notice that was given; its lines.
    [[nodiscard]] QStringList notice() const
    {
        if (told.size() != 1)
            return {QString::number(told.size()) + QStringLiteral(" notices")};
        return (told[0][0].toString() + u'\n' + told[0][1].toString()).split(u'\n');
    }
    [[nodiscard]] NoteArray notesOnDisk() const
    {
        return decodeNotes(home.read(QStringLiteral("data/Plim/notes.json")), {})
            .value_or(NoteArray());
    }

    QString lastWords; ///< of the note A, which an editor has not handed over yet
    int collections = 0;
    std::unique_ptr<NoteTransfer> transfer = std::make_unique<NoteTransfer>(store, content, [this] {
        ++collections;
        if (!lastWords.isEmpty())
            content.applyEdit(id(QStringLiteral("A")), lastWords);
    });
    QSignalSpy told{&content, &ContentController::noticeRequested};
};

/// The dialog that is open; nullptr when there is none.
template <typename Dialog>
Dialog *dialog()
{
    Dialog *found = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        auto *each = qobject_cast<Dialog *>(widget);
        if (each && each->isVisible()) {
            if (found)
                qFatal("There are two dialogs");
            found = each;
        }
    }
    return found;
}

inline void speak(AppLanguage language)
{
    LanguageManager::shared().setLanguage(language);
}
