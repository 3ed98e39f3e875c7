#include "mainwindow/SidebarTab.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestSidebarTab : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rawValues_data()
    {
        QTest::addColumn<SidebarTab>("tab");
        QTest::addColumn<QString>("raw");
        QTest::newRow("notes") << SidebarTab::Notes << u"NOTATKI"_s;
        QTest::newRow("archive") << SidebarTab::Archive << u"ARCHIWUM"_s;
    }
    void rawValues()
    {
        QFETCH(SidebarTab, tab);
        QFETCH(QString, raw);
        QCOMPARE(rawValue(tab), raw);
        QVERIFY(sidebarTabFromRawValue(raw) == tab);
    }

    void onlyAnExactTextNamesATab_data()
    {
        QTest::addColumn<QString>("text");
        for (const QString &text :
             {u""_s, u"notatki"_s, u"Archiwum"_s, u"NOTES"_s, u"ARCHIVE"_s, u"NOTATKI "_s,
              u" ARCHIWUM"_s, u"NOTATK"_s, u"NOTATKIARCHIWUM"_s, u"0"_s})
            QTest::newRow(qPrintable(u"\"%1\""_s.arg(text))) << text;
    }
    void onlyAnExactTextNamesATab()
    {
        QFETCH(QString, text);
        QVERIFY(!sidebarTabFromRawValue(text));
    }
};

QTEST_GUILESS_MAIN(TestSidebarTab)
#include "tst_sidebar_tab.moc"
