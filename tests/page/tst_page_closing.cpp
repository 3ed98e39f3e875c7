#include "tests/page/PageFixture.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

using namespace Qt::StringLiterals;

/// An editor whose window changes or goes while it is written in.
class TestPageClosing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void theLastLetterArrives_data();
    void theLastLetterArrives();
    void aPageThatIsLaidOutAgainGoesOn();
    void pagesThatComeAndGoRunTheirScriptsOnce();

private:
    PageFixture m_page;
    const QUuid m_note = QUuid::createUuid();
};

void TestPageClosing::initTestCase()
{
    QVERIFY(m_page.open(m_note, u"<h1>T</h1>"_s));
}

void TestPageClosing::init()
{
    m_page.forgetReports();
}

void TestPageClosing::theLastLetterArrives_data()
{
    QTest::addColumn<bool>("isClosed");
    // Nothing waits for the page, which gets the key and the question at once: many tries.
    for (int i = 0; i < 10; ++i) {
        QTest::addRow("window open %d", i) << false;
        QTest::addRow("window closed %d", i) << true;
    }
}

void TestPageClosing::theLastLetterArrives()
{
    QFETCH(bool, isClosed);
    // The words are new in every row: the editor is silent about those that it knows.
    const QString words = QString::fromLatin1(QTest::currentDataTag());
    m_page.load(u"<p>"_s + words + u"|</p>"_s);
    m_page.forgetReports();
    bool isAnswered = false;
    QKeyEvent down(QEvent::KeyPress, Qt::Key_K, {}, 0, 0, 0, u"k"_s);
    QCoreApplication::sendEvent(&m_page.view(), &down);
    m_page.coordinator().handOver(
        std::shared_ptr<void>(nullptr, [&isAnswered](void *) { isAnswered = true; }));
    if (isClosed)
        m_page.view().hide();
    QVERIFY(!isAnswered);
    QTRY_VERIFY(isAnswered);
    QVERIFY(!m_page.changes.empty());
    QCOMPARE(m_page.changes.back().noteID, m_note);
    QCOMPARE(m_page.changes.back().html, u"<h1>T</h1><p>"_s + words + u"k</p>"_s);
    QKeyEvent up(QEvent::KeyRelease, Qt::Key_K, {}, 0, 0, 0, u"k"_s);
    QCoreApplication::sendEvent(&m_page.view(), &up);
    if (isClosed) {
        m_page.view().show();
        QVERIFY(m_page.activate());
    }
}

void TestPageClosing::aPageThatIsLaidOutAgainGoesOn()
{
    m_page.load(u"<p>m[il]k</p>"_s);
    const QRectF before(m_page.webEngineView()->position(), m_page.webEngineView()->size());
    int timesWider = 0;
    connect(m_page.webEngineView(), &QQuickItem::widthChanged, this,
            [&] { timesWider += m_page.webEngineView()->width() == before.width() + 2; });
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_page.coordinator().layOutAgain();
    QCOMPARE(timesWider, 1);
    QCOMPARE(QRectF(m_page.webEngineView()->position(), m_page.webEngineView()->size()), before);
    QVERIFY(m_page.webEngineView()->hasActiveFocus());
    QCOMPARE(m_page.body(), u"<p>m[il]k</p>"_s);
    QTRY_COMPARE(m_page.js(u"innerWidth"_s).toDouble(), before.width());
    QVERIFY(m_page.js(u"document.hasFocus()"_s).toBool());
    QCOMPARE(m_page.body(), u"<p>m[il]k</p>"_s);
    m_page.type(u"x"_s);
    QTRY_COMPARE(m_page.body(), u"<p>mx|k</p>"_s);
}

// All of them live in the engine process of the page that stays.
void TestPageClosing::pagesThatComeAndGoRunTheirScriptsOnce()
{
    // A script's error is more than a warning, which is all that QTest can be made to fail for.
    static QStringList errors;
    static QtMessageHandler shown = nullptr;
    shown = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &context, const QString &text) {
        if (type == QtCriticalMsg)
            errors << text;
        shown(type, context, text);
    });
    const auto restored = qScopeGuard([] { qInstallMessageHandler(shown); });
    for (int turn = 0; turn < 15; ++turn) {
        PageFixture first;
        PageFixture second;
        QVERIFY(first.open(QUuid::createUuid(), u"<h1>A</h1><p>one</p>"_s));
        QVERIFY(second.open(QUuid::createUuid(), u"<h1>B</h1><p>two</p>"_s));
    }
    QVERIFY(m_page.activate());
    QCOMPARE(errors, QStringList());
}

PLIM_PAGE_TEST_MAIN(TestPageClosing)
#include "tst_page_closing.moc"
