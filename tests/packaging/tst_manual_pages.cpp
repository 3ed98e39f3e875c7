#include "tests/packaging/UnpackedPackage.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

class TestManualPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_package.isValid()); }

    void theyRenderWithoutAWarning_data() { pages(); }
    void theyRenderWithoutAWarning()
    {
        QFETCH(QString, page);
        const Said said =
            run(u"man"_s, {u"--warnings=w"_s, u"--encoding=UTF-8"_s, u"--local-file"_s,
                           u"--pager=cat"_s, m_package.path(page)});
        QCOMPARE(said.exitCode, 0);
        QVERIFY2(!said.output.contains(u"warning"_s) && !said.output.contains(u"error"_s),
                 qPrintable(said.output));
        QVERIFY(said.output.contains(u"PLIM(1)"_s));
        QVERIFY(said.output.contains(u"Plim "_s + m_package.field(u"Version"_s)));
    }

    void theyTellEveryOption_data() { pages(); }
    void theyTellEveryOption()
    {
        QFETCH(QString, page);
        const Said help = run(m_package.path(u"usr/bin/plim"_s), {u"--help"_s});
        QCOMPARE(help.exitCode, 0);
        QStringList options{u"--new-note"_s, u"--toggle-window"_s, u"--quit"_s, u"--hidden"_s};
        static const QRegularExpression option(u"(?<![\\w-])--?[a-z][a-z-]*"_s);
        for (const auto &found : option.globalMatch(help.output))
            options << found.captured();
        QVERIFY(options.contains(u"--help"_s) && options.contains(u"--version"_s));

        QString text = run(u"gzip"_s, {u"-dc"_s, m_package.path(page)}).output;
        text.replace(u"\\-"_s, u"-"_s);
        const QString list = text.mid(text.indexOf(QRegularExpression(u"\\.SH OP[A-Z]+\n"_s)));
        for (const QString &name : std::as_const(options)) {
            const QRegularExpression whole(u"(?<![\\w-])"_s + name + u"(?![\\w-])"_s);
            QVERIFY2(list.contains(whole), qPrintable(name));
        }
    }

    // Man shows the page of the user's language, and the English one where there is none.
    void bothSayTheSame()
    {
        QStringList heads;
        for (const QString &page : {english, polish}) {
            const QString text = run(u"gzip"_s, {u"-dc"_s, m_package.path(page)}).output;
            QString shape;
            for (const QString &line : text.split(u'\n')) {
                if (line.startsWith(u".SH"_s) || line.startsWith(u".TP"_s))
                    shape += line.left(3);
            }
            heads << shape;
        }
        QCOMPARE(heads.at(0), heads.at(1));
    }

private:
    static void pages()
    {
        QTest::addColumn<QString>("page");
        QTest::newRow("English") << english;
        QTest::newRow("Polish") << polish;
    }

    inline static const QString english = u"usr/share/man/man1/plim.1.gz"_s;
    inline static const QString polish = u"usr/share/man/pl/man1/plim.1.gz"_s;
    UnpackedPackage m_package;
};

QTEST_GUILESS_MAIN(TestManualPages)
#include "tst_manual_pages.moc"
