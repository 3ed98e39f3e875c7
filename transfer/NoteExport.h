#pragma once

#include "core/Note.h"
#include "transfer/PdfRenderer.h"

#include <QObject>
#include <QPageLayout>

#include <memory>
#include <optional>
#include <vector>

class ExportFileNames;
class ExportedPictures;
class QTemporaryDir;

enum class ExportFormat { markdown, html, pdf };

/// With its dot.
[[nodiscard]] QString fileSuffix(ExportFormat format);

struct ExportFailure {
    enum class Reason {
        cannotWrite, ///< `detail` has the system's words
        cannotPrint, ///< the web engine could not make the PDF
    };
    Reason reason = Reason::cannotWrite;
    QString path; ///< what could not be written
    QString detail = {};

    [[nodiscard]] bool operator==(const ExportFailure &) const = default;
};

/// Where things lie and what they are called, for an export.
struct ExportSettings {
    QString imagesDirectory;
    QString fontsDirectory;
    QString untitled;       ///< the name of a note without a heading
    QPageLayout pageLayout; ///< of PDF
};

/// Writes notes to files, a note in each turn of the event loop, so that the interface goes on.
///
/// Everything is made in a temporary folder beside the target and moved to its place at the end: a
/// target is there as a whole or not at all. One export at a time.
class NoteExport : public QObject
{
    Q_OBJECT

public:
    explicit NoteExport(ExportSettings settings, QObject *parent = nullptr);
    ~NoteExport() override;

    /// One note into one file, which is replaced. Pictures go into a folder of their own beside it.
    void exportNote(const Note &note, ExportFormat format, const QString &file);
    /// Each note into a file of its own in a new folder. When the folder is there already, it
    /// stays, and the new one has a number behind its name.
    void exportNotes(std::vector<Note> notes, ExportFormat format, const QString &folder);
    /// Leaves nothing of what is not finished, and nothing is heard of it any more.
    void cancel();

    [[nodiscard]] bool isRunning() const { return m_isRunning; }

Q_SIGNALS:
    void progressed(int done, int total);
    /// The file or folder as it was called in the end.
    void finished(const QString &path);
    void failed(const ExportFailure &failure);

private:
    void start(std::vector<Note> notes, ExportFormat format, const QString &target);
    void scheduleStep();
    void step();
    void writeNote(const Note &note);
    void finishNote(const QByteArray &bytes);
    void printNote(const Note &note);
    void moveIntoPlace();
    void fail(ExportFailure::Reason reason, const QString &detail);
    void putAway();

    ExportSettings m_settings;
    bool m_isRunning = false;
    bool m_isSingle = false;
    int m_run = 0;
    std::vector<Note> m_notes;
    std::size_t m_next = 0;
    ExportFormat m_format = ExportFormat::markdown;
    QString m_target;
    QString m_fileName; ///< of the note being written
    std::unique_ptr<QTemporaryDir> m_workshop;
    QString m_made; ///< the folder in it that has what is made so far
    std::unique_ptr<ExportFileNames> m_names;
    std::unique_ptr<ExportedPictures> m_pictures;
    std::unique_ptr<PdfRenderer> m_renderer;
};
