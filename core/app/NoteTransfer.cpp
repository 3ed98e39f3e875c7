#include "core/app/NoteTransfer.h"

#include "core/app/NotePrinting.h"
#include "core/app/TransferReasons.h"
#include "editor/FontBase.h"
#include "shell/L10n.h"
#include "sticky/StickyNoteManager.h"
#include "sticky/WindowHolder.h"
#include "transfer/ExportFileNames.h"
#include "transfer/PrintLayout.h"

#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QPrintDialog>
#include <QPrinter>
#include <QStandardPaths>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
struct FormatChoice {
    ExportFormat format;
    QString name;
};

const FormatChoice formatChoices[] = {
    {ExportFormat::markdown, u"Markdown"_s},
    {ExportFormat::html, u"HTML"_s},
    {ExportFormat::pdf, u"PDF"_s},
};

QString filterOf(const FormatChoice &choice, bool isFolder)
{
    return isFolder ? choice.name + u" (*)"_s
                    : choice.name + u" (*"_s + fileSuffix(choice.format) + u')';
}

ExportFormat formatOfFilter(const QString &filter)
{
    for (const FormatChoice &choice : formatChoices) {
        if (filter.startsWith(choice.name))
            return choice.format;
    }
    return ExportFormat::markdown;
}

/// The last words that a path ends with fit the format.
QString withSuffix(const QString &file, ExportFormat format)
{
    const QString suffix = fileSuffix(format);
    if (file.endsWith(suffix, Qt::CaseInsensitive))
        return file;
    for (const FormatChoice &choice : formatChoices) {
        const QString other = fileSuffix(choice.format);
        if (file.endsWith(other, Qt::CaseInsensitive))
            return file.chopped(other.size()) + suffix;
    }
    return file + suffix;
}

QString placeForFiles()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

/// The file that its user meant, with the kind's suffix. Nobody was asked whether one of that name
/// may be replaced when another was typed, so that one stays.
QString targetFor(const QString &chosen, ExportFormat format)
{
    const QString file = withSuffix(chosen, format);
    if (file == chosen || !QFileInfo::exists(file))
        return file;
    const QString stem = file.chopped(fileSuffix(format).size());
    QString free = file;
    for (int number = 2; QFileInfo::exists(free); ++number)
        free = stem + u' ' + QString::number(number) + fileSuffix(format);
    return free;
}

/// The note whose sticky window that is.
std::optional<QUuid> stickyNoteIn(const QWindow *window)
{
    const auto &stickyNotes = StickyNoteManager::shared();
    for (const QUuid &noteID : stickyNotes.windowOrder()) {
        if (window && stickyNotes.window(noteID)->isHostedBy(window))
            return noteID;
    }
    return std::nullopt;
}

QString fontsDirectory()
{
    return fontBaseURL().toLocalFile() + u"Fonts"_s;
}
} // namespace

NoteTransfer::NoteTransfer(NoteStore &store, ContentController &content,
                           std::function<void()> collectTexts, QObject *parent)
    : QObject(parent), m_store(store), m_content(content), m_collectTexts(std::move(collectTexts))
{
    connect(m_content.transferProgress(), &TransferProgress::canceled, this, [this] {
        if (m_export)
            m_export->cancel();
        m_files.clear();
        m_imported = {};
        m_isBusy = false;
    });
}

NoteTransfer::~NoteTransfer()
{
    delete m_dialog.data();
}

