#include "tests/page/NetworkWatch.h"
#include "tests/page/PageFixture.h"

#include "core/NoteRepair.h"
#include "editor/ScriptLiteral.h"
#include "tests/views/WaitFor.h"

#include <QClipboard>
#include <QDropEvent>
#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMimeData>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QUdpSocket>


using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
struct Case {
    QString family;
    QString html;
};

/// The line with what stands for characters that a line cannot hold.
QString unescaped(const QString &line)
{
    QString text;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const char16_t next = line[i] == u'\\' && i + 1 < line.size() ? line[i + 1].unicode() : u'\0';
        if (next == u'\0') {
            text += line[i];
            continue;
        }
        ++i;
        if (next == u'x') {
            text += QChar(line.mid(i + 1, 2).toUShort(nullptr, 16));
            i += 2;
        } else {
            const qsizetype known = QStringView(u"ntrf0\\").indexOf(QChar(next));
            text += known < 0 ? QChar(next) : QChar(u"\n\t\r\f\0\\"[known]);
        }
    }
    return text;
}

/// All that are in injections.txt; the first has the number 0.
std::vector<Case> readCases(quint16 port)
{
    QFile file(u":/injections.txt"_s);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no injections");
    std::vector<Case> cases;
    QString family;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        if (line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'[')) {
            family = line.mid(1, line.size() - 2);
            continue;
        }
        QString html = unescaped(line);
        html.replace(u"ATTACK"_s, u"top.attacked.add(NUMBER)"_s);
        html.replace(u"SERVER"_s, u"http://127.0.0.1:PORT/NUMBER"_s);
        html.replace(u"NAME"_s, u"http://case-NUMBER.invalid/"_s);
        html.replace(u"PORT"_s, QString::number(port));
        html.replace(u"NUMBER"_s, QString::number(cases.size()));
        cases.push_back({family, html});
    }
    return cases;
}

/// Whoever asks it for anything has got out of the page.
class Listener
{
public:
    Listener()
    {
        m_server.listen(QHostAddress::LocalHost);
        m_socket.bind(QHostAddress::LocalHost, m_server.serverPort());
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
            while (QTcpSocket *client = m_server.nextPendingConnection()) {
                heard.append("a connection");
                QObject::connect(client, &QTcpSocket::readyRead, client, [this, client] {
                    heard.append(client->readLine().trimmed());
                    client->readAll();
                    client->write("HTTP/1.1 204 No Content\r\nConnection: close\r\n\r\n");
                    client->disconnectFromHost();
                });
            }
        });
        QObject::connect(&m_socket, &QUdpSocket::readyRead, &m_socket, [this] {
            while (m_socket.hasPendingDatagrams()) {
                m_socket.readDatagram(nullptr, 0);
                heard.append("a datagram");
            }
        });
    }

    [[nodiscard]] bool isListening() const
    {
        return m_server.isListening() && m_socket.state() == QUdpSocket::BoundState;
    }
    [[nodiscard]] quint16 port() const { return m_server.serverPort(); }

    QList<QByteArray> heard;

private:
    QTcpServer m_server;
    QUdpSocket m_socket;
};
} // namespace

/// Hundreds of ways in which markup may try to run, to ask or to lead somewhere, through each door
/// that a note's text comes in by, and again as the page has written it. What came in stays in the
/// page, side by side with what came before, while the page is poked at.
class TestPageInjections : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void loadedNotesDoNothing();
    void loadedTitlesDoNothing();
    void pastedMarkupDoesNothing();
    void markupPastedIntoTheTitleDoesNothing();
    void textPastedIntoTheTitleDoesNothing();
    void droppedMarkupDoesNothing();
    void aBareViewIsHeard();

