#include "tests/shell/ShellProbe.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QStringList names{u"Outfit-Regular"_s, u"Outfit-ExtraLight"_s, u"Outfit-SemiBold"_s,
                        u"Outfit-Bold"_s, u"Outfit-Black"_s};
const QStringList faces{u"200 Outfit ExtraLight"_s, u"400 Outfit Regular"_s,
                        u"600 Outfit SemiBold"_s, u"700 Outfit Bold"_s, u"900 Outfit Black"_s};

QStringList each(const QString &pattern)
{
    QStringList lines;
    for (const QString &name : names)
        lines << pattern.arg(name);
    return lines;
}

/// The probe as an application in a directory of its own, with the fonts where a test puts them.
struct Installation : ShellProbe {
    Installation()
    {
        QDir().mkpath(home.path(u"application/bin"_s));
        QFile::copy(QStringLiteral(SHELL_PROBE), executable());
    }

    [[nodiscard]] QString executable() const { return home.path(u"application/bin/probe"_s); }
    void putFonts(const QString &directory, const QStringList &chosen = names) const
    {
        QDir().mkpath(home.path(directory));
        for (const QString &name : chosen)
            QFile::copy(QStringLiteral(PLIM_FONTS "/%1.ttf").arg(name),
                        home.path(directory + u"/%1.ttf"_s.arg(name)));
    }
    [[nodiscard]] bool run(const QStringList &arguments = {u"fonts"_s})
    {
        return ShellProbe::run(executable(), arguments);
    }
    /// The font log's lines of one kind, without their mark.
    [[nodiscard]] QStringList logged(const QString &kind) const
    {
        QStringList found;
        for (const QString &line : logLines()) {
            if (line.startsWith(u"[FONT] "_s + kind))
                found << line.mid(7);
        }
        return found;
    }
    [[nodiscard]] QStringList logLines() const
    {
        return QString::fromUtf8(home.read(u"Documents/plim_font.log"_s))
            .split(u'\n', Qt::SkipEmptyParts);
    }
};
} // namespace

