#include "transfer/NoteExport.h"

#include "transfer/ExportFileNames.h"
#include "transfer/ExportedPictures.h"
#include "transfer/HtmlWriter.h"
#include "transfer/LinkAddress.h"
#include "transfer/MarkdownWriter.h"
#include "transfer/NoteDocumentReader.h"
#include "transfer/PrintedPage.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMetaEnum>
#include <QTemporaryDir>

#include <filesystem>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// The reason when it fails. A file that is there is replaced in one go.
std::optional<QString> move(const QString &source, const QString &target)
{
    std::error_code error;
    std::filesystem::rename(QFile(source).filesystemFileName(), QFile(target).filesystemFileName(),
                            error);
    return error ? std::optional(QString::fromLocal8Bit(error.message())) : std::nullopt;
}

QString pageTitle(const NoteDocument &document, const QString &untitled)
{
    const QString heading = document.headingText();
    return heading.isEmpty() ? untitled : heading;
}
} // namespace

QString fileSuffix(ExportFormat format)
{
    switch (format) {
    case ExportFormat::markdown:
        return u".md"_s;
    case ExportFormat::html:
        return u".html"_s;
    case ExportFormat::pdf:
        return u".pdf"_s;
    }
    return {};
}

NoteExport::NoteExport(ExportSettings settings, QObject *parent)
    : QObject(parent), m_settings(std::move(settings))
{
}

NoteExport::~NoteExport() = default;

void NoteExport::exportNote(const Note &note, ExportFormat format, const QString &file)
{
    m_isSingle = true;
    start({note}, format, QDir::cleanPath(file));
}

void NoteExport::exportNotes(std::vector<Note> notes, ExportFormat format, const QString &folder)
{
    m_isSingle = false;
    start(std::move(notes), format, QDir::cleanPath(folder));
}

void NoteExport::cancel()
{
    if (!m_isRunning)
        return;
    if (m_renderer)
        m_renderer->cancel();
    putAway();
}

void NoteExport::start(std::vector<Note> notes, ExportFormat format, const QString &target)
{
    Q_ASSERT(!m_isRunning);
    m_isRunning = true;
    ++m_run;
    m_notes = std::move(notes);
    m_next = 0;
    m_format = format;
    m_target = target;

    const QFileInfo info(target);
    // Beside the target, because only there moving is one step.
    m_workshop = std::make_unique<QTemporaryDir>(info.path() + u"/.plim-export-XXXXXX"_s);
    // A folder like any other, which the temporary one is not: that is for its owner alone.
    m_made = m_workshop->filePath(u"export"_s);
    if (m_workshop->isValid())
        QDir().mkdir(m_made);
    m_names = std::make_unique<ExportFileNames>(m_settings.untitled);
    QString pictureFolder = u"images"_s;
    if (m_isSingle)
        pictureFolder =
            QFileInfo(freePath(info.path() + u'/' + info.completeBaseName() + u"_files"_s))
                .fileName();
    else
        m_names->reserve(pictureFolder);
    m_pictures = std::make_unique<ExportedPictures>(m_settings.imagesDirectory, pictureFolder);
    scheduleStep();
}

void NoteExport::scheduleStep()
{
    QMetaObject::invokeMethod(
        this,
        [this, run = m_run] {
            if (m_isRunning && run == m_run)
                step();
        },
        Qt::QueuedConnection);
}

void NoteExport::step()
{
    if (!m_workshop->isValid())
        fail(ExportFailure::Reason::cannotWrite, m_workshop->errorString());
    else if (m_next == m_notes.size())
        moveIntoPlace();
    else
        writeNote(m_notes[m_next]);
}

void NoteExport::writeNote(const Note &note)
{
    const NoteDocument document = readHtml(note.body).document;
    m_fileName = m_isSingle ? QFileInfo(m_target).fileName()
                            : m_names->next(note.headingText()) + fileSuffix(m_format);
    switch (m_format) {
    case ExportFormat::markdown:
        finishNote(markdownText(document, [this](const QString &source) {
                       const QString address = m_pictures->addressOf(source);
                       const QString scheme = addressScheme(source);
                       const bool isOfWeb = scheme == "http"_L1 || scheme == "https"_L1;
                       return address.isEmpty() && isOfWeb ? source : address;
                   }).toUtf8());
        break;
    case ExportFormat::html:
        finishNote(htmlPage(document, HtmlPage{.title = pageTitle(document, m_settings.untitled)},
                            [this](const QString &source) { return m_pictures->addressOf(source); })
                       .toUtf8());
        break;
    case ExportFormat::pdf:
        printNote(note);
        break;
    }
}

void NoteExport::printNote(const Note &note)
{
    if (!m_renderer) {
        m_renderer = std::make_unique<PdfRenderer>(
            PageFolders{m_settings.fontsDirectory, m_settings.imagesDirectory});
        connect(m_renderer.get(), &PdfRenderer::rendered, this, &NoteExport::finishNote);
        connect(m_renderer.get(), &PdfRenderer::failed, this, [this](PdfRenderer::Failure failure) {
            fail(ExportFailure::Reason::cannotPrint,
                 QString::fromLatin1(
                     QMetaEnum::fromType<PdfRenderer::Failure>().valueToKey(int(failure))));
        });
    }
    m_renderer->render(printedPage(note, m_settings.fontsDirectory, m_settings.untitled),
                       m_settings.pageLayout);
}

void NoteExport::finishNote(const QByteArray &bytes)
{
    QFile file(m_made + u'/' + m_fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush()) {
        fail(ExportFailure::Reason::cannotWrite, file.errorString());
        return;
    }
    file.setFileTime(m_notes[m_next].updatedAt.toDateTime(), QFileDevice::FileModificationTime);
    file.close();
    if (const std::optional<QString> error = m_pictures->copyTo(m_made)) {
        fail(ExportFailure::Reason::cannotWrite, *error);
        return;
    }
    ++m_next;
    Q_EMIT progressed(int(m_next), int(m_notes.size()));
    if (m_isRunning)
        scheduleStep();
}

void NoteExport::moveIntoPlace()
{
    QString target = m_target;
    std::optional<QString> error;
    if (m_isSingle) {
        const QString pictures = m_made + u'/' + m_pictures->folderName();
        const QString picturesTarget = QFileInfo(m_target).path() + u'/' + m_pictures->folderName();
        const bool hasPictures = QFileInfo::exists(pictures);
        if (hasPictures)
            error = move(pictures, picturesTarget);
        if (!error) {
            error = move(m_made + u'/' + QFileInfo(m_target).fileName(), m_target);
            if (error && hasPictures)
                QDir(picturesTarget).removeRecursively();
        }
    } else {
        target = freePath(m_target);
        error = move(m_made, target);
    }
    if (error) {
        fail(ExportFailure::Reason::cannotWrite, *error);
        return;
    }
    putAway();
    Q_EMIT finished(target);
}

void NoteExport::fail(ExportFailure::Reason reason, const QString &detail)
{
    const ExportFailure failure{reason, m_target, detail};
    putAway();
    Q_EMIT failed(failure);
}

void NoteExport::putAway()
{
    m_isRunning = false;
    m_notes.clear();
    m_pictures.reset();
    m_names.reset();
    m_workshop.reset();
}
