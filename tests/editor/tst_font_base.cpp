#include "editor/FontBase.h"

#include "shell/Bundle.h"
#include "tests/Patience.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

// The answer depends on where the program lies and where it was started, so a copy of this program
// is put into a tree of its own and asked.
class TestFontBase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void places_data()
    {
        QTest::addColumn<QStringList>("files"); // in the tree; a closing slash makes a directory
        QTest::addColumn<QString>("startedIn");
        QTest::addColumn<QString>("base");
        const auto row = [](const char *name, const QStringList &files, const QString &base) {
            QTest::newRow(name) << files << u"home/"_s << base;
        };
        // The executable is a/b/c/bin/program.
        row("beside the executable", {u"a/b/c/bin/Fonts/"_s, u"home/Fonts/"_s}, u"a/b/c/bin/"_s);
        row("a face beside the executable", {u"a/b/c/bin/Outfit-Regular.ttf"_s, u"home/Fonts/"_s},
            u"a/b/c/bin/"_s);
        row("in the bundle", {u"a/b/c/Resources/Fonts/"_s, u"a/b/c/bin/Fonts/"_s, u"home/Fonts/"_s},
            u"a/b/c/Resources/"_s);
        row("installed", {u"a/b/c/share/plim/Fonts/"_s, u"home/Fonts/"_s}, u"a/b/c/share/plim/"_s);
        row("a face installed", {u"a/b/c/share/plim/Outfit-Regular.ttf"_s, u"home/Fonts/"_s},
            u"a/b/c/share/plim/"_s);
        row("another face does not count", {u"a/b/c/bin/Outfit-Bold.ttf"_s, u"home/Fonts/"_s},
            u"home/"_s);
        row("where it was started", {u"home/Fonts/"_s, u"a/b/c/Fonts/"_s}, u"home/"_s);
        row("one up", {u"a/b/c/Fonts/"_s, u"a/b/Fonts/"_s}, u"a/b/c/"_s);
        row("two up", {u"a/b/Fonts/"_s, u"a/Fonts/"_s}, u"a/b/"_s);
        row("three up", {u"a/Fonts/"_s, u"Fonts/"_s}, u"a/"_s);
        row("four up is too far", {u"Fonts/"_s}, u"a/b/c/bin/"_s);
        row("nowhere", {}, u"a/b/c/bin/"_s);
        row("nowhere, installed", {u"a/b/c/share/plim/"_s}, u"a/b/c/share/plim/"_s);
        // What says where the sources are says "sources".
        const QString sources = u"a/plim-source-directory"_s;
        const QString itsFace = u"sources/Fonts/Outfit-Regular.ttf"_s;
        row("the source tree before the executable's neighbours",
            {sources, itsFace, u"a/b/c/Fonts/"_s}, u"sources/"_s);
        row("installed before the source tree", {sources, itsFace, u"a/b/c/share/plim/Fonts/"_s},
            u"a/b/c/share/plim/"_s);
        row("a source tree that has gone", {sources, u"a/b/c/Fonts/"_s}, u"a/b/c/"_s);
        row("another build's source tree", {u"b/plim-source-directory"_s, itsFace},
            u"a/b/c/bin/"_s);
    }
    void places()
    {
        QFETCH(QStringList, files);
        QFETCH(QString, startedIn);
        QFETCH(QString, base);
        const QTemporaryDir temporary;
        const QDir tree(QFileInfo(temporary.path()).canonicalFilePath());
        for (const QString &file : QStringList{u"a/b/c/bin/"_s, u"home/"_s} + files) {
            QVERIFY(tree.mkpath(file.left(file.lastIndexOf(u'/') + 1)));
            if (!file.endsWith(u'/')) {
                QFile face(tree.filePath(file));
                QVERIFY(face.open(QIODevice::WriteOnly));
                if (file.endsWith("plim-source-directory"_L1))
                    face.write(QFile::encodeName(tree.filePath(u"sources"_s)) + '\n');
            }
        }
        const QString program = tree.filePath(u"a/b/c/bin/program"_s);
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
        QProcess process;
        process.setWorkingDirectory(tree.filePath(startedIn));
        process.start(program, {u"--tell-font-base"_s});
        QVERIFY(process.waitForFinished(longEnough));
        QCOMPARE(process.exitCode(), 0);
        QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()),
                 QUrl::fromLocalFile(tree.filePath(base)).toString(QUrl::FullyEncoded));
    }

    void thePageFindsItsFonts()
    {
        const QUrl base = fontBaseURL();
        QVERIFY(base.isLocalFile());
        QVERIFY(base.path().endsWith(u'/'));
        if (Bundle::sourceDirectory().isEmpty())
            QSKIP("The build knows no source tree");
        for (const QString &style :
             {u"Regular"_s, u"ExtraLight"_s, u"SemiBold"_s, u"Bold"_s, u"Black"_s})
            QVERIFY(QFile::exists(
                base.resolved(QUrl(u"Fonts/Outfit-%1.ttf"_s.arg(style))).toLocalFile()));
    }
};

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(u"--tell-font-base"_s)) {
        std::fputs(qPrintable(fontBaseURL().toString(QUrl::FullyEncoded)), stdout);
        return 0;
    }
    TestFontBase test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_font_base.moc"
