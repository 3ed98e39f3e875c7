#include "editor/EditorWebView.h"

#include "editor/EditorLog.h"

#include <utility>

using namespace Qt::StringLiterals;

EditorWebView::EditorWebView(QObject *parent) : QObject(parent)
{
    connect(&m_messages, &PageMessages::received, this, &EditorWebView::messageReceived);
    connect(&m_messages, &PageMessages::refused, this, &EditorWebView::messageRefused);
}

void EditorWebView::evaluate(const QString &script, const Completion &completion)
{
    if (!completion) {
        Q_EMIT scriptRequestedWithoutResult(script);
        return;
    }
    const int ticket = ++m_lastTicket;
    m_completions.insert(ticket, completion);
    Q_EMIT scriptRequested(ticket, script);
}

void EditorWebView::abandonScripts()
{
    // Taken out first: whoever is let go may ask again at once.
    const auto abandoned = std::exchange(m_completions, {});
}

void EditorWebView::load(const QString &document)
{
    abandonScripts();
    Q_EMIT loadRequested(document);
}

void EditorWebView::makeFirstResponder()
{
    Q_EMIT focusRequested();
}

void EditorWebView::layOutAgain()
{
    Q_EMIT layoutRequested();
}

void EditorWebView::setIsFirstResponder(bool isFirstResponder)
{
    if (m_isFirstResponder == isFirstResponder)
        return;
    m_isFirstResponder = isFirstResponder;
    Q_EMIT isFirstResponderChanged();
}

void EditorWebView::finishScript(int ticket, const QVariant &result)
{
    if (const Completion completion = m_completions.take(ticket))
        completion(result);
}

void EditorWebView::reportLoaded()
{
    abandonScripts(); // they were asked of the page before this one
    Q_EMIT loaded();
}

void EditorWebView::reportLost(const QString &reason)
{
    qCWarning(editorLog).noquote() << "Plim: editor page lost:" << reason;
    abandonScripts();
    Q_EMIT lost();
}

void EditorWebView::reportUnfit()
{
    Q_EMIT renewalRequested();
    reportLost(u"without its script"_s);
}
