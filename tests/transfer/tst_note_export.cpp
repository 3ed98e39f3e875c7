#include "core/app/Platform.h"
#include "tests/Patience.h"
#include "transfer/NoteExport.h"
#include "transfer/PrintLayout.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int patience = longEnough;

Note noteWith(const QString &body)
{
    Note note = Note::fresh({801'777'602});
    note.body = body;
    return note;
}
} // namespace

class TestNoteExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir().mkpath(path(u"images"_s)) && QDir().mkpath(path(u"out"_s)));
        write(u"images/A 1.png"_s, "picture");
        m_export = std::make_unique<NoteExport>(
            ExportSettings{.imagesDirectory = path(u"images"_s),
                           .fontsDirectory = QStringLiteral(PLIM_SOURCE_DIR "/Fonts"),
                           .untitled = u"Bez tytułu"_s,
                           .pageLayout = printLayout(QLocale::MetricSystem)});
    }

    void oneNoteIsOneFile_data()
    {
        QTest::addColumn<ExportFormat>("format");
        QTest::addColumn<QByteArray>("start");
        QTest::newRow("Markdown") << ExportFormat::markdown << QByteArray("# Łąka\n\na\n");
        QTest::newRow("HTML") << ExportFormat::html << QByteArray("<!DOCTYPE html>");
        QTest::newRow("PDF") << ExportFormat::pdf << QByteArray("%PDF");
    }
    void oneNoteIsOneFile()
    {
        QFETCH(ExportFormat, format);
        QFETCH(QByteArray, start);
        const QString file = u"out/Łąka"_s + fileSuffix(format);
        write(file, "what was there");
        QSignalSpy progressed(m_export.get(), &NoteExport::progressed);
        m_export->exportNote(noteWith(u"<h1>Łąka</h1><p>a</p>"_s), format, path(file));
        QVERIFY(m_export->isRunning());
        QCOMPARE(finished(), path(file));
        QVERIFY(!m_export->isRunning());
        QCOMPARE(progressed, (QList<QVariantList>{{1, 1}}));
        QVERIFY2(read(file).startsWith(start), read(file).left(80));
        QCOMPARE(names(u"out"_s), QStringList{u"Łąka"_s + fileSuffix(format)});
        QCOMPARE(QFileInfo(path(file)).lastModified().toSecsSinceEpoch(),
                 Timestamp{801'777'602}.toDateTime().toSecsSinceEpoch());
    }

    void picturesLieBesideTheNote()
    {
        const Note note =
            noteWith(u"<h1>a</h1><p><img src=\"%1\" alt=\"b\"><img src=\"%1\"></p>"_s.arg(
                address(u"images/A 1.png"_s)));
        m_export->exportNote(note, ExportFormat::markdown, path(u"out/My note.md"_s));
        finished();
        QCOMPARE(read(u"out/My note.md"_s),
                 "# a\n\n![b](My%20note_files/A%201.png)![](My%20note_files/A%201.png)\n");
        QCOMPARE(read(u"out/My note_files/A 1.png"_s), "picture");

        // Another time the folder is taken, and stays.
        m_export->exportNote(note, ExportFormat::html, path(u"out/My note.html"_s));
        finished();
        QVERIFY(read(u"out/My note.html"_s).contains("<img src=\"My%20note_files%202/A%201.png\""));
        QCOMPARE(names(u"out"_s), (QStringList{u"My note.html"_s, u"My note.md"_s,
                                               u"My note_files"_s, u"My note_files 2"_s}));
    }

    void otherFilesAreNotGivenAway()
    {
        write(u"secret.png"_s, "secret");
        QVERIFY(QFile::link(path(u"secret.png"_s), path(u"images/link.png"_s)));
        for (const QString &source : {address(u"secret.png"_s), address(u"images/../secret.png"_s),
                                      address(u"images/link.png"_s), address(u"images"_s),
                                      u"file:///etc/passwd"_s, u"secret.png"_s}) {
            m_export->exportNote(
                noteWith(u"<h1>a</h1><p><img src=\"%1\" alt=\"b\"></p>"_s.arg(source)),
                ExportFormat::markdown, path(u"out/a.md"_s));
            finished();
            QCOMPARE(read(u"out/a.md"_s), "# a\n\nb\n");
            QCOMPARE(names(u"out"_s), QStringList{u"a.md"_s});
        }
    }

    void inlinePicturesBecomeFiles()
    {
        const QString data = u"R0lGODlhAQABAAAAACw="_s;
        m_export->exportNote(
            noteWith(u"<h1>a</h1><img src=\"data:image/gif;base64,%1\">"_s.arg(data)),
            ExportFormat::markdown, path(u"out/a.md"_s));
        finished();
        QCOMPARE(read(u"out/a.md"_s), "# a\n\n![](a_files/picture-1.gif)\n");
        QCOMPARE(read(u"out/a_files/picture-1.gif"_s), QByteArray::fromBase64(data.toLatin1()));
    }

    void allNotesAreOneFolder()
    {
        write(u"out/Notes/mine.txt"_s, "mine");
        const QString picture = u"<img src=\"%1\">"_s.arg(address(u"images/A 1.png"_s));
        QSignalSpy progressed(m_export.get(), &NoteExport::progressed);
        m_export->exportNotes(
            {noteWith(u"<h1>Tea</h1>"_s + picture), noteWith(u"<h1>tea</h1>"_s + picture),
             noteWith(u"<h1><br></h1><p>a</p>"_s), noteWith(u"<h1>images</h1>"_s)},
            ExportFormat::markdown, path(u"out/Notes"_s));
        QCOMPARE(finished(), path(u"out/Notes 2"_s));
        QCOMPARE(names(u"out"_s), (QStringList{u"Notes"_s, u"Notes 2"_s}));
        QCOMPARE(names(u"out/Notes"_s), QStringList{u"mine.txt"_s});
        QCOMPARE(names(u"out/Notes 2"_s), (QStringList{u"Bez tytułu.md"_s, u"Tea.md"_s, u"images"_s,
                                                       u"images 2.md"_s, u"tea 2.md"_s}));
        QCOMPARE(names(u"out/Notes 2/images"_s), QStringList{u"A 1.png"_s});
        QCOMPARE(read(u"out/Notes 2/tea 2.md"_s), "# tea\n\n![](images/A%201.png)\n");
        QCOMPARE(progressed, (QList<QVariantList>{{1, 4}, {2, 4}, {3, 4}, {4, 4}}));
    }

    void nothingIsAFolder()
    {
        m_export->exportNotes({}, ExportFormat::markdown, path(u"out/Notes"_s));
        QCOMPARE(finished(), path(u"out/Notes"_s));
        QCOMPARE(names(u"out/Notes"_s), QStringList());
    }

    void theEventLoopGoesOn()
    {
        // A turn for each note: the job never does two of them at once.
        std::vector<Note> notes(20, noteWith(u"<h1>a</h1>"_s));
        int turns = 0;
        connect(m_export.get(), &NoteExport::progressed, this, [&turns] {
            QMetaObject::invokeMethod(
                QCoreApplication::instance(), [&turns] { ++turns; }, Qt::QueuedConnection);
        });
        int turnsAtTheEnd = -1;
        connect(m_export.get(), &NoteExport::finished, this, [&] { turnsAtTheEnd = turns; });
        m_export->exportNotes(notes, ExportFormat::html, path(u"out/Notes"_s));
        finished();
        QVERIFY2(turnsAtTheEnd >= 19, qPrintable(QString::number(turnsAtTheEnd)));
    }

    void cancelLeavesNothing_data()
    {
        QTest::addColumn<ExportFormat>("format");
        QTest::addColumn<int>("after");
        QTest::newRow("at once") << ExportFormat::markdown << 0;
        QTest::newRow("amid the notes") << ExportFormat::html << 2;
        QTest::newRow("when all are written") << ExportFormat::markdown << 4;
        QTest::newRow("while one is printed") << ExportFormat::pdf << 1;
    }
    void cancelLeavesNothing()
    {
        QFETCH(ExportFormat, format);
        QFETCH(int, after);
        const std::vector<Note> notes(
            4, noteWith(u"<h1>a</h1><img src=\"%1\">"_s.arg(address(u"images/A 1.png"_s))));
        QSignalSpy done(m_export.get(), &NoteExport::finished);
        QSignalSpy failed(m_export.get(), &NoteExport::failed);
        QSignalSpy progressed(m_export.get(), &NoteExport::progressed);
        bool isCancelled = false;
        const auto cancel = [&] {
            QVERIFY(!names(u"out"_s).isEmpty());
            m_export->cancel();
            isCancelled = true;
        };
        connect(m_export.get(), &NoteExport::progressed, this, [&](int number) {
            if (number == after && format != ExportFormat::pdf)
                cancel();
            else if (number == after) // the next one is on its way then
                QMetaObject::invokeMethod(
                    m_export.get(),
                    [&] {
                        QMetaObject::invokeMethod(m_export.get(), cancel, Qt::QueuedConnection);
                    },
                    Qt::QueuedConnection);
        });
        m_export->exportNotes(notes, format, path(u"out/Notes"_s));
        if (after == 0)
            cancel();
        QTRY_VERIFY_WITH_TIMEOUT(isCancelled, patience);
        QVERIFY(!m_export->isRunning());
        QCOMPARE(names(u"out"_s), QStringList());

        // It can be used again, and what was cancelled is not heard of.
        disconnect(m_export.get(), &NoteExport::progressed, this, nullptr);
        m_export->exportNote(notes[0], format, path(u"out/b"_s));
        QVERIFY(done.count() > 0 || done.wait(patience));
        QCOMPARE(done.size(), 1);
        QCOMPARE(done[0][0].toString(), path(u"out/b"_s));
        QCOMPARE(failed.size(), 0);
        QCOMPARE(progressed.size(), after + 1);
    }

    void goingAwayLeavesNothing()
    {
        const std::vector<Note> notes(4, noteWith(u"<h1>a</h1>"_s));
        m_export->exportNotes(notes, ExportFormat::markdown, path(u"out/Notes"_s));
        QSignalSpy progressed(m_export.get(), &NoteExport::progressed);
        QVERIFY(progressed.wait(patience));
        m_export.reset();
        QCOMPARE(names(u"out"_s), QStringList());
    }

    void failuresAreToldOnceAndLeaveNothing_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<bool>("isSingle");
        QTest::newRow("a folder in a file") << u"images/A 1.png/Notes"_s << false;
        QTest::newRow("a file in a file") << u"images/A 1.png/a.md"_s << true;
        QTest::newRow("a folder that is not there") << u"absent/a.md"_s << true;
        QTest::newRow("a file in place of a folder") << u"out"_s << true;
    }
    void failuresAreToldOnceAndLeaveNothing()
    {
        QFETCH(QString, target);
        QFETCH(bool, isSingle);
        write(u"out/mine.txt"_s, "mine");
        QSignalSpy done(m_export.get(), &NoteExport::finished);
        QSignalSpy failed(m_export.get(), &NoteExport::failed);
        const Note note =
            noteWith(u"<h1>a</h1><img src=\"%1\">"_s.arg(address(u"images/A 1.png"_s)));
        if (isSingle)
            m_export->exportNote(note, ExportFormat::markdown, path(target));
        else
            m_export->exportNotes({note, note}, ExportFormat::markdown, path(target));
        QVERIFY(failed.wait(patience));
        const auto failure = failed[0][0].value<ExportFailure>();
        QCOMPARE(failure.reason, ExportFailure::Reason::cannotWrite);
        QCOMPARE(failure.path, path(target));
        QVERIFY(!failure.detail.isEmpty());
        QVERIFY(!m_export->isRunning());
        QCOMPARE(names(u"."_s), (QStringList{u"images"_s, u"out"_s}));
        QCOMPARE(names(u"out"_s), QStringList{u"mine.txt"_s});
        QCOMPARE(names(u"images"_s), QStringList{u"A 1.png"_s});

        m_export->exportNote(note, ExportFormat::markdown, path(u"out/a.md"_s));
        QVERIFY(done.wait(patience));
        QCOMPARE(failed.size(), 1);
    }

    void aPictureThatIsGoneLeavesItsWords()
    {
        QVERIFY(QFile::remove(path(u"images/A 1.png"_s)));
        m_export->exportNote(
            noteWith(u"<h1>a</h1><img src=\"%1\" alt=\"b\">"_s.arg(address(u"images/A 1.png"_s))),
            ExportFormat::markdown, path(u"out/a.md"_s));
        finished();
        QCOMPARE(read(u"out/a.md"_s), "# a\n\nb\n");
    }

    void aFullDiskIsAFailure()
    {
        // No disk is full at a test's wish, but a file may have a limit to its size.
        rlimit before{};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
        const rlimit tight{1'000, before.rlim_max};
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        QSignalSpy failed(m_export.get(), &NoteExport::failed);
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &tight), 0);
        m_export->exportNotes({noteWith(u"<h1>a</h1>"_s),
                               noteWith(u"<h1>b</h1><p>"_s + QString(2'000, u'c') + u"</p>"_s)},
                              ExportFormat::markdown, path(u"out/Notes"_s));
        const bool isTold = failed.wait(patience);
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
        QVERIFY(isTold);
        QVERIFY(!failed[0][0].value<ExportFailure>().detail.isEmpty());
        QCOMPARE(names(u"out"_s), QStringList());
    }

private:
    [[nodiscard]] QString path(const QString &name) const
    {
        return QDir(m_folder->path()).canonicalPath() + u'/' + name;
    }
    [[nodiscard]] QString address(const QString &name) const
    {
        return QUrl::fromLocalFile(path(name)).toString(QUrl::FullyEncoded);
    }
    void write(const QString &name, const QByteArray &bytes) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("the test's own file could not be written");
    }
    [[nodiscard]] QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    [[nodiscard]] QStringList names(const QString &folder) const
    {
        return QDir(path(folder))
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name);
    }
    QString finished()
    {
        QSignalSpy done(m_export.get(), &NoteExport::finished);
        return done.wait(patience) ? done[0][0].toString() : QString();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<NoteExport> m_export;
};

int main(int argc, char **argv)
{
    preparePlatform();
    QGuiApplication app(argc, argv);
    TestNoteExport test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_note_export.moc"
