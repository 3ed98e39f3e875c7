#include "core/app/NotePrinting.h"

#include "pages/PageEngine.h"
#include "shell/L10n.h"
#include "transfer/PrintedPage.h"

#include <QPointer>
#include <QPrinter>
#include <QSaveFile>

#include <utility>

NotePrinting::NotePrinting(const QString &fontsDirectory, const QString &imagesDirectory,
                           QObject *parent)
    : QObject(parent), m_fontsDirectory(fontsDirectory), m_renderer({fontsDirectory, imagesDirectory})
{
    connect(&m_renderer, &PdfRenderer::rendered, this, &NotePrinting::send);
    connect(&m_renderer, &PdfRenderer::failed, this, [this] { fail(Failure::cannotMakePage); });
}

void NotePrinting::print(const Note &note, std::shared_ptr<QPrinter> printer)
{
    if (m_printer) {
        Q_EMIT failed(Failure::busy, {});
        return;
    }
    m_printer = std::move(printer);
    m_renderer.render(printedPage(note, m_fontsDirectory, L10n::untitled()),
                      m_printer->pageLayout());
}

void NotePrinting::send(const QByteArray &pdf)
{
    const bool isFile =
        m_printer->outputFormat() == QPrinter::PdfFormat && !m_printer->outputFileName().isEmpty();
    if (m_printer->fromPage() > PageEngine::shared().pageCount(pdf))
        fail(Failure::noSuchPage);
    else if (isFile && m_printer->pageRanges().isEmpty())
        writeFile(pdf);
    else if (isFile)
        sendRange();
    else if (PageEngine::shared().print(pdf, *m_printer) == PrintOutcome::printed)
        end();
    else
        fail(Failure::cannotPrint);
}

// The page is still there with the note in it, and only its engine can leave pages out of a PDF
// without making pictures of the others.
void NotePrinting::sendRange()
{
    const QPointer<NotePrinting> guard(this);
    m_renderer.page()->print(
        [guard](const QByteArray &pdf) {
            if (!guard || !guard->m_printer)
                return;
            if (pdf.isEmpty())
                guard->fail(Failure::cannotMakePage);
            else
                guard->writeFile(pdf);
        },
        m_printer->pageLayout(), m_printer->pageRanges());
}

void NotePrinting::writeFile(const QByteArray &pdf)
{
    QSaveFile file(m_printer->outputFileName());
    if (file.open(QIODevice::WriteOnly) && file.write(pdf) == pdf.size() && file.commit())
        end();
    else
        fail(Failure::cannotWrite);
}

void NotePrinting::end()
{
    m_printer.reset();
    Q_EMIT finished();
}

void NotePrinting::fail(Failure failure)
{
    const QString file = m_printer->outputFileName();
    m_printer.reset();
    Q_EMIT failed(failure, file);
}
