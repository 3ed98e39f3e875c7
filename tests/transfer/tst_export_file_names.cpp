#include "transfer/ExportFileNames.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestExportFileNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreSafeEverywhere_data()
    {
        QTest::addColumn<QString>("heading");
        QTest::addColumn<QString>("name");
        const auto row = [](const char *name, const QString &heading, const QString &safe) {
            QTest::newRow(name) << heading << safe;
        };
        row("Polish", u"Zażółć gęślą jaźń"_s, u"Zażółć gęślą jaźń"_s);
        row("signs of file systems", u"a/b\\c:d*e?f\"g<h>i|j"_s, u"a b c d e f g h i j"_s);
        row("a way up", u"../../etc/passwd"_s, u"etc passwd"_s);
        row("dots", u"...a..."_s, u"a"_s);
        row("a hidden file", u".bashrc"_s, u"bashrc"_s);
        row("a dot within", u"v1.2 of it"_s, u"v1.2 of it"_s);
        row("blanks", u"  a \t\n b  "_s, u"a b"_s);
        row("control characters", u"a\u0000b\u001bc\u007f"_s, u"a b c"_s);
        row("marks of direction", u"a\u202egnp.exe"_s, u"agnp.exe"_s);
        row("decomposed letters", u"z\u0307o\u0301\u0142w"_s, u"żółw"_s);
        row("half a pair", QString(QChar(0xd83d)) + u"a"_s, u"\ufffda"_s);
        row("a device", u"con"_s, u"con_"_s);
        row("a device with a suffix", u"Nul.txt"_s, u"Nul_.txt"_s);
        row("nearly a device", u"console"_s, u"console"_s);
        row("only signs", u"/?*"_s, u""_s);
        row("nothing", u""_s, u""_s);
        row("long", QString(300, u'a'), QString(100, u'a'));
        row("long in bytes", u"😀"_s.repeated(80), u"😀"_s.repeated(45));
        row("cut at a blank", QString(99, u'a') + u" bc"_s, QString(99, u'a'));
    }
    void namesAreSafeEverywhere()
    {
        QFETCH(QString, heading);
        const QString name = safeFileName(heading);
        QTEST(name, "name");
        QCOMPARE(safeFileName(name), name);
        if (name.isEmpty())
            return;
        const QTemporaryDir folder;
        QFile file(folder.filePath(name + u" 12345.markdown"_s));
        QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(file.errorString()));
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 1);
    }

    void noTwoAreAlike()
    {
        ExportFileNames names(u"Bez tytułu"_s);
        names.reserve(u"images"_s);
        QStringList given;
        for (const QString &heading :
             {u"Tea"_s, u"tea"_s, u"TEA"_s, u"tea 2"_s, u"Żółw"_s, u"żółw"_s, u""_s, u"?"_s,
              u"Images"_s, u"z\u0307o\u0301\u0142w"_s})
            given += names.next(heading);
        QCOMPARE(given, (QStringList{u"Tea"_s, u"tea 2"_s, u"TEA 3"_s, u"tea 2 2"_s, u"Żółw"_s,
                                     u"żółw 2"_s, u"Bez tytułu"_s, u"Bez tytułu 2"_s, u"Images 2"_s,
                                     u"żółw 3"_s}));
    }

    void manyOfOneNameTakeLittleTime()
    {
        ExportFileNames names(u"Untitled"_s);
        QString last;
        for (int i = 0; i < 10'000; ++i)
            last = names.next(u"a"_s);
        QCOMPARE(last, u"a 10000"_s);
    }

    void freePathsLeaveWhatIsThere()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"Notes"_s);
        QCOMPARE(freePath(path), path);
        QVERIFY(QDir().mkdir(path));
        QCOMPARE(freePath(path), path + u" 2"_s);
        QVERIFY(QFile::link(folder.filePath(u"absent"_s), path + u" 2"_s));
        QCOMPARE(freePath(path), path + u" 3"_s);
    }
};

QTEST_APPLESS_MAIN(TestExportFileNames)
#include "tst_export_file_names.moc"