private:
    void load(const QString &html);
    void paste(const QString &html);
    void pasteIntoTitle(const QString &html);
    void pasteAsTextIntoTitle(const QString &html);
    void drop(const QString &html);
    void pasteNow(QMimeData *data);
    void collect();
    void checkNothingHappened();
    void checkDoor(void (TestPageInjections::*enter)(const QString &html), const QString &note);
    [[nodiscard]] QString named(const QVariantList &numbers) const;

    Listener m_listener;
    std::vector<Case> m_cases;
    PageFixture m_page;
    QString m_home; ///< the page's own address
};

void TestPageInjections::initTestCase()
{
    QVERIFY(m_listener.isListening());
    m_cases = readCases(m_listener.port());
    QVERIFY(m_cases.size() >= 350);
    QVERIFY(m_page.open(QUuid::createUuid(), u"<h1>T</h1>"_s));
    m_home = m_page.text(u"location.href"_s);
    (void)NetworkWatch::takeContacts(); // what the engine does as it starts is none of a note's
}

void TestPageInjections::init()
{
    m_listener.heard.clear();
    m_page.openedLinks().clear();
    m_page.js(
        u"window.attacked = new Set(); window.pastes = 0; window.drops = 0; window.room?.remove(); "
        "window.room = document.createElement('section'); document.body.append(room); "
        "document.onpaste = () => { window.pastes += 1; }; document.ondrop = () => { window.drops += 1; }; null"_s);
}

/// As the window does with what the store has loaded.
void TestPageInjections::load(const QString &html)
{
    Note note;
    note.id = QUuid::createUuid();
    note.body = html;
    m_page.ask(note.id, repairedNote(note, {}).body);
    QVERIFY(waitFor([&] { return m_page.coordinator().loadedNoteID() == note.id; }));
}

void TestPageInjections::paste(const QString &html)
{
    m_page.load(u"<p>a|b</p>"_s);
    auto *data = new QMimeData;
    data->setHtml(html);
    pasteNow(data);
}

void TestPageInjections::pasteIntoTitle(const QString &html)
{
    m_page.load(u"<p>a</p>"_s, u"a|b"_s);
    auto *data = new QMimeData;
    data->setHtml(html);
    pasteNow(data);
}

/// The markup itself is the text: the title shows it, and writes it so that it stays text.
void TestPageInjections::pasteAsTextIntoTitle(const QString &html)
{
    m_page.load(u"<p>a</p>"_s, u"a|b"_s);
    auto *data = new QMimeData;
    data->setHtml(html);
    data->setText(html);
    pasteNow(data);
}

void TestPageInjections::pasteNow(QMimeData *data)
{
    QGuiApplication::clipboard()->setMimeData(data);
    const int before = m_page.js(u"window.pastes"_s).toInt();
    m_page.press(Qt::Key_V, Qt::ControlModifier);
    QVERIFY(waitFor([&] { return m_page.js(u"window.pastes"_s).toInt() > before; }));
}

