#pragma once

#include "core/NoteStore.h"
#include "mainwindow/ContentController.h"
#include "transfer/NoteExport.h"
#include "transfer/NoteImport.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

class NotePrinting;
class QDialog;
class QPrinter;

/// Notes leave the program and come in: the dialogs, and what follows from them. One thing at a
/// time.
class NoteTransfer : public QObject
{
    Q_OBJECT

public:
    /// `collectTexts` has the editors hand over what they have not reported yet.
    NoteTransfer(NoteStore &store, ContentController &content, std::function<void()> collectTexts,
                 QObject *parent = nullptr);
    ~NoteTransfer() override;

    /// Each asks for a place first. The note is the one in front: that of the sticky window that
    /// has the keyboard, else that of the main window; without one its user is told so.
    void exportNote();
    void exportAll();
    void importNotes();
    void printNote();

    // What follows once the place is known
    void exportNoteTo(const QUuid &noteID, const QString &file, ExportFormat format);
    void exportAllTo(const QString &folder, ExportFormat format);
    void importFrom(const QStringList &files);
    void printTo(const Note &note, std::shared_ptr<QPrinter> printer);

    /// Something is on its way out or in.
    [[nodiscard]] bool isBusy() const { return m_isBusy; }

private:
    [[nodiscard]] std::optional<QUuid> frontNote();
    /// One of these is going on, or its dialog is open, which then comes to the front.
    [[nodiscard]] bool isOccupied();
    void open(QDialog *dialog);
    [[nodiscard]] NoteExport *makeExport();
    void begin(TransferProgress::Kind kind, int total);
    void end();
    void importNext();
    void finishImport();

    NoteStore &m_store;
    ContentController &m_content;
    std::function<void()> m_collectTexts;
    std::unique_ptr<NoteExport> m_export;
    std::unique_ptr<NotePrinting> m_printing;
    QPointer<QDialog> m_dialog; ///< that is open
    int m_exportedCount = 0;
    QStringList m_files; ///< still to be imported
    ImportedNotes m_imported;
    bool m_isBusy = false;
};