void NoteTransfer::exportNote()
{
    if (isOccupied())
        return;
    const auto noteID = frontNote();
    if (!noteID)
        return;
    m_collectTexts(); // the heading may have been typed just now
    const Note *note = m_store.note(*noteID);
    if (!note || isOccupied())
        return;
    auto *dialog = new QFileDialog(nullptr, L10n::exportNoteTitle(), placeForFiles());
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    QStringList filters;
    for (const FormatChoice &choice : formatChoices)
        filters << filterOf(choice, false);
    dialog->setNameFilters(filters);
    const QString name = safeFileName(note->headingText());
    dialog->selectFile((name.isEmpty() ? L10n::untitled() : name) +
                       fileSuffix(ExportFormat::markdown));
    dialog->setDefaultSuffix(fileSuffix(ExportFormat::markdown));
    // The name follows the kind that is chosen, and with it the question before a file is replaced.
    connect(dialog, &QFileDialog::filterSelected, dialog, [dialog](const QString &filter) {
        const ExportFormat format = formatOfFilter(filter);
        dialog->setDefaultSuffix(fileSuffix(format));
        const QStringList files = dialog->selectedFiles();
        if (!files.isEmpty())
            dialog->selectFile(QFileInfo(withSuffix(files.constFirst(), format)).fileName());
    });
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, dialog, id = *noteID](const QString &file) {
                const ExportFormat format = formatOfFilter(dialog->selectedNameFilter());
                exportNoteTo(id, targetFor(file, format), format);
            });
    open(dialog);
}

void NoteTransfer::exportAll()
{
    if (isOccupied())
        return;
    if (m_store.notes().isEmpty()) {
        m_content.notify(L10n::selectOrAddNote(), {});
        return;
    }
    auto *dialog = new QFileDialog(nullptr, L10n::exportAllTitle(), placeForFiles());
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setOption(QFileDialog::DontConfirmOverwrite); // a folder that is there stays as it is
    dialog->setOption(QFileDialog::HideNameFilterDetails);
    QStringList filters;
    for (const FormatChoice &choice : formatChoices)
        filters << filterOf(choice, true);
    dialog->setNameFilters(filters);
    dialog->setLabelText(QFileDialog::FileName, L10n::folderName());
    // One that is free: of a folder that is there a dialog would show the content.
    const QString name = u"Plim "_s + QDate::currentDate().toString(Qt::ISODate);
    dialog->selectFile(QFileInfo(freePath(placeForFiles() + u'/' + name)).fileName());
    connect(dialog, &QFileDialog::fileSelected, this, [this, dialog](const QString &folder) {
        exportAllTo(folder, formatOfFilter(dialog->selectedNameFilter()));
    });
    open(dialog);
}

void NoteTransfer::importNotes()
{
    if (isOccupied())
        return;
    auto *dialog = new QFileDialog(nullptr, L10n::importTitle(), placeForFiles());
    dialog->setFileMode(QFileDialog::ExistingFiles);
    dialog->setNameFilter(L10n::notesToImport() + u" ("_s + importNameFilters().join(u' ') + u')');
    connect(dialog, &QFileDialog::filesSelected, this, &NoteTransfer::importFrom);
    open(dialog);
}

void NoteTransfer::printNote()
{
    if (isOccupied())
        return;
    const auto noteID = frontNote();
    if (!noteID)
        return;
    m_collectTexts();
    const Note *note = m_store.note(*noteID);
    if (!note || isOccupied())
        return;
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setPageLayout(printLayout(QLocale::system().measurementSystem()));
    printer->setDocName(safeFileName(note->headingText())); // names the file, too
    auto *dialog = new QPrintDialog(printer.get());
    dialog->setWindowTitle(L10n::printTitle());
    dialog->setOption(QPrintDialog::PrintToFile);
    connect(dialog, &QDialog::accepted, this,
            [this, note = *note, printer] { printTo(note, printer); });
    // The dialog writes to the printer until it has gone.
    connect(dialog, &QObject::destroyed, dialog, [printer] {});
    open(dialog);
}

// Over the window from which it was asked for, for a pinned one would hide it.
void NoteTransfer::open(QDialog *dialog)
{
    m_dialog = dialog;
    connect(dialog, &QDialog::finished, this, [this] { m_dialog.clear(); });
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::ApplicationModal);
    dialog->winId(); // there is no window to speak of before
    QWindow *front = QGuiApplication::focusWindow();
    dialog->windowHandle()->setTransientParent(
        stickyNoteIn(front) ? front : WindowHolder::shared().window.data());
    dialog->open();
}

bool NoteTransfer::isOccupied()
{
    if (m_dialog) {
        m_dialog->raise();
        m_dialog->activateWindow();
    } else if (m_content.transferProgress()->isShown()) {
        m_content.bringToFront();
    }
    return m_dialog || m_isBusy;
}

