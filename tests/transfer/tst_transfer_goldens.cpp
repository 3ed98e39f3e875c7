#include "transfer/HtmlWriter.h"
#include "transfer/MarkdownReader.h"
#include "transfer/MarkdownWriter.h"
#include "transfer/NoteBodyWriter.h"
#include "transfer/NoteDocumentReader.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

/// Whole notes, byte by byte: golden/<name>.note is the body of a note, beside it lies what becomes
/// of it. After a wanted change run this with PLIM_REWRITE_GOLDENS=1 and read the difference.
class TestTransferGoldens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void notes_data()
    {
        QTest::addColumn<QString>("name");
        const QStringList names = golden().entryList({u"*.note"_s}, QDir::Files, QDir::Name);
        QVERIFY(names.size() >= 5);
        for (const QString &name : names)
            QTest::newRow(qPrintable(name)) << QFileInfo(name).completeBaseName();
    }
    void notes()
    {
        QFETCH(QString, name);
        const NoteDocument document = readHtml(QString::fromUtf8(read(name + u".note"_s))).document;
        const auto beside = [](const QString &source) {
            return u"images/"_s + source.section(u'/', -1);
        };
        const QString markdown = markdownText(document, beside);
        compare(name + u".md"_s, markdown.toUtf8());
        const QString page = htmlPage(document, HtmlPage{.title = document.headingText()}, beside);
        compare(name + u".html"_s, page.toUtf8());

        // What was written reads as the note again.
        NoteDocument expected = document;
        for (Block &block : expected.blocks) {
            for (Inline &part : block.inlines) {
                if (part.kind == Inline::Kind::picture)
                    part.source = beside(part.source);
            }
        }
        QCOMPARE(noteBody(readHtml(page).document), noteBody(expected));
        std::erase_if(expected.blocks, [](const Block &block) { return block.isEmptyLine(); });
        QCOMPARE(noteBody(readMarkdown(markdown)), noteBody(expected));
    }

    void sampleNotesStayAsTheyAre()
    {
        QFile file(QStringLiteral(PLIM_SOURCE_DIR "/samples/notes.json"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QJsonArray notes = QJsonDocument::fromJson(file.readAll()).array();
        QVERIFY(!notes.isEmpty());
        for (const QJsonValue note : notes) {
            QString body = note[u"body"_s].toString();
            // The place of the pictures, which is filled in when the samples are used.
            body.replace(u"@IMAGES@"_s, u"file:///images"_s);
            QCOMPARE(noteBody(readHtml(body).document), body);
        }
    }

private:
    static QDir golden() { return QDir(QStringLiteral(PLIM_SOURCE_DIR "/tests/transfer/golden")); }

    static QByteArray read(const QString &name)
    {
        QFile file(golden().filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static void compare(const QString &name, const QByteArray &bytes)
    {
        if (qEnvironmentVariableIntValue("PLIM_REWRITE_GOLDENS") != 0) {
            QFile file(golden().filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        }
        QCOMPARE(QString::fromUtf8(bytes), QString::fromUtf8(read(name)));
        QVERIFY(bytes == read(name));
    }
};

QTEST_APPLESS_MAIN(TestTransferGoldens)
#include "tst_transfer_goldens.moc"
