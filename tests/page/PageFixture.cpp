#include "tests/page/PageFixture.h"

#include "core/app/Platform.h"
#include "editor/ScriptLiteral.h"

#include "tests/Patience.h"
#include "tests/views/WaitFor.h"

#include <QApplication>
#include <QDesktopServices>
#include <QEventLoop>
#include <QFile>
#include <QKeyEvent>
#include <QQmlEngine>
#include <QRandomGenerator>
#include <QQuickItem>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(Plim_EditorPlugin)
Q_IMPORT_QML_PLUGIN(Plim_ShellPlugin)

using namespace Qt::StringLiterals;

OpenedLinks::OpenedLinks()
{
    for (const QString &scheme : {u"http"_s, u"https"_s, u"mailto"_s, u"file"_s, u"data"_s, u"ftp"_s, u"tel"_s})
        QDesktopServices::setUrlHandler(scheme, this, "take");
}

std::vector<QUrl> &PageFixture::openedLinks()
{
    static auto *links = new OpenedLinks; // for as long as the process: the desktop keeps hold of it
    return links->urls;
}

PageFixture::PageFixture()
{
    openedLinks().clear();
    m_view.engine()->addImportPath(u":/qt/qml"_s);
    m_view.setResizeMode(QQuickView::SizeRootObjectToView);
    m_view.resize(500, 400);
}

bool PageFixture::open()
{
    m_view.setSource(QUrl(u"qrc:/qt/qml/Plim/Editor/RichTextEditor.qml"_s));
    if (m_view.status() != QQuickView::Ready)
        return false;
    m_coordinator = m_view.rootObject()->property("coordinator").value<RichTextEditorCoordinator *>();
    m_coordinator->setController(&m_controller);
    QObject::connect(m_coordinator, &RichTextEditorCoordinator::change, &m_view,
                     [this](const QUuid &id, const QString &html) { changes.push_back({id, html}); });
    QObject::connect(m_coordinator->webView(), &EditorWebView::messageReceived, &m_view,
                     [this](const QString &handler, const QString &body) {
                         if (handler == "plimLog"_L1)
                             logs.push_back(body);
                         else if (handler == "plimState"_L1)
                             states.push_back(body);
                     });
    m_view.show();
    return prepare() && activate();
}

bool PageFixture::open(const QUuid &noteID, const QString &html)
{
    if (!open())
        return false;
    ask(noteID, html);
    // The page puts the caret into what it was given a moment later.
    return waitFor([this, noteID] { return m_coordinator->loadedNoteID() == noteID; }) &&
           waitFor(
               [this] { return js(u"regionOf(document.activeElement) !== null"_s).toBool(); }) &&
           settle();
}

bool PageFixture::settle()
{
    js(u"window.hasSettled = false; setTimeout(() => { window.hasSettled = true; }, 2 * FOCUS_DELAY); null"_s);
    return waitFor([this] { return js(u"window.hasSettled"_s).toBool(); });
}

void PageFixture::ask(const QUuid &noteID, const QString &html, double fontSize)
{
    RichTextEditor value;
    value.noteID = noteID;
    value.html = html;
    value.bodyFontSize = fontSize;
    m_coordinator->update(value);
}

bool PageFixture::activate()
{
    m_view.requestActivate();
    webEngineView()->forceActiveFocus();
    return QTest::qWaitForWindowActive(&m_view, longEnough) &&
           waitFor([this] { return js(u"document.hasFocus()"_s).toBool(); });
}

bool PageFixture::prepare()
{
    if (!waitFor([this] { return js(u"typeof window.setContent"_s) == u"function"_s; }))
        return false;
    QFile file(u":/marks.js"_s);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    js(QString::fromUtf8(file.readAll()));
    return true;
}

namespace {
/// As a busy machine does between two steps of a test: up to PLIM_TEST_DELAY milliseconds.
void loseTime()
{
    static const int longest = qEnvironmentVariableIntValue("PLIM_TEST_DELAY");
    if (longest > 0 && QRandomGenerator::global()->bounded(2) == 0)
        QTest::qWait(QRandomGenerator::global()->bounded(longest));
}
} // namespace

QVariant PageFixture::js(const QString &script)
{
    loseTime();
    struct Answer {
        bool isThere = false;
        QVariant value;
        QEventLoop loop;
    };
    const auto answer = std::make_shared<Answer>();
    // A page that goes away takes the question along; then there is nothing to wait for.
    std::shared_ptr<void> asked(nullptr, [answer](void *) { answer->loop.quit(); answer->isThere = true; });
    m_coordinator->webView()->evaluate(script, [answer, asked = std::move(asked)](const QVariant &result) {
        answer->isThere = true;
        answer->value = result;
        answer->loop.quit();
    });
    QTimer::singleShot(longEnough, &answer->loop, &QEventLoop::quit);
    if (!answer->isThere)
        answer->loop.exec();
    return answer->value;
}

void PageFixture::load(const QString &body, const QString &title)
{
    js(u"marks.load("_s + jsString(title) + u", "_s + jsString(body) + u"); null"_s);
}

void PageFixture::press(Qt::Key key, Qt::KeyboardModifiers modifiers, const QString &text, quint32 scanCode)
{
    const int before = js(u"marks.keysUp()"_s).toInt();
    QKeyEvent down(QEvent::KeyPress, key, modifiers, scanCode, 0, 0, text);
    QKeyEvent up(QEvent::KeyRelease, key, modifiers, scanCode, 0, 0, text);
    QCoreApplication::sendEvent(&m_view, &down);
    QCoreApplication::sendEvent(&m_view, &up);
    if (!waitFor([&] { return js(u"marks.keysUp()"_s).toInt() > before; }))
        qWarning("the page saw no key %d", int(key));
}

void PageFixture::type(const QString &text)
{
    for (const QChar c : text)
        press(c == u' ' ? Qt::Key_Space : Qt::Key(c.toUpper().unicode()), {}, c);
}

void PageFixture::click(const QString &selector)
{
    const QVariantList centre =
        js(u"(() => { const r = document.querySelector("_s + jsString(selector)
           + u").getBoundingClientRect(); return [r.x + r.width / 2, r.y + r.height / 2]; })()"_s)
            .toList();
    if (centre.size() != 2) {
        qWarning("nothing to click");
        return;
    }
    js(u"window.clicksSeen = 0; document.addEventListener('click', () => { window.clicksSeen += 1; }, { once: true }); null"_s);
    QTest::mouseClick(&m_view, Qt::LeftButton, {}, QPointF(centre[0].toDouble(), centre[1].toDouble()).toPoint());
    if (!waitFor([this] { return js(u"window.clicksSeen"_s).toInt() > 0; }))
        qWarning("the page saw no click");
}

void PageFixture::run(const EditorCommand &command)
{
    js(command.script());
}

void PageFixture::forgetReports()
{
    js(u"notifyPending(); clearTimeout(reportTimer); null"_s); // what was sent is there before the answer
    changes.clear();
    logs.clear();
    states.clear();
}

QQuickItem *PageFixture::webEngineView() const
{
    return m_view.rootObject()->findChild<QQuickItem *>(u"editorWebView"_s);
}

int runPageTest(int argc, char **argv, int (*run)(int, char **))
{
    preparePlatform();
    // No settings and no notes of the user are within reach of a test.
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    for (const char *name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        qunsetenv(name);
    QApplication application(argc, argv);
    return run(argc, argv);
}
