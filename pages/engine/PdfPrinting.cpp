#include "pages/engine/PdfPrinting.h"

#include <QBuffer>
#include <QPainter>
#include <QPdfDocument>
#include <QPrinter>

#include <algorithm>
#include <vector>

namespace
{
/// Finer than eyes see, and small enough for the memory that a page takes.
constexpr qreal finestResolution = 300;

/// The pages to print, in the order of the sheets.
std::vector<int> sheets(const QPrinter &printer, int pageCount)
{
    int first = 0;
    int last = pageCount - 1;
    if (printer.printRange() == QPrinter::PageRange && printer.fromPage() > 0) {
        first = printer.fromPage() - 1;
        last = std::min(last, std::max(printer.fromPage(), printer.toPage()) - 1);
    }
    std::vector<int> pages;
    for (int page = first; page <= last; ++page)
        pages.push_back(page);
    if (printer.pageOrder() == QPrinter::LastPageFirst)
        std::ranges::reverse(pages);

    const int copies = printer.supportsMultipleCopies() ? 1 : std::max(1, printer.copyCount());
    std::vector<int> found;
    if (printer.collateCopies()) {
        for (int copy = 0; copy < copies; ++copy)
            found.insert(found.end(), pages.begin(), pages.end());
    } else {
        for (const int page : pages)
            found.insert(found.end(), std::size_t(copies), page);
    }
    return found;
}

/// Where the page lies on the sheet, in dots of the printer.
QRectF placeOn(const QRectF &sheet, const QSizeF &page)
{
    const QSizeF size = page.scaled(sheet.size(), Qt::KeepAspectRatio);
    const QPointF free(sheet.width() - size.width(), sheet.height() - size.height());
    return {sheet.topLeft() + free / 2, size};
}

/// A document that has been read, or has not.
class ReadPdf
{
public:
    explicit ReadPdf(const QByteArray &pdf) : m_bytes(pdf)
    {
        m_buffer.open(QIODevice::ReadOnly);
        document.load(&m_buffer);
    }

private:
    QByteArray m_bytes;
    QBuffer m_buffer{&m_bytes};

public:
    QPdfDocument document; ///< goes before its bytes
};
} // namespace

int pageCountOf(const QByteArray &pdf)
{
    return ReadPdf(pdf).document.pageCount();
}

PrintOutcome printPdf(const QByteArray &pdf, QPrinter &printer,
                      const std::function<bool(int, int)> &goesOn)
{
    ReadPdf read(pdf);
    QPdfDocument &document = read.document;
    if (document.status() != QPdfDocument::Status::Ready || document.pageCount() == 0)
        return PrintOutcome::notPdf;

    printer.setFullPage(true); // the PDF has its margins already
    QPainter painter;
    const std::vector<int> pages = sheets(printer, document.pageCount());
    const int total = int(pages.size());
    for (int sheet = 0; sheet < total; ++sheet) {
        if (goesOn && !goesOn(sheet, total)) {
            printer.abort();
            return PrintOutcome::cancelled;
        }
        if (sheet == 0 ? !painter.begin(&printer) : !printer.newPage())
            return PrintOutcome::refused;
        painter.setRenderHint(QPainter::LosslessImageRendering); // letters would blur
        const int page = pages[std::size_t(sheet)];
        const QRectF place =
            placeOn(printer.paperRect(QPrinter::DevicePixel), document.pagePointSize(page));
        const qreal scale = std::min(1.0, finestResolution / printer.resolution());
        painter.drawImage(place, document.render(page, (place.size() * scale).toSize()));
    }
    return painter.isActive() && !painter.end() ? PrintOutcome::refused : PrintOutcome::printed;
}
