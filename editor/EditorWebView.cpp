#include "editor/EditorWebView.h"

#include "editor/EditorLog.h"

EditorWebView::EditorWebView(QObject *parent) : QObject(parent)
{
    connect(&m_messages, &PageMessages::received, this, &EditorWebView::messageReceived);
}

void EditorWebView::evaluate(const QString &script, Completion completion)
{
    if (!completion) {
        Q_EMIT scriptRequestedWithoutResult(script);
        return;
    }
    const int ticket = ++m_lastTicket;
    m_completions.insert(ticket, std::move(completion));
    Q_EMIT scriptRequested(ticket, script);
}

void EditorWebView::load(const QString &document)
{
    Q_EMIT loadRequested(document);
}

void EditorWebView::makeFirstResponder()
{
    Q_EMIT focusRequested();
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
    Q_EMIT loaded();
}

void EditorWebView::reportLost(const QString &reason)
{
    qCWarning(editorLog).noquote() << "Plim: editor page lost:" << reason;
    m_completions.clear(); // no answer will come, and whoever waits for one must not wait on
    Q_EMIT lost();
}
