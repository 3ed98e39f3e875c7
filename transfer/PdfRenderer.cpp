#include "transfer/PdfRenderer.h"

#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <QUrl>

#include <utility>

using namespace Qt::Literals::StringLiterals;

PdfRenderer::PdfRenderer(PageFolders folders, QObject *parent)
    : QObject(parent), m_folders(std::move(folders))
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] { fail(Failure::tookTooLong); });
}

PdfRenderer::~PdfRenderer()
{
    m_isBusy = false; // the page answers what is open as it goes
    m_page.reset();
    m_retired.reset();
}

void PdfRenderer::render(const QString &html, const QPageLayout &layout)
{
    if (m_isBusy) {
        Q_EMIT failed(Failure::busy);
        return;
    }
    m_isBusy = true;
    ++m_job;
    m_layout = layout;
    m_timer.start(m_patience);

    // As a file, because what a page is given directly must not be longer than two megabytes.
    m_directory = std::make_unique<QTemporaryDir>();
    const QByteArray bytes = html.toUtf8();
    QFile file(m_directory->filePath(u"note.html"_s));
    if (!m_directory->isValid() || !file.open(QIODevice::WriteOnly) ||
        file.write(bytes) != bytes.size() || !file.flush()) {
        fail(Failure::cannotWrite);
        return;
    }
    file.close();
    if (!m_page)
        openPage();
    m_page->load(QUrl::fromLocalFile(file.fileName()));
}

void PdfRenderer::cancel()
{
    if (!m_isBusy)
        return;
    putAway();
    // It may be loading or printing, and would answer into the next document.
    m_page.reset();
}

void PdfRenderer::openPage()
{
    m_page = PageEngine::shared().makeHiddenPage(m_folders);
    m_page->onLoaded = [this](bool isLoaded) {
        if (!m_isBusy)
            return;
        if (isLoaded)
            print();
        else
            fail(Failure::cannotLoad);
    };
    m_page->onProcessEnded = [this] {
        if (m_isBusy)
            fail(Failure::rendererDied);
    };
}

void PdfRenderer::print()
{
    const QPointer<PdfRenderer> guard(this);
    m_page->print(
        [guard, job = m_job](const QByteArray &pdf) {
            if (!guard || !guard->m_isBusy || guard->m_job != job)
                return;
            if (pdf.isEmpty()) {
                guard->fail(Failure::cannotPrint);
                return;
            }
            guard->putAway();
            Q_EMIT guard->rendered(pdf);
        },
        m_layout);
}

void PdfRenderer::fail(Failure failure)
{
    m_timer.stop();
    m_directory.reset();
    ++m_job;
    // A page that failed is not asked again, and is out of the way before anybody hears of it. It
    // may be the sender, so it does not go at once.
    if (m_page) {
        m_page->onLoaded = {};
        m_page->onProcessEnded = {};
    }
    m_retired = std::move(m_page);
    QMetaObject::invokeMethod(
        this,
        [this, job = m_job, failure] {
            m_retired.reset();
            if (job != m_job)
                return;
            m_isBusy = false;
            Q_EMIT failed(failure);
        },
        Qt::QueuedConnection);
}

void PdfRenderer::putAway()
{
    m_isBusy = false;
    ++m_job;
    m_timer.stop();
    m_directory.reset();
}
