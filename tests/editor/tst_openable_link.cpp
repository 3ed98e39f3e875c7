#include "editor/OpenableLink.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestOpenableLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opens_data()
    {
        QTest::addColumn<QString>("address");
        for (const char *address :
             {"http://example.org", "https://example.org/a?b=c#d", "HTTPS://EXAMPLE.ORG/",
              "https://127.0.0.1:8080/", "https://[::1]/", "https://żółw.pl/ż",
              "https://ala@example.org/", "mailto:ala@example.org",
              "MailTo:ala@example.org?subject=a%20b"})
            QTest::newRow(address) << QString::fromUtf8(address);
    }
    void opens()
    {
        QFETCH(QString, address);
        QVERIFY(isOpenableLink(QUrl(address)));
        QCOMPARE(openableLink(address), QUrl(address));
    }

    void refuses_data()
    {
        QTest::addColumn<QString>("address");
        for (const char *address : {"",
                                    " ",
                                    "example.org",
                                    "/etc/passwd",
                                    "x.html",
                                    "#x",
                                    "http:",
                                    "https://",
                                    "https:///etc/passwd",
                                    "http:example.org",
                                    "mailto:",
                                    "mailto://example.org/x",
                                    "file:///etc/passwd",
                                    "file://example.org/x",
                                    "javascript:alert(1)",
                                    "data:text/html,x",
                                    "vbscript:x",
                                    "about:blank",
                                    "blob:https://example.org/x",
                                    "qrc:/x",
                                    "ftp://example.org/",
                                    "smb://example.org/x",
                                    "ssh://example.org",
                                    "tel:112",
                                    "x-anything:run",
                                    "https://exa mple.org/",
                                    "https://example.org:99999/",
                                    " https://example.org",
                                    "\nhttps://example.org",
                                    "java\nscript:alert(1)"})
            QTest::newRow(address) << QString::fromUtf8(address);
    }
    void refuses()
    {
        QFETCH(QString, address);
        QVERIFY(!isOpenableLink(QUrl(address)));
        QCOMPARE(openableLink(address), QUrl());
    }

    void refusesWhatNobodyCouldTake()
    {
        const QString begin = u"https://example.org/"_s;
        const QString longest = begin + QString(longestOpenableLink - begin.size(), u'a');
        QCOMPARE(openableLink(longest), QUrl(longest));
        QCOMPARE(openableLink(longest + u'a'), QUrl());
    }
};

QTEST_GUILESS_MAIN(TestOpenableLink)
#include "tst_openable_link.moc"
