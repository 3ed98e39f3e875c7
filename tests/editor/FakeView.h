#pragma once

#include "editor/EditorWebView.h"

#include <QStringList>

#include <utility>

/// The scripts as the page reads them.
namespace Script
{
inline const QString focus = QStringLiteral("window.focusBodyAtEnd && window.focusBodyAtEnd();");
inline const QString hasScript = QStringLiteral("typeof window.setContent === 'function'");
inline const QString reportState =
    QStringLiteral("window.reportFormatState && window.reportFormatState();");
inline const QString cancelDebounce =
    QStringLiteral("window.cancelDebounce && window.cancelDebounce();");
inline const QString read = QStringLiteral("window.getComposedHTML()");
inline const QString readChanged = QStringLiteral("window.getChangedHTML()");
inline const QString layOut = QStringLiteral("document.body && document.body.offsetHeight;");
inline const QString isFocused =
    QStringLiteral("document.activeElement === document.getElementById('title') || "
                   "document.activeElement === document.getElementById('body') || "
                   "document.getElementById('body').contains(document.activeElement) || "
                   "document.getElementById('title').contains(document.activeElement)");

/// The literal is written out by the caller: what the note holds needs no escape here.
inline QString setContent(const QString &html)
{
    return QStringLiteral("window.setContent(\"%1\");").arg(html);
}
inline QString show(const QString &upperCaseID, const QString &html)
{
    return QStringLiteral("window.setCurrentID(\"%1\");\n").arg(upperCaseID) + setContent(html);
}
inline QString setFontSize(const QString &size)
{
    return QStringLiteral("window.setFontSize(%1);").arg(size);
}
} // namespace Script

/// Stands in for a web view: writes down what is asked of it, in order, and answers when told to.
class FakeView
{
public:
    inline static const QString loads = QStringLiteral("(loads the page)");
    inline static const QString takesKeyboard = QStringLiteral("(takes the keyboard)");

    inline static const QString laysOutAgain = QStringLiteral("(lays the page out again)");

    FakeView()
    {
        QObject::connect(&seam, &EditorWebView::scriptRequested, &seam,
                         [this](int ticket, const QString &script) {
                             if (script == Script::hasScript) {
                                 seam.finishScript(ticket, hasScript);
                                 return;
                             }
                             m_log += script;
                             if (script == Script::focus && hasCaretAtOnce)
                                 seam.finishScript(ticket, {});
                             else
                                 m_unanswered.append({ticket, script});
                         });
        QObject::connect(&seam, &EditorWebView::scriptRequestedWithoutResult, &seam,
                         [this](const QString &script) { m_log += script; });
        QObject::connect(&seam, &EditorWebView::loadRequested, &seam,
                         [this](const QString &document) {
                             m_log += loads;
                             documents += document;
                         });
        QObject::connect(&seam, &EditorWebView::layoutRequested, &seam,
                         [this] { m_log += laysOutAgain; });
        QObject::connect(&seam, &EditorWebView::focusRequested, &seam, [this] {
            m_log += takesKeyboard;
            if (getsKeyboardWhenAsked)
                seam.setIsFirstResponder(true);
        });
    }

    /// What was asked for since the last time.
    [[nodiscard]] QStringList takeLog() { return std::exchange(m_log, {}); }
    [[nodiscard]] const QStringList &log() const { return m_log; }
    /// The questions that wait for an answer, the oldest first.
    [[nodiscard]] QStringList questions() const
    {
        QStringList scripts;
        for (const auto &[ticket, script] : m_unanswered)
            scripts += script;
        return scripts;
    }
    void answer(const QVariant &result)
    {
        if (m_unanswered.isEmpty())
            qFatal("Nothing was asked");
        seam.finishScript(m_unanswered.takeFirst().first, result);
    }
    /// Answers what is asked, and what is asked upon that.
    void answerAll(const QVariant &result)
    {
        do
            answer(result);
        while (!m_unanswered.isEmpty());
    }
    void answer(const char16_t *text) { answer(QVariant(QString::fromUtf16(text))); }
    void answer(const QString &text) { answer(QVariant(text)); }
    /// The page died: its questions are never answered, though the late answer may yet be tried.
    void lose()
    {
        m_unanswered.clear();
        seam.reportLost(QStringLiteral("test"));
    }
    void post(const QString &body) { post(QStringLiteral("plim"), body); }
    void post(const QString &handler, const QString &body)
    {
        QMetaObject::invokeMethod(seam.messages(), "receive", Q_ARG(QString, handler),
                                  Q_ARG(QString, body));
    }

    EditorWebView seam;
    QStringList documents;
    bool getsKeyboardWhenAsked = false;
    bool hasCaretAtOnce = true;
    bool hasScript = true;

private:
    QStringList m_log;
    QList<std::pair<int, QString>> m_unanswered;
};
