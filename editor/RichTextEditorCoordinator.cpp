#include "editor/RichTextEditorCoordinator.h"

#include "core/ImageStore.h"
#include "core/Note.h"
#include "core/NotificationCenter.h"
#include "editor/EditorFlush.h"
#include "editor/EditorLog.h"
#include "editor/EditorPage.h"
#include "editor/EditorProfile.h"
#include "editor/MergedHTML.h"
#include "editor/OpenableLink.h"
#include "editor/PageScripts.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr auto commandDelay = 50ms;
// Keys and questions reach the page by different ways, and a question may overtake the key before it.
// The first one seldom does, the one after its answer hardly ever, and the next was never seen to.
constexpr int lastRounds = 3;
constexpr int mostLossesAtWork = 3;
constexpr auto calmAfter = 10s; ///< a page that lived this long does not count as failing in a row

QList<RichTextEditorCoordinator *> &liveEditors()
{
    static QList<RichTextEditorCoordinator *> editors; // cppcheck-suppress unassignedVariable ; it is a list
    return editors;
}

/// What the page answered to a read; empty when it gave no text.
QString textOf(const QVariant &result)
{
    return result.typeId() == QMetaType::QString ? result.toString() : QString();
}
} // namespace

RichTextEditorCoordinator::RichTextEditorCoordinator(QObject *parent) : QObject(parent)
{
    liveEditors().append(this);
    m_reload.setSingleShot(true);
    connect(&m_reload, &QTimer::timeout, this, &RichTextEditorCoordinator::loadPage);
    auto &center = NotificationCenter::shared();
    connect(&center, &NotificationCenter::plimFlushEditors, this, &RichTextEditorCoordinator::flush);
    connect(&center, &NotificationCenter::plimFormat, this, &RichTextEditorCoordinator::runIfFocused);
}

RichTextEditorCoordinator::~RichTextEditorCoordinator()
{
    liveEditors().removeOne(this);
    if (m_webView)
        m_webView->abandonScripts();
}

void RichTextEditorCoordinator::setWebView(EditorWebView *webView)
{
    if (m_webView == webView)
        return;
    if (m_webView) {
        m_webView->disconnect(this);
        m_webView->abandonScripts();
    }
    m_webView = webView;
    forgetPage();
    if (m_webView) {
        connect(m_webView, &EditorWebView::loaded, this, &RichTextEditorCoordinator::finishLoading);
        connect(m_webView, &EditorWebView::lost, this, &RichTextEditorCoordinator::recover);
        connect(m_webView, &EditorWebView::messageReceived, this, &RichTextEditorCoordinator::receive);
        connect(m_webView, &EditorWebView::messageRefused, this, &RichTextEditorCoordinator::makeUpFor);
        // An editor that leaves the keyboard takes over what was kept from it while it had it.
        connect(m_webView, &EditorWebView::isFirstResponderChanged, this, &RichTextEditorCoordinator::sync);
        // The view is still being made: it connects to its requests first.
        m_reload.start(0);
    }
    Q_EMIT webViewChanged();
}

void RichTextEditorCoordinator::setController(EditorController *controller)
{
    if (m_controller == controller)
        return;
    m_controller = controller;
    if (m_controller)
        m_controller->setCoordinator(this);
    Q_EMIT controllerChanged();
}

void RichTextEditorCoordinator::update(const RichTextEditor &value)
{
    if (m_controller)
        m_controller->setCoordinator(this);
    const bool isNew = m_value != value;
    const bool isOther = m_value.noteID != value.noteID;
    // The text that the host holds by now; said again, it is no news.
    if (value.noteID == m_loadedNoteID && (value.noteID != m_value.noteID || value.html != m_value.html))
        m_storedHTML = value.html;
    m_value = value;
    if (isOther)
        setCaretAwaited(isOtherNoteWanted());
    sync();
    if (isNew)
        Q_EMIT valueChanged();
}

void RichTextEditorCoordinator::loadPage()
{
    if (!m_webView)
        return;
    forgetPage();
    m_webView->load(editorPageDocument(m_value.bodyFontSize, m_value.rightPadding));
}

// Whatever finished loading is an empty page: it is never taken for one that shows the note.
void RichTextEditorCoordinator::finishLoading()
{
    qCDebug(editorLog, "page ready");
    m_reload.stop();
    forgetPage();
    m_pageLoaded = true;
    // The engine brings the page its script by another way than its document. Without it the page
    // would take words and tell nobody of them.
    m_webView->evaluate(PageScript::hasScript, [self = QPointer(this)](const QVariant &result) {
        if (self && self->m_webView && !result.toBool())
            self->m_webView->reportUnfit();
    });
    sync();
}

