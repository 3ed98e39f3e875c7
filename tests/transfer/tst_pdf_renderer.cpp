#include "core/Note.h"
#include "core/app/Platform.h"
#include "tests/Patience.h"
#include "transfer/PdfRenderer.h"
#include "transfer/PrintLayout.h"
#include "transfer/PrintedPage.h"

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString fonts = QStringLiteral(PLIM_SOURCE_DIR "/Fonts");
constexpr int patience = longEnough;

Note noteWith(const QString &body)
{
    Note note = Note::fresh({});
    note.body = body;
    return note;
}

QString page(const QString &body)
{
    return printedPage(noteWith(body), fonts, u"Untitled"_s);
}
} // namespace

/// Notes as PDF, made by the real engine and read by another program.
class TestPdfRenderer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_renderer = std::make_unique<PdfRenderer>(PageFolders{fonts, m_folder->path()});
    }
    void cleanup() { m_renderer.reset(); }

    void wordsCanBeFound()
    {
        const QByteArray pdf = rendered(
            page(u"<h1>Zażółć</h1><p>gęślą <b>jaźń</b> <i>ŚĆŻ</i></p><ol><li>Łoś</li></ol>"_s));
        QVERIFY(pdf.startsWith("%PDF"));
        QCOMPARE(text(pdf).simplified(), u"Zażółć gęślą jaźń ŚĆŻ 1. Łoś"_s);
        const QSize a4(595, 842);
        QCOMPARE(pageSizes(pdf).size(), 1);
        const QSize difference = pageSizes(pdf)[0] - a4; // 841.89 points, cut off by the engine
        QVERIFY(qAbs(difference.width()) <= 1 && qAbs(difference.height()) <= 1);
        QVERIFY2(output(u"pdffonts"_s, pdf).contains(u"Outfit"_s),
                 qPrintable(output(u"pdffonts"_s, pdf)));
    }

    void paperIsAsAskedFor()
    {
        const QByteArray pdf =
            rendered(page(u"<h1>a</h1>"_s), printLayout(QLocale::ImperialUSSystem));
        QCOMPARE(pageSizes(pdf), QList<QSize>{QSize(612, 792)});
    }

    void longNotesGoOverSeveralPages()
    {
        QString body = u"<h1>long</h1>"_s;
        for (int i = 0; i < 150; ++i)
            body += u"<p>line %1</p>"_s.arg(i);
        const QByteArray pdf = rendered(page(body));
        QVERIFY(pageSizes(pdf).size() > 3);
        QVERIFY(text(pdf).contains(u"line 149"_s));
    }

    void notesOverTwoMegabytesArePrinted()
    {
        // Longer than an address may be; as one picture, so that it takes no time to set.
        QImage image(900, 900, QImage::Format_RGB32);
        quint32 value = 1;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, value = value * 1664525 + 1013904223);
        }
        QByteArray bytes;
        QBuffer buffer(&bytes);
        QVERIFY(image.save(&buffer, "PNG"));
        QVERIFY(bytes.size() > 2'000'000);
        const QByteArray pdf =
            rendered(page(u"<h1>large</h1><p><img src=\"data:image/png;base64,"_s +
                          QString::fromLatin1(bytes.toBase64()) + u"\"></p><p>end</p>"_s));
        QVERIFY(text(pdf).contains(u"end"_s));
    }

    void picturesAreShown()
    {
        QImage image(40, 30, QImage::Format_RGB32);
        image.fill(Qt::red);
        const QString path = m_folder->filePath(u"a ż#1.png"_s);
        QVERIFY(image.save(path));
        const QString address = QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
        QVERIFY(imageCount(rendered(page(u"<h1>a</h1><p><img src=\"%1\"></p>"_s.arg(address)))) >
                0);

        const QString gone = address.chopped(4);
        QCOMPARE(text(rendered(page(u"<h1>a</h1><p><img src=\"%1\" alt=\"b\"></p>"_s.arg(gone))))
                     .simplified(),
                 u"a b"_s);

        // Elsewhere on the disk there is nothing for a note.
        const QTemporaryDir elsewhere;
        const QString other = elsewhere.filePath(u"b.png"_s);
        QVERIFY(image.save(other));
        const QString otherAddress = QUrl::fromLocalFile(other).toString(QUrl::FullyEncoded);
        QCOMPARE(
            imageCount(rendered(page(u"<h1>a</h1><p><img src=\"%1\"></p>"_s.arg(otherAddress)))),
            0);
    }

    void nothingRunsAndNothingIsFetched()
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        const QString web = u"http://127.0.0.1:%1/"_s.arg(server.serverPort());
        // Not what a note can hold: the lock has to hold by itself.
        const QByteArray pdf = rendered(
            u"<p id=a>before</p><script>document.getElementById('a').textContent='ran'</script>"
            "<img src=\"%1a.png\" onerror=\"document.body.textContent='ran'\"><link rel=stylesheet "
            "href=\"%1a.css\"><iframe src=\"%1\"></iframe><meta http-equiv=refresh "
            "content=\"0;url=%1\">"_s.arg(web));
        QVERIFY(text(pdf).contains(u"before"_s));
        QVERIFY(!text(pdf).contains(u"ran"_s));
        QVERIFY(!server.hasPendingConnections());
    }

    void oneAfterTheOther()
    {
        QCOMPARE(text(rendered(page(u"<h1>first</h1>"_s))).simplified(), u"first"_s);
        QCOMPARE(text(rendered(page(u"<h1>second</h1>"_s))).simplified(), u"second"_s);
    }

    void whatIsCancelledAnswersNothing()
    {
        QSignalSpy done(m_renderer.get(), &PdfRenderer::rendered);
        QSignalSpy failed(m_renderer.get(), &PdfRenderer::failed);
        m_renderer->render(page(u"<h1>first</h1>"_s), printLayout(QLocale::MetricSystem));
        m_renderer->cancel();
        m_renderer->render(page(u"<h1>second</h1>"_s), printLayout(QLocale::MetricSystem));
        QVERIFY(done.wait(patience));
        QCOMPARE(done.size(), 1);
        QCOMPARE(failed.size(), 0);
        QCOMPARE(text(done[0][0].toByteArray()).simplified(), u"second"_s);
    }

    void failuresAreTold()
    {
        QSignalSpy done(m_renderer.get(), &PdfRenderer::rendered);
        QSignalSpy failed(m_renderer.get(), &PdfRenderer::failed);
        const auto failure = [&failed] {
            return failed.takeFirst()[0].value<PdfRenderer::Failure>();
        };
        const QPageLayout layout = printLayout(QLocale::MetricSystem);

        m_renderer->setPatience(std::chrono::milliseconds(1));
        m_renderer->render(page(u"<h1>a</h1>"_s), layout);
        QVERIFY(failed.wait(patience));
        QCOMPARE(failure(), PdfRenderer::Failure::tookTooLong);

        m_renderer->setPatience(std::chrono::minutes(1));
        m_renderer->render(page(u"<h1>a</h1>"_s), layout);
        m_renderer->render(page(u"<h1>b</h1>"_s), layout);
        QCOMPARE(failed.size(), 1);
        QCOMPARE(failure(), PdfRenderer::Failure::busy);
        QVERIFY(done.wait(patience));

        // A process of our own page, and of no other.
        const qint64 process = m_renderer->page()->processId();
        QVERIFY(process > 0);
        m_renderer->render(page(u"<h1>a</h1>"_s.repeated(20'000)), layout);
        QCOMPARE(::kill(pid_t(process), SIGKILL), 0);
        QVERIFY(failed.wait(patience));
        QCOMPARE(failure(), PdfRenderer::Failure::rendererDied);
        QCOMPARE(done.size(), 1);

        QCOMPARE(text(rendered(page(u"<h1>again</h1>"_s))).simplified(), u"again"_s);
    }

private:
    QByteArray rendered(const QString &html,
                        const QPageLayout &layout = printLayout(QLocale::MetricSystem))
    {
        QSignalSpy done(m_renderer.get(), &PdfRenderer::rendered);
        m_renderer->render(html, layout);
        return done.wait(patience) ? done[0][0].toByteArray() : QByteArray();
    }

    /// What a program says about the file.
    QString output(const QString &program, const QByteArray &pdf,
                   const QStringList &behind = {}) const
    {
        QFile file(m_folder->filePath(u"a.pdf"_s));
        if (!file.open(QIODevice::WriteOnly) || file.write(pdf) != pdf.size())
            return {};
        file.close();
        QProcess process;
        process.start(program, QStringList{file.fileName()} + behind);
        if (!process.waitForFinished())
            qWarning("%s did not run; scripts/test installs it", qPrintable(program));
        return QString::fromUtf8(process.readAllStandardOutput());
    }
    QString text(const QByteArray &pdf) const
    {
        return output(u"pdftotext"_s, pdf, {u"-enc"_s, u"UTF-8"_s, u"-"_s});
    }
    /// Pictures of the size that the tests use.
    int imageCount(const QByteArray &pdf) const
    {
        QFile(m_folder->filePath(u"a.pdf"_s)).remove();
        output(u"pdffonts"_s, pdf);
        QProcess process;
        process.start(u"pdfimages"_s, {u"-list"_s, m_folder->filePath(u"a.pdf"_s)});
        if (!process.waitForFinished())
            return -1;
        static const QRegularExpression row(u" image +40 +30 "_s);
        return int(QString::fromLatin1(process.readAllStandardOutput()).count(row));
    }
    static QList<QSize> pageSizes(const QByteArray &pdf)
    {
        static const QRegularExpression box(
            u"/MediaBox\\s*\\[\\s*0\\s+0\\s+([\\d.]+)\\s+([\\d.]+)\\s*\\]"_s);
        QList<QSize> sizes;
        for (auto it = box.globalMatch(QString::fromLatin1(pdf)); it.hasNext();) {
            const QRegularExpressionMatch match = it.next();
            sizes +=
                QSize(qRound(match.captured(1).toDouble()), qRound(match.captured(2).toDouble()));
        }
        return sizes;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<PdfRenderer> m_renderer;
};

int main(int argc, char **argv)
{
    preparePlatform();
    QGuiApplication app(argc, argv);
    TestPdfRenderer test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_pdf_renderer.moc"