class TestFontRegistration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFacesAreFound_data()
    {
        QTest::addColumn<QString>("fonts");
        QTest::addColumn<bool>("isFirstCandidate");
        QTest::newRow("beside the program") << u"application/bin"_s << true;
        QTest::newRow("in the resources of a bundle") << u"application/Resources"_s << true;
        QTest::newRow("in the shared files of an installation")
            << u"application/share/plim"_s << true;
        QTest::newRow("in Fonts beside the program") << u"application/bin/Fonts"_s << false;
        QTest::newRow("in Fonts of a bundle") << u"application/Resources/Fonts"_s << false;
        QTest::newRow("in Fonts of an installation") << u"application/share/plim/Fonts"_s << false;
        QTest::newRow("in Fonts one up") << u"application/Fonts"_s << false;
        QTest::newRow("in Fonts two up") << u"Fonts"_s << false;
        QTest::newRow("in Fonts of the current directory") << u"elsewhere/Fonts"_s << false;
    }
    void theFacesAreFound()
    {
        QFETCH(QString, fonts);
        QFETCH(bool, isFirstCandidate);
        Installation installation;
        installation.putFonts(fonts);
        installation.directory = installation.home.path(u"elsewhere"_s);
        QDir().mkpath(installation.directory);
        QVERIFY2(installation.run(), qPrintable(installation.log));
        QCOMPARE(installation.lines, faces);
        QCOMPARE(installation.logged(u"Plim: font"_s), each(u"Plim: font registered %1"_s));
        QCOMPARE(installation.logged(u"try"_s),
                 isFirstCandidate ? QStringList()
                                  : QStringList(names.size(), u"try Bundle.main Fonts/"_s));
    }

    void theBuildDirectoryFindsTheSourcesFonts()
    {
        Installation installation;
        QVERIFY2(installation.ShellProbe::run(QStringLiteral(SHELL_PROBE), {u"fonts"_s}),
                 qPrintable(installation.log));
        QCOMPARE(installation.lines, faces);
    }

    void everyStepIsLogged()
    {
        Installation installation;
        installation.putFonts(u"application/bin"_s);
        QVERIFY2(installation.run(), qPrintable(installation.log));
        const QStringList lines = installation.logLines();
        QCOMPARE(lines.constFirst(),
                 u"[FONT] register start Bundle.main=%1 exec=%2"_s.arg(
                     installation.home.path(u"application/bin"_s), installation.executable()));
        QCOMPARE(lines.mid(1, 5), each(u"[FONT] Plim: font registered %1"_s));
        QVERIFY(lines.size() > 6);
        QVERIFY(lines.contains(u"[FONT] Plim: available family Outfit"_s));
        for (const QString &line : lines.mid(6))
            QVERIFY2(line.startsWith(u"[FONT] Plim: available family "_s) &&
                         line.contains(u"Outfit"_s),
                     qPrintable(line));
        for (const QString &line : lines)
            QVERIFY2(installation.log.contains(line.mid(7)), qPrintable(line));
    }

    void aLaterStartAddsToTheLog()
    {
        Installation installation;
        installation.putFonts(u"application/bin"_s);
        QVERIFY(installation.run());
        const QStringList first = installation.logLines();
        QVERIFY(installation.run());
        QCOMPARE(installation.logLines(), first + first);
    }

    void registeringAgainFailsAndChangesNothing()
    {
        Installation installation;
        installation.putFonts(u"application/bin"_s);
        QVERIFY(installation.run({u"fonts"_s, u"fonts"_s}));
        QCOMPARE(installation.lines, faces);
        QCOMPARE(installation.logged(u"Plim: font registered"_s),
                 each(u"Plim: font registered %1"_s));
        QCOMPARE(installation.logged(u"Plim: font register failed"_s),
                 each(u"Plim: font register failed %1: already registered"_s));
        QStringList families = installation.logged(u"Plim: available"_s);
        QCOMPARE(families.mid(families.size() / 2), families.mid(0, families.size() / 2));
    }

    void aMissingFaceLeavesTheOthers()
    {
        Installation installation;
        QStringList others = names;
        others.removeOne(u"Outfit-SemiBold"_s);
        installation.putFonts(u"application/bin"_s, others);
        QVERIFY2(installation.run(), qPrintable(installation.log));
        QCOMPARE(installation.logged(u"Plim: font not"_s),
                 QStringList{u"Plim: font not found Outfit-SemiBold"_s});
        QCOMPARE(installation.logged(u"Plim: font registered"_s).size(), 4);
        QVERIFY(!installation.lines.contains(u"600 Outfit SemiBold"_s));
        QVERIFY(installation.lines.contains(u"700 Outfit Bold"_s));
    }

    // A build that was copied elsewhere does not know the sources any more.
    void withoutAnyFaceTheSystemsFontStandsIn()
    {
        Installation installation;
        QVERIFY2(installation.run(), qPrintable(installation.log));
        QCOMPARE(installation.logged(u"Plim: font"_s), each(u"Plim: font not found %1"_s));
        QCOMPARE(installation.lines.size(), faces.size());
    }

    void aDamagedFaceLeavesTheOthers()
    {
        Installation installation;
        installation.putFonts(u"application/bin"_s);
        QFile damaged(installation.home.path(u"application/bin/Outfit-Bold.ttf"_s));
        QVERIFY(damaged.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
                damaged.write("no font") > 0);
        damaged.close();
        QVERIFY2(installation.run(), qPrintable(installation.log));
        QCOMPARE(installation.logged(u"Plim: font register failed"_s).size(), 1);
        QVERIFY(installation.logged(u"Plim: font register failed"_s)
                    .constFirst()
                    .startsWith(u"Plim: font register failed Outfit-Bold"_s));
        QCOMPARE(installation.logged(u"Plim: font registered"_s).size(), 4);
    }

    void aLogThatCannotBeWrittenStopsNothing_data()
    {
        QTest::addColumn<QString>("obstacle");
        QTest::addColumn<bool>("isDirectory");
        QTest::newRow("no documents directory") << QString() << false;
        QTest::newRow("a file in its place") << u"Documents"_s << false;
        QTest::newRow("a directory in the log's place") << u"Documents/plim_font.log"_s << true;
    }
    void aLogThatCannotBeWrittenStopsNothing()
    {
        QFETCH(QString, obstacle);
        QFETCH(bool, isDirectory);
        Installation installation;
        installation.putFonts(u"application/bin"_s);
        QDir(installation.home.documents()).removeRecursively();
        if (isDirectory) {
            QVERIFY(QDir().mkpath(installation.home.path(obstacle)));
        } else if (!obstacle.isEmpty()) {
            QFile file(installation.home.path(obstacle));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QVERIFY2(installation.run(), qPrintable(installation.log));
        QCOMPARE(installation.lines, faces);
        QVERIFY(installation.log.contains(u"Plim: font registered Outfit-Black"_s));
        if (obstacle.isEmpty())
            QVERIFY(!QFile::exists(installation.home.documents()));
    }
};

QTEST_GUILESS_MAIN(TestFontRegistration)
#include "tst_font_registration.moc"