void NoteTransfer::exportNoteTo(const QUuid &noteID, const QString &file, ExportFormat format)
{
    m_collectTexts();
    const Note *note = m_store.note(noteID);
    if (!note || m_isBusy)
        return;
    begin(TransferProgress::Kind::Export, 1);
    makeExport()->exportNote(*note, format, file);
}

void NoteTransfer::exportAllTo(const QString &folder, ExportFormat format)
{
    m_collectTexts();
    if (m_isBusy)
        return;
    std::vector<Note> notes;
    notes.reserve(size_t(m_store.notes().size()));
    for (const Note &note : m_store.notes())
        notes.push_back(note);
    begin(TransferProgress::Kind::Export, int(notes.size()));
    makeExport()->exportNotes(std::move(notes), format, folder);
}

void NoteTransfer::printTo(const Note &note, std::shared_ptr<QPrinter> printer)
{
    if (m_isBusy)
        return;
    m_isBusy = true;
    if (!m_printing) {
        m_printing = std::make_unique<NotePrinting>(fontsDirectory(), m_store.imagesDirectory());
        connect(m_printing.get(), &NotePrinting::finished, this, [this] { m_isBusy = false; });
        connect(m_printing.get(), &NotePrinting::failed, this,
                [this](NotePrinting::Failure failure, const QString &file) {
                    m_isBusy = false;
                    m_content.notify(L10n::printFailed(), failureText(failure, file));
                });
    }
    m_printing->print(note, std::move(printer));
}

void NoteTransfer::importFrom(const QStringList &files)
{
    if (m_isBusy || files.isEmpty())
        return;
    m_files = files;
    m_imported = {};
    begin(TransferProgress::Kind::Import, int(files.size()));
    importNext();
}

// A file in each turn of the event loop, so that the interface goes on.
void NoteTransfer::importNext()
{
    if (!m_isBusy)
        return;
    if (m_files.isEmpty()) {
        finishImport();
        return;
    }
    ImportedNotes imported =
        ::importNotes({m_files.takeFirst()}, m_store.imagesDirectory(), Timestamp::now());
    for (Note &note : imported.notes)
        m_imported.notes.push_back(std::move(note));
    for (const ImportFailure &failure : imported.failures)
        m_imported.failures.push_back(failure);
    m_content.transferProgress()->setDone(
        int(m_imported.notes.size() + m_imported.failures.size()));
    QTimer::singleShot(0, this, &NoteTransfer::importNext);
}

void NoteTransfer::finishImport()
{
    end();
    m_content.bringToFront();
    m_content.addImported(m_imported.notes);
    if (!m_imported.failures.empty())
        m_content.notify(L10n::importFailed(), failureText(m_imported.failures));
    m_imported = {};
}

std::optional<QUuid> NoteTransfer::frontNote()
{
    if (const auto noteID = stickyNoteIn(QGuiApplication::focusWindow()))
        return noteID;
    const auto edited = m_content.editedNoteID();
    if (!edited)
        m_content.notify(L10n::selectOrAddNote(), {});
    return edited;
}

NoteExport *NoteTransfer::makeExport()
{
    m_export = std::make_unique<NoteExport>(
        ExportSettings{.imagesDirectory = m_store.imagesDirectory(),
                       .fontsDirectory = fontsDirectory(),
                       .untitled = L10n::untitled(),
                       .pageLayout = printLayout(QLocale::system().measurementSystem())});
    connect(m_export.get(), &NoteExport::progressed, this,
            [this](int done) { m_content.transferProgress()->setDone(done); });
    connect(m_export.get(), &NoteExport::finished, this, [this](const QString &path) {
        end();
        m_content.offerExported(m_exportedCount, path);
    });
    connect(m_export.get(), &NoteExport::failed, this, [this](const ExportFailure &failure) {
        end();
        m_content.notify(L10n::exportFailed(), failureText(failure));
    });
    return m_export.get();
}

void NoteTransfer::begin(TransferProgress::Kind kind, int total)
{
    m_isBusy = true;
    m_exportedCount = total;
    m_content.transferProgress()->begin(kind, total);
}

void NoteTransfer::end()
{
    m_isBusy = false;
    m_content.transferProgress()->end();
}
