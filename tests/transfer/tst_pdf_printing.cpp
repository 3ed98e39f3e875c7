#include "pages/engine/PdfPrinting.h"

#include <QBuffer>
#include <QFile>
#include <QPainter>
#include <QPdfDocument>
#include <QPdfWriter>
#include <QPrinter>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QList<QColor> colors{Qt::red, Qt::green, Qt::blue};

/// A page of each colour, its margins white.
QByteArray coloredPages(QPageSize::PageSizeId size = QPageSize::A4)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setPageSize(QPageSize(size));
    QPainter painter(&writer);
    for (qsizetype i = 0; i < colors.size(); ++i) {
        if (i > 0)
            writer.newPage();
        painter.fillRect(painter.viewport(), colors[i]);
    }
    painter.end();
    return bytes;
}
} // namespace

/// Printing, on a printer that is a file.
class TestPdfPrinting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_printer = std::make_unique<QPrinter>(QPrinter::ScreenResolution);
        m_printer->setOutputFormat(QPrinter::PdfFormat);
        m_printer->setOutputFileName(m_folder->filePath(u"printed.pdf"_s));
        m_printer->setPageSize(QPageSize(QPageSize::A4));
    }

    void everyPageIsASheet()
    {
        QCOMPARE(printPdf(coloredPages(), *m_printer), PrintOutcome::printed);
        QCOMPARE(printed(), colors);
        QPdfDocument document;
        document.load(m_printer->outputFileName());
        QCOMPARE(document.pagePointSize(0).toSize(), QSize(595, 842));
        // The margins of the PDF are the only ones.
        const QImage page = document.render(0, QSize(595, 842));
        QVERIFY(page.pixelColor(5, 400) != QColor(Qt::red));
        QCOMPARE(page.pixelColor(60, 400), QColor(Qt::red));
    }

    void onlyThePagesAskedFor()
    {
        m_printer->setPrintRange(QPrinter::PageRange);
        m_printer->setFromTo(2, 7);
        QCOMPARE(printPdf(coloredPages(), *m_printer), PrintOutcome::printed);
        QCOMPARE(printed(), (QList<QColor>{Qt::green, Qt::blue}));
    }

    void backwards()
    {
        m_printer->setPageOrder(QPrinter::LastPageFirst);
        QCOMPARE(printPdf(coloredPages(), *m_printer), PrintOutcome::printed);
        QCOMPARE(printed(), (QList<QColor>{Qt::blue, Qt::green, Qt::red}));
    }

    void otherPaperIsFittedIn()
    {
        m_printer->setPageSize(QPageSize(QPageSize::A6));
        QCOMPARE(printPdf(coloredPages(QPageSize::Letter), *m_printer), PrintOutcome::printed);
        QCOMPARE(printed(), colors);
    }

    void theCallerMayStop()
    {
        QList<std::pair<int, int>> asked;
        const auto goesOn = [&asked](int sheet, int total) {
            asked.append({sheet, total});
            return sheet < 1;
        };
        QCOMPARE(printPdf(coloredPages(), *m_printer, goesOn), PrintOutcome::cancelled);
        QCOMPARE(asked, (QList<std::pair<int, int>>{{0, 3}, {1, 3}}));
    }

    void whatIsNoPdfIsNotPrinted()
    {
        QCOMPARE(printPdf("words", *m_printer), PrintOutcome::notPdf);
        QCOMPARE(printPdf({}, *m_printer), PrintOutcome::notPdf);
        QVERIFY(!QFile::exists(m_printer->outputFileName()));
    }

    void printersMayRefuse()
    {
        m_printer->setOutputFileName(m_folder->filePath(u"absent/printed.pdf"_s));
        QCOMPARE(printPdf(coloredPages(), *m_printer), PrintOutcome::refused);
    }

private:
    /// The colour in the middle of each sheet.
    QList<QColor> printed() const
    {
        QPdfDocument document;
        document.load(m_printer->outputFileName());
        QList<QColor> found;
        for (int page = 0; page < document.pageCount(); ++page)
            found += document.render(page, QSize(60, 80)).pixelColor(30, 40);
        return found;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QPrinter> m_printer;
};

QTEST_MAIN(TestPdfPrinting)
#include "tst_pdf_printing.moc"