/// From another program, onto the first line; again when a busy page has not been ready for it.
void TestPageInjections::drop(const QString &html)
{
    const int before = m_page.js(u"window.drops"_s).toInt();
    QMimeData data;
    data.setHtml(html);
    const auto actions = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    const auto isDropped = [&] { return m_page.js(u"window.drops"_s).toInt() > before; };
    QVERIFY(waitFor([&] {
        m_page.load(u"<p>ab</p>"_s);
        m_page.js(u"room.style = 'position: absolute; pointer-events: none'; null"_s); // out of the way
        const QVariantList at = m_page.js(u"(() => { const r = bodyEl.firstChild.getBoundingClientRect(); return [r.left + 1, r.top + 8]; })()"_s).toList();
        const QPoint point(at[0].toInt(), at[1].toInt());
        QDragEnterEvent enter(point, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_page.view(), &enter);
        const bool isWanted = waitFor([&] {
            QDragMoveEvent move(point, actions, &data, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(&m_page.view(), &move);
            return move.isAccepted();
        }, 3'000ms);
        if (!isWanted) {
            QDragLeaveEvent leave;
            QCoreApplication::sendEvent(&m_page.view(), &leave);
            return false;
        }
        QDropEvent drop(point, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_page.view(), &drop);
        return waitFor(isDropped, 3'000ms);
    }));
}

/// Makes room for the next one; what is there stays in the document, and out of the editor's hands.
void TestPageInjections::collect()
{
    m_page.js(u"for (const region of [titleEl, bodyEl]) room.append(contentOf(region)); null"_s);
}

QString TestPageInjections::named(const QVariantList &numbers) const
{
    QString text;
    for (const QVariant &number : numbers) {
        const Case &one = m_cases[std::size_t(number.toInt())];
        text += u"\n  "_s + one.family + u": "_s + one.html;
    }
    return text;
}

void TestPageInjections::checkNothingHappened()
{
    const QSignalSpy activated(&m_page.coordinator(), &RichTextEditorCoordinator::linkActivated);
    // All that can be done to an element, and a while longer than any of them waits.
    m_page.js(
        u"window.isCalm = false; "
        "for (const element of room.querySelectorAll('*')) {"
        "  for (const name of element.getAttributeNames().filter(name => /^on/i.test(name)))"
        "    element.dispatchEvent(new Event(name.slice(2)));"
        "  for (const type of ['click', 'auxclick', 'mouseover', 'mousedown', 'mouseup', 'pointerdown', 'focus', 'error', 'load',"
        "    'toggle', 'begin', 'submit', 'input', 'keydown', 'animationstart', 'touchstart', 'dragstart'])"
        "    element.dispatchEvent(new MouseEvent(type, { bubbles: true, cancelable: true, view: window }));"
        "  element.click?.(); element.focus?.(); element.submit?.(); element.showModal?.(); element.play?.();"
        "}"
        "setTimeout(() => { window.isCalm = true; }, 500); null"_s);
    QVERIFY(waitFor([this] { return m_page.js(u"window.isCalm"_s).toBool(); }));

    const QVariantList attackers = m_page.js(u"[...attacked]"_s).toList();
    QVERIFY2(attackers.isEmpty(), qPrintable(u"a script ran:"_s + named(attackers)));
    QCOMPARE(m_listener.heard, QList<QByteArray>());
    QCOMPARE(NetworkWatch::takeContacts(), QList<QByteArray>());
    QCOMPARE(m_page.text(u"location.href"_s), m_home);
    QCOMPARE(m_page.text(u"String(window.opener) + window.length"_s), u"null0"_s);
    QVERIFY(m_page.openedLinks().empty());
    QCOMPARE(activated.size(), 0);
    // Nor is there anything left that only waits for its day.
    const QString remnants = m_page.text(
        u"[...room.querySelectorAll('*')].filter(element => element.namespaceURI !== 'http://www.w3.org/1999/xhtml' "
        "|| /^(script|style|link|meta|base|title|template|iframe|frame|object|embed|applet|portal|form|button|select|textarea|video|audio|source|area|map)$/.test(element.localName) "
        "|| element.shadowRoot || element.getAttributeNames().some(name => /^on|:|^(id|name|ping|srcset|srcdoc|action|formaction|background|target)$/i.test(name)) "
        "|| !isHarmlessLink(element.getAttribute('href') || ''))"
        ".map(element => element.outerHTML).join('\\n')"_s);
    QCOMPARE(remnants, QString());
}

/// All cases come in by one door, each in its place in the note; and then as the note that the page
/// has made of it, which another day loads.
void TestPageInjections::checkDoor(void (TestPageInjections::*enter)(const QString &html), const QString &note)
{
    for (const Case &one : m_cases) {
        (this->*enter)(note.arg(one.html));
        if (QTest::currentTestFailed()) {
            qInfo("with %s", qPrintable(one.html));
            return;
        }
        const QString written = m_page.composed();
        collect();
        load(written);
        collect();
    }
    const int words = m_page.js(u"room.textContent.split('entered').length - 1"_s).toInt();
    QCOMPARE(words, 2 * int(m_cases.size())); // each has been there
    checkNothingHappened();
}

void TestPageInjections::loadedNotesDoNothing()
{
    checkDoor(&TestPageInjections::load, u"<h1>T</h1><p>entered</p>%1<p>after</p>"_s);
}

void TestPageInjections::loadedTitlesDoNothing()
{
    checkDoor(&TestPageInjections::load, u"<h1>entered%1</h1><p>after</p>"_s);
}

void TestPageInjections::pastedMarkupDoesNothing()
{
    checkDoor(&TestPageInjections::paste, u"<p>entered</p>%1<p>after</p>"_s);
}

void TestPageInjections::markupPastedIntoTheTitleDoesNothing()
{
    checkDoor(&TestPageInjections::pasteIntoTitle, u"<p>entered</p>%1<p>after</p>"_s);
}

void TestPageInjections::textPastedIntoTheTitleDoesNothing()
{
    checkDoor(&TestPageInjections::pasteAsTextIntoTitle, u"<p>entered</p>%1<p>after</p>"_s);
}

void TestPageInjections::droppedMarkupDoesNothing()
{
    checkDoor(&TestPageInjections::drop, u"<p>entered</p>%1<p>after</p>"_s);
}

/// The same cases do run, and are heard and seen, where nobody minds them: in a view without the
/// filter, the lock and the settings of the editor's, in a frame each.
void TestPageInjections::aBareViewIsHeard()
{
    QJsonArray documents;
    for (const Case &one : m_cases)
        documents.append(one.html);
    QString list = QString::fromUtf8(QJsonDocument(documents).toJson(QJsonDocument::Compact));
    list.replace(u"<"_s, u"\\u003c"_s);
    const QString page = u"<!DOCTYPE html><script>window.attacked = new Set();"
                         "onload = () => { for (const html of %1) { const frame = document.createElement('iframe');"
                         "  frame.srcdoc = html; document.body.append(frame); } };"
                         "setInterval(() => { document.title = attacked.size; }, 50);</script><body>"_s.arg(list);
    QQmlComponent component(m_page.view().engine());
    // It stays where it is, so that one case does not take the others away.
    component.setData("import QtQuick\nimport QtWebEngine\n"
                      "WebEngineView { id: view; width: 400; height: 300; profile: WebEngineProfile { offTheRecord: true }\n"
                      "  onNavigationRequested: request => { if (request.isMainFrame && /^[0-9]+$/.test(view.title)) request.reject(); } }",
                      QUrl());
    const std::unique_ptr<QQuickItem> view(qobject_cast<QQuickItem *>(component.create()));
    QVERIFY2(view, qPrintable(component.errorString()));
    view->setParentItem(m_page.view().contentItem());
    QMetaObject::invokeMethod(view.get(), "loadHtml", Q_ARG(QString, page),
                              Q_ARG(QUrl, QUrl(u"http://127.0.0.1:%1/bare"_s.arg(m_listener.port()))));

    const auto count = [&] { return view->property("title").toInt(); };
    QVERIFY2(waitFor([&] { return count() >= 80; }), qPrintable(view->property("title").toString()));
    QVERIFY2(waitFor([this] { return m_listener.heard.size() >= 100; }), qPrintable(QString::number(m_listener.heard.size())));
    QList<QByteArray> seen;
    const auto looksUpAName = [&seen] {
        seen += NetworkWatch::takeContacts();
        return std::ranges::any_of(seen, [](const QByteArray &contact) {
            return contact.startsWith("name case-") || contact.endsWith(":53");
        });
    };
    QVERIFY(waitFor(looksUpAName));
    QVERIFY(seen.contains("127.0.0.1:" + QByteArray::number(m_listener.port())));
    qInfo("%d cases ran, %lld things were heard, %lld seen", count(),
          (long long)(m_listener.heard.size()), (long long)(seen.size()));
}

PLIM_PAGE_TEST_MAIN(TestPageInjections)
#include "tst_page_injections.moc"