void RichTextEditorCoordinator::forgetPage()
{
    ++m_contentRevision;
    m_pageLoaded = false;
    m_isSyncing = false;
    m_loadedNoteID.reset();
    m_documentHTML.clear();
    m_storedHTML.clear();
    m_lastFontSize = -1.0;
    setHoveredLink({});
}

// The page is gone with what it had not reported yet. A fresh one gets the last HTML that the host
// knows; until then nothing is read from it, so that an empty page is never taken for the note.
void RichTextEditorCoordinator::recover()
{
    if (m_sinceLoss.isValid() && std::chrono::milliseconds(m_sinceLoss.elapsed()) < calmAfter)
        ++m_lossesInARow;
    else
        m_lossesInARow = 0;
    m_sinceLoss.start();
    // A page lost before it showed anything has had no say in who gets the keyboard.
    if (m_loadedNoteID)
        m_takesFocusWhenShown = m_isSyncing || (m_webView && m_webView->isFirstResponder());
    forgetPage();
    // Who writes goes on writing. A note that no page survives does not keep the keyboard.
    setCaretAwaited(m_takesFocusWhenShown && m_lossesInARow < mostLossesAtWork && isOtherNoteWanted());
    // At once the first time; a page that fails again and again gets longer and longer rests.
    m_reload.start(m_lossesInARow == 0 ? 0ms : std::min(5000ms, 125ms * (1 << std::min(m_lossesInARow, 6))));
}

void RichTextEditorCoordinator::sync()
{
    if (!m_webView || !m_pageLoaded || m_isSyncing)
        return;
    if (m_value.noteID == m_loadedNoteID) {
        if (m_value.html != m_documentHTML)
            refreshIfNotTyping();
        applyFontSize(m_value.bodyFontSize);
    } else if (!m_value.noteID) {
        return;
    } else if (!m_loadedNoteID) {
        showFirst();
    } else {
        switchNote();
    }
}

// The note was changed elsewhere. A page keeps its active element when its window is left, so that
// whoever types is told by both: the page has the caret and the view has the keyboard.
void RichTextEditorCoordinator::refreshIfNotTyping()
{
    if (!m_loadedNoteID)
        return; // no note asked for and none shown: there is nothing to refresh
    m_webView->evaluate(PageScript::isFocused, [self = QPointer(this)](const QVariant &result) {
        const bool hasCaret = result.typeId() == QMetaType::Bool && result.toBool();
        if (self && self->m_webView && !(hasCaret && self->m_webView->isFirstResponder()))
            self->refresh();
    });
}

// Words may still wait in the page for its timer, so they are collected before they are replaced.
void RichTextEditorCoordinator::refresh()
{
    // A switch may have begun meanwhile; it collects, and brings its own content.
    const auto isOutdated = [this] {
        return m_isSyncing || m_value.noteID != m_loadedNoteID || m_value.html == m_documentHTML;
    };
    if (isOutdated())
        return;
    m_webView->evaluate(PageScript::cancelDebounce);
    read(PageScript::readHTML, [this, isOutdated] {
        if (isOutdated())
            return;
        ++m_contentRevision;
        m_documentHTML = m_value.html;
        m_webView->evaluate(PageScript::setContent(m_documentHTML));
    });
}

// An answer is of use only while the page holds what it held when it was asked: once other content
// was sent, the text that was there before has been taken by an earlier answer.
void RichTextEditorCoordinator::read(const QString &question, std::function<void()> next)
{
    m_webView->evaluate(question, [self = QPointer(this), revision = m_contentRevision,
                                         next = std::move(next)](const QVariant &result) {
        if (!self || !self->m_webView || self->m_contentRevision != revision)
            return;
        self->take(*self->m_loadedNoteID, textOf(result));
        next();
    });
}

void RichTextEditorCoordinator::showFirst()
{
    const bool takesFocus = std::exchange(m_takesFocusWhenShown, true);
    show(*m_value.noteID, m_value.html, m_value.bodyFontSize);
    if (takesFocus)
        focusPage();
    else
        setCaretAwaited(false);
    m_webView->evaluate(PageScript::reportState);
}

