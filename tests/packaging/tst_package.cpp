#include "tests/packaging/UnpackedPackage.h"

#include <QRegularExpression>
#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString entryFile = u"usr/share/applications/org.plim.Plim.desktop"_s;

/// The keys of one group of the desktop entry, as they stand there.
QMap<QString, QString> group(const QByteArray &entry, const QString &name)
{
    QMap<QString, QString> keys;
    bool isInside = false;
    for (const QString &line : QString::fromUtf8(entry).split(u'\n')) {
        if (line.startsWith(u'['))
            isInside = line == u'[' + name + u']';
        else if (isInside && line.contains(u'='))
            keys.insert(line.section(u'=', 0, 0), line.section(u'=', 1));
    }
    return keys;
}
} // namespace

class TestPackage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_package.isValid()); }

    // With everything that it has to say; what is meant otherwise stands in packaging/debian.
    void lintianHasNothingToSay()
    {
        const Said said = run(u"lintian"_s, {u"--allow-root"_s, u"--display-info"_s,
                                             u"--pedantic"_s, m_package.file()});
        QVERIFY2(said.isSilentSuccess(), qPrintable(said.output));
    }

    void theDesktopEntryIsValid()
    {
        const Said said = run(u"desktop-file-validate"_s, {m_package.path(entryFile)});
        QVERIFY2(said.isSilentSuccess(), qPrintable(said.output));
    }

    void theDesktopEntryOffersItsActionsInBothLanguages()
    {
        const QByteArray entry = m_package.read(entryFile);
        const auto main = group(entry, u"Desktop Entry"_s);
        QCOMPARE(main.value(u"Exec"_s), u"plim"_s);
        QVERIFY(QFile::exists(m_package.path(u"usr/bin/plim"_s)));
        for (const QString &translated : {u"GenericName"_s, u"Comment"_s, u"Keywords"_s})
            QVERIFY2(!main.value(translated + u"[pl]"_s).isEmpty(), qPrintable(translated));

        const QStringList actions = main.value(u"Actions"_s).split(u';', Qt::SkipEmptyParts);
        QVERIFY(actions.contains(u"new-note"_s));
        QVERIFY(actions.contains(u"toggle-window"_s));
        for (const QString &action : actions) {
            const auto keys = group(entry, u"Desktop Action "_s + action);
            QCOMPARE(keys.value(u"Exec"_s), u"plim --"_s + action);
            QVERIFY(!keys.value(u"Name"_s).isEmpty());
            QVERIFY(!keys.value(u"Name[pl]"_s).isEmpty());
            QVERIFY(keys.value(u"Name[pl]"_s) != keys.value(u"Name"_s));
        }
        QCOMPARE(group(entry, u"Desktop Action new-note"_s).value(u"Name[pl]"_s),
                 u"Nowa notatka"_s);
        QCOMPARE(group(entry, u"Desktop Action toggle-window"_s).value(u"Name[pl]"_s),
                 u"Pokaż / ukryj okno"_s);
    }

    void theDescriptionForSoftwareCentresIsValid()
    {
        const Said said = run(u"appstreamcli"_s,
                              {u"validate-tree"_s, u"--no-net"_s, u"--strict"_s, m_package.root()});
        QVERIFY2(said.exitCode == 0, qPrintable(said.output));
        const QByteArray text = m_package.read(u"usr/share/metainfo/org.plim.Plim.metainfo.xml"_s);
        QCOMPARE(text.count("<p>"), text.count("<p xml:lang=\"pl\">"));
        QCOMPARE(text.count("<li>"), text.count("<li xml:lang=\"pl\">"));
    }

    void everythingIsOfOneVersion()
    {
        const QString version = QStringLiteral(PLIM_VERSION);
        QCOMPARE(m_package.field(u"Version"_s), version);
        QCOMPARE(run(m_package.path(u"usr/bin/plim"_s), {u"--version"_s}).output,
                 u"plim "_s + version + u'\n');
        const Said changes =
            run(u"gzip"_s, {u"-dc"_s, m_package.path(u"usr/share/doc/plim/changelog.gz"_s)});
        QVERIFY2(changes.output.startsWith(u"plim (%1) "_s.arg(version)),
                 qPrintable(changes.output));
        const QByteArray text = m_package.read(u"usr/share/metainfo/org.plim.Plim.metainfo.xml"_s);
        const qsizetype newest = text.indexOf("<release version=\"");
        QVERIFY(text.mid(newest).startsWith("<release version=\"" + version.toUtf8() + '"'));
    }

    void itNeedsNothingThatIsForDevelopers()
    {
        const QString needs = m_package.field(u"Depends"_s);
        QVERIFY(
            needs.contains(u"libqt6core6 (>= "_s)); // what the executable is linked with is there
        QVERIFY2(!needs.contains(QRegularExpression(u"-(dev|tools|doc|dbg)\\b"_s)),
                 qPrintable(needs));
    }

    void theLicencesOfAllThatIsInItAreTold()
    {
        const QByteArray text = m_package.read(u"usr/share/doc/plim/copyright"_s);
        QVERIFY(text.startsWith(
            "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/"));
        for (const QByteArray &whose : {"The Plim developers"_ba, "The Outfit Project Authors"_ba,
                                        "The Bootstrap Authors"_ba})
            QVERIFY2(text.contains(whose), whose.constData());
        QFile licence(QStringLiteral(PLIM_SOURCES "/Fonts/OFL.txt"));
        QVERIFY(licence.open(QIODevice::ReadOnly));
        QCOMPARE(m_package.read(u"usr/share/plim/Fonts/OFL.txt"_s), licence.readAll());
    }

    // Neither in its texts nor as the toolkit's strings.
    void theExecutableDoesNotTellWhereItWasBuilt()
    {
        const QByteArray program = m_package.read(u"usr/bin/plim"_s);
        QVERIFY(program.size() > 100'000);
        const QString place = QStringLiteral(PLIM_SOURCES);
        QVERIFY(!program.contains(place.toUtf8()));
        QVERIFY(!program.contains(QByteArray(reinterpret_cast<const char *>(place.utf16()),
                                             place.size() * qsizetype(sizeof(char16_t)))));
    }

private:
    UnpackedPackage m_package;
};

QTEST_GUILESS_MAIN(TestPackage)
#include "tst_package.moc"
