#include "tests/RandomSeed.h"
#include "tests/transfer/RandomDocument.h"
#include "transfer/MarkdownReader.h"
#include "transfer/MarkdownWriter.h"
#include "transfer/NoteBodyWriter.h"
#include "transfer/NoteDocumentReader.h"

#include <QTest>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace
{
QString asItIs(const QString &source)
{
    return source;
}
} // namespace

/// What a note says is the same after it went through Markdown, and through its own HTML.
///
/// PLIM_TEST_SEED=n PLIM_TEST_COUNT=1 repeats one document.
class TestMarkdownRoundTrip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void randomDocumentsReadTheSame()
    {
        const quint32 first = randomSeed();
        const quint32 count = documentCount(3000);
        for (quint32 seed = first; seed != first + count; ++seed) {
            const NoteDocument document = RandomDocument(seed).make();
            const QString body = noteBody(document);
            const NoteDocument stored = readHtml(body).document;
            const QString markdown = markdownText(document, asItIs);
            const NoteDocument read = readMarkdown(markdown);
            const bool isSame = stored == document && read == document;
            if (!isSame) {
                std::fprintf(
                    stderr,
                    "PLIM_TEST_SEED=%u PLIM_TEST_COUNT=1\n%s\n\nstored: %s\n\n%s\n\nread: %s\n",
                    seed, qPrintable(body), qPrintable(noteBody(stored)), qPrintable(markdown),
                    qPrintable(noteBody(read)));
            }
            QVERIFY2(stored == document, qPrintable(u"PLIM_TEST_SEED=%1"_s.arg(seed)));
            QVERIFY2(read == document, qPrintable(u"PLIM_TEST_SEED=%1"_s.arg(seed)));
        }
    }
};

QTEST_APPLESS_MAIN(TestMarkdownRoundTrip)
#include "tst_markdown_round_trip.moc"