void RichTextEditorCoordinator::switchNote()
{
    m_isSyncing = true;
    m_webView->evaluate(PageScript::cancelDebounce);
    read(PageScript::readHTML, [this, captured = m_value] {
        show(*captured.noteID, captured.html, captured.bodyFontSize);
        focusPage();
        m_isSyncing = false;
        m_webView->evaluate(PageScript::reportState);
        // What was asked for while the answer was awaited has not been looked at yet.
        sync();
    });
}

void RichTextEditorCoordinator::show(const QUuid &noteID, const QString &html, double fontSize)
{
    ++m_contentRevision;
    m_loadedNoteID = noteID;
    m_documentHTML = html;
    m_storedHTML = m_value.noteID == noteID ? m_value.html : html;
    // One script, so that no report of the page can come between, one note's text under another's id.
    m_webView->evaluate(PageScript::setCurrentID(noteID) + u'\n' + PageScript::setContent(html));
    applyFontSize(fontSize);
    m_isShowing = true;
    Q_EMIT shown(noteID);
}

void RichTextEditorCoordinator::focusPage()
{
    m_webView->makeFirstResponder();
    m_webView->evaluate(PageScript::focus, [self = QPointer(this)](const QVariant &) {
        if (self)
            self->setCaretAwaited(self->isOtherNoteWanted());
    });
}

bool RichTextEditorCoordinator::isOtherNoteWanted() const
{
    return m_value.noteID && (m_value.noteID != m_loadedNoteID || m_isSyncing);
}

void RichTextEditorCoordinator::setCaretAwaited(bool isCaretAwaited)
{
    if (m_isCaretAwaited == isCaretAwaited)
        return;
    m_isCaretAwaited = isCaretAwaited;
    Q_EMIT isCaretAwaitedChanged();
}

void RichTextEditorCoordinator::applyFontSize(double size)
{
    if (size == m_lastFontSize)
        return;
    m_lastFontSize = size;
    m_webView->evaluate(u"window.setFontSize("_s + shortestDecimal(size) + u");"_s);
}

void RichTextEditorCoordinator::receive(const QString &handler, const QString &body)
{
    if (handler == "plim"_L1) {
        receiveChange(body);
    } else if (handler == "plimState"_L1) {
        receiveFormatState(body);
    } else if (handler == "plimLog"_L1) {
        std::fputs(qPrintable(u"[PLIM-LOG] "_s + body + u'\n'), stdout);
        std::fflush(stdout);
    } else if (handler == "plimLink"_L1) {
        receiveLink(body);
    } else if (handler == "plimHover"_L1) {
        setHoveredLink(openableLink(body));
    } else if (handler == "plimImage"_L1) {
        receivePicture(body);
    }
}

// A note may be longer than a message: with pictures in it that no disk would take. Its words are
// asked for then, for an answer is of any length.
void RichTextEditorCoordinator::makeUpFor(const QString &handler)
{
    if (handler == "plim"_L1 && m_webView && m_loadedNoteID)
        read(PageScript::readHTML, [] {});
}

void RichTextEditorCoordinator::receiveChange(const QString &body)
{
    QString html = body;
    std::optional<QUuid> id;
    const QJsonObject message = QJsonDocument::fromJson(body.toUtf8()).object();
    const bool holdsTexts = std::ranges::all_of(message, [](const QJsonValue &value) { return value.isString(); });
    if (holdsTexts && message.contains("html"_L1)) {
        html = message.value("html"_L1).toString();
        if (const QUuid parsed(message.value("id"_L1).toString()); !parsed.isNull())
            id = parsed;
    }
    if (!id) {
        if (!m_loadedNoteID) {
            qCInfo(editorLog) << "Plim: change ignored, the page shows no note";
            return;
        }
        if (html == m_documentHTML)
            return;
        id = m_value.noteID.value_or(*m_loadedNoteID);
    }
    take(*id, html);
}

// The page's words go on top of what the host holds by now, which the page may not have been given
// because it had the keyboard.
void RichTextEditorCoordinator::take(const QUuid &noteID, const QString &html)
{
    if (html.isEmpty())
        return;
    if (noteID != m_loadedNoteID) {
        // Late news of a note shown before: they belong to it, and say nothing of what the page
        // holds now.
        Q_EMIT change(noteID, html);
        return;
    }
    if (html == m_documentHTML)
        return;
    const QString stored = std::exchange(m_storedHTML, mergedHTML(m_documentHTML, m_storedHTML, html));
    m_documentHTML = html;
    if (m_storedHTML == stored)
        return;
    for (RichTextEditorCoordinator *other : std::as_const(liveEditors()))
        other->learn(noteID, m_storedHTML);
    qCDebug(editorLog) << "accepted" << m_storedHTML.size() << "characters";
    Q_EMIT change(noteID, m_storedHTML);
}

