#include "core/app/NotePrinting.h"
#include "core/app/Platform.h"

#include "shell/LanguageManager.h"
#include "tests/Patience.h"
#include "tests/ThrowAwayHome.h"
#include "transfer/PrintLayout.h"

#include <QApplication>
#include <QBuffer>
#include <QImage>
#include <QPdfDocument>
#include <QPrinter>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{
constexpr int patience = longEnough;

Note noteWith(const QString &body)
{
    Note note = Note::fresh({1000});
    note.body = body;
    return note;
}

/// Some pages, each of which has a word of its own.
Note longNote()
{
    QString body = u"<h1>Tea</h1>"_s;
    for (const QString &word : {u"alpha"_s, u"beta"_s, u"gamma"_s})
        body += u"<p>%1</p>"_s.arg(word) + QString(u"<p>so</p>"_s).repeated(60);
    return noteWith(body);
}
} // namespace

/// Notes on their way to a printer, by the real engine; files are read by another program.
class TestNotePrinting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_home.emplace();
        LanguageManager::shared().setLanguage(AppLanguage::en);
        m_printing = std::make_unique<NotePrinting>(QStringLiteral(PLIM_SOURCE_DIR "/Fonts"),
                                                    m_home->path(u"images"_s));
    }
    void cleanup()
    {
        m_printing.reset();
        m_home.reset();
    }

    void whatIsPrintedIntoAFileStaysText()
    {
        QVERIFY(prints(noteWith(u"<h1>Zażółć</h1><p>gęślą <b>jaźń</b></p>"_s), filePrinter()));
        QCOMPARE(words().simplified(), u"Zażółć gęślą jaźń"_s);
    }

    void theFileTakesTheDialogsPaper()
    {
        const auto printer = filePrinter();
        printer->setPageSize(QPageSize(QPageSize::A5));
        printer->setPageOrientation(QPageLayout::Landscape);
        QVERIFY(prints(noteWith(u"<h1>a</h1>"_s), printer));
        QPdfDocument document;
        document.load(file());
        const QSizeF a5 = QPageSize(QPageSize::A5).size(QPageSize::Point).transposed();
        const QSizeF size = document.pagePointSize(0);
        QVERIFY2(qAbs(size.width() - a5.width()) < 2 && qAbs(size.height() - a5.height()) < 2,
                 qPrintable(QDebug::toString(size)));
    }

    void aRangeOfPagesIsTextToo()
    {
        QVERIFY(prints(longNote(), filePrinter()));
        const int pages = pageCount();
        QVERIFY2(pages >= 3, qPrintable(QString::number(pages)));
        QVERIFY(words().contains(u"alpha"_s) && words().contains(u"gamma"_s));

        const auto printer = filePrinter();
        printer->setPrintRange(QPrinter::PageRange);
        printer->setFromTo(2, 3);
        QVERIFY(prints(longNote(), printer));
        QCOMPARE(pageCount(), 2);
        QVERIFY(!words().contains(u"alpha"_s));
        QVERIFY2(words().contains(u"so"_s), qPrintable(words()));
    }

    void pagesBeyondTheLastOneAreNone()
    {
        const auto printer = filePrinter();
        printer->setPrintRange(QPrinter::PageRange);
        printer->setFromTo(1, 40);
        QVERIFY(prints(noteWith(u"<h1>a</h1>"_s), printer));
        QCOMPARE(pageCount(), 1);
    }

    void whatHasNoSuchPageFails()
    {
        const auto printer = filePrinter();
        printer->setPrintRange(QPrinter::PageRange);
        printer->setFromTo(7, 8);
        QSignalSpy failed(m_printing.get(), &NotePrinting::failed);
        QVERIFY(!prints(noteWith(u"<h1>a</h1>"_s), printer));
        QCOMPARE(failed[0][0].value<NotePrinting::Failure>(), NotePrinting::Failure::noSuchPage);
        QVERIFY(!QFile::exists(file()));
        QVERIFY(prints(noteWith(u"<h1>a</h1>"_s), filePrinter())); // and the next one is printed
    }

    void aPrinterThatTakesNothingIsAFailure()
    {
        const auto printer = filePrinter();
        printer->setOutputFileName({});
        QSignalSpy failed(m_printing.get(), &NotePrinting::failed);
        QVERIFY(!prints(noteWith(u"<h1>a</h1>"_s), printer));
        QCOMPARE(failed[0][0].value<NotePrinting::Failure>(), NotePrinting::Failure::cannotPrint);
    }

    void aFileThatCannotBeWrittenIsNamed()
    {
        const auto printer = filePrinter();
        printer->setOutputFileName(m_home->path(u"nowhere/note.pdf"_s));
        QSignalSpy failed(m_printing.get(), &NotePrinting::failed);
        QVERIFY(!prints(noteWith(u"<h1>a</h1>"_s), printer));
        QCOMPARE(failed.size(), 1);
        QCOMPARE(failed[0][0].value<NotePrinting::Failure>(), NotePrinting::Failure::cannotWrite);
        QCOMPARE(failed[0][1].toString(), m_home->path(u"nowhere/note.pdf"_s));
    }

    void aSecondOneWaits()
    {
        QSignalSpy finished(m_printing.get(), &NotePrinting::finished);
        QSignalSpy failed(m_printing.get(), &NotePrinting::failed);
        m_printing->print(noteWith(u"<h1>first</h1>"_s), filePrinter());
        m_printing->print(noteWith(u"<h1>second</h1>"_s), filePrinter());
        QCOMPARE(failed.size(), 1);
        QCOMPARE(failed[0][0].value<NotePrinting::Failure>(), NotePrinting::Failure::busy);
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, patience);
        QCOMPARE(words().simplified(), u"first"_s);
    }

    void theEndAmidAPageLeavesNothing()
    {
        m_printing->print(longNote(), filePrinter());
        m_printing.reset();
        QVERIFY(!QFile::exists(file()));
    }

private:
    [[nodiscard]] QString file() const { return m_home->path(u"note.pdf"_s); }
    [[nodiscard]] std::shared_ptr<QPrinter> filePrinter() const
    {
        auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
        printer->setOutputFormat(QPrinter::PdfFormat);
        printer->setOutputFileName(file());
        printer->setPageLayout(printLayout(QLocale::MetricSystem));
        return printer;
    }
    bool prints(const Note &note, std::shared_ptr<QPrinter> printer)
    {
        QSignalSpy finished(m_printing.get(), &NotePrinting::finished);
        QSignalSpy failed(m_printing.get(), &NotePrinting::failed);
        m_printing->print(note, std::move(printer));
        return QTest::qWaitFor([&] { return !finished.isEmpty() || !failed.isEmpty(); },
                               patience) &&
               failed.isEmpty();
    }
    [[nodiscard]] QString words() const
    {
        QProcess reader;
        reader.start(u"pdftotext"_s, {u"-enc"_s, u"UTF-8"_s, file(), u"-"_s});
        reader.waitForFinished(patience);
        return QString::fromUtf8(reader.readAllStandardOutput());
    }
    [[nodiscard]] int pageCount() const
    {
        QPdfDocument document;
        document.load(file());
        return document.pageCount();
    }

    std::optional<ThrowAwayHome> m_home;
    std::unique_ptr<NotePrinting> m_printing;
};

int main(int argc, char **argv)
{
    preparePlatform(); // before the web engine
    const QApplication application(argc, argv);
    TestNotePrinting test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_note_printing.moc"