// A page may still hold a note that is no longer asked for, so that no update tells of it.
void RichTextEditorCoordinator::learn(const QUuid &noteID, const QString &html)
{
    if (m_loadedNoteID == noteID && m_value.noteID != noteID)
        m_storedHTML = html;
}

void RichTextEditorCoordinator::receiveFormatState(const QString &body)
{
    const std::optional<EditorFormatState> state = EditorFormatState::fromJson(body);
    if (!state)
        return;
    // The first report comes when the page has the content and its caret.
    if (std::exchange(m_isShowing, false) && m_loadedNoteID)
        qCDebug(editorLog) << "shown" << m_loadedNoteID->toString(QUuid::WithoutBraces);
    QTimer::singleShot(0, this, [this, state = *state] {
        if (m_controller)
            m_controller->setFormatState(state);
    });
}

void RichTextEditorCoordinator::receiveLink(const QString &address)
{
    // The page looked at it already, but what runs there is not to be trusted.
    const QUrl url = openableLink(address);
    if (url.isEmpty())
        qCInfo(editorLog) << "Plim: link not opened, scheme" << QUrl(address.left(longestOpenableLink)).scheme();
    else
        Q_EMIT linkActivated(url);
}

void RichTextEditorCoordinator::setHoveredLink(const QUrl &url)
{
    if (m_hoveredLink == url)
        return;
    m_hoveredLink = url;
    Q_EMIT hoveredLinkChanged();
}

// The page shows the picture by its bytes until it is told the file. No address tells it that there
// is none: the bytes stay in the note then, as they do when the page has gone on to another one.
void RichTextEditorCoordinator::receivePicture(const QString &body)
{
    const QJsonObject message = QJsonDocument::fromJson(body.toUtf8()).object();
    const QString ticket = message.value("ticket"_L1).toString();
    if (ticket.isEmpty() || !m_webView)
        return;
    const std::optional<QUrl> url =
        storeInlineImage(message.value("data"_L1).toString(),
                         m_imagesDirectory.value_or(EditorProfile::shared().imagesDirectory()));
    qCDebug(editorLog) << "picture" << (url ? "stored" : "kept in its note");
    m_webView->evaluate(
        pageCall(u"pictureStored", ticket, url ? url->toString(QUrl::FullyEncoded) : QString()));
}

void RichTextEditorCoordinator::requestLinkAtCaret(std::function<void(const QString &)> answer)
{
    if (!m_webView || !m_pageLoaded) {
        answer({});
        return;
    }
    // A page that goes away takes the question along; whoever asked is answered all the same.
    struct Question {
        explicit Question(std::function<void(const QString &)> f) : answer(std::move(f)) {}
        ~Question() { answer(address); }
        Q_DISABLE_COPY_MOVE(Question)

        std::function<void(const QString &)> answer;
        QString address;
    };
    m_webView->evaluate(PageScript::linkAtCaret,
                        [question = std::make_shared<Question>(std::move(answer))](
                            const QVariant &result) { question->address = textOf(result); });
}

void RichTextEditorCoordinator::flush()
{
    handOver(EditorFlush::shared().owe(m_storedHTML.size()));
}

void RichTextEditorCoordinator::handOver(const std::shared_ptr<void> &debt)
{
    collect(lastRounds, debt);
}

void RichTextEditorCoordinator::collect(int rounds, const std::shared_ptr<void> &debt)
{
    if (rounds == 0 || !m_webView || !m_loadedNoteID)
        return;
    read(rounds == lastRounds ? PageScript::readHTML : PageScript::readChangedHTML,
         [this, rounds, debt] { collect(rounds - 1, debt); });
}

void RichTextEditorCoordinator::layOutAgain()
{
    if (!m_webView || !m_pageLoaded)
        return;
    m_webView->layOutAgain();
    m_webView->evaluate(PageScript::layOut);
}

void RichTextEditorCoordinator::run(const EditorCommand &command)
{
    QTimer::singleShot(commandDelay, this, [this, script = command.script()] {
        if (!m_webView)
            return;
        m_webView->makeFirstResponder();
        m_webView->evaluate(script);
    });
}

void RichTextEditorCoordinator::runIfFocused(const EditorCommand &command)
{
    if (m_webView && m_webView->isFirstResponder())
        run(command);
}
