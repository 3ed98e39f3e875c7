#pragma once

#include "editor/PageMessages.h"

#include <QHash>
#include <QObject>
#include <QUrl>
#include <QVariant>
#include <qqmlregistration.h>

#include <functional>

/// The coordinator's side of one embedded web view. The view itself, declared in QML, carries out
/// the requests and reports back; a test can stand in for it.
class EditorWebView : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isFirstResponder READ isFirstResponder WRITE setIsFirstResponder NOTIFY
                   isFirstResponderChanged)
    Q_PROPERTY(QObject *messages READ messages CONSTANT)

public:
    using Completion = std::function<void(const QVariant &result)>;

    explicit EditorWebView(QObject *parent = nullptr);

    /// Runs the script in the page. The completion is never called when the page goes away first.
    void evaluate(const QString &script, const Completion &completion = {});
    /// No answer is taken any more, and whoever waits for one need not wait on.
    void abandonScripts();
    void load(const QString &document);
    void makeFirstResponder();
    /// Has the view lay its page out and draw it anew.
    void layOutAgain();

    /// The view has the keyboard: it is the focused item of its window and the window is the
    /// active one.
    [[nodiscard]] bool isFirstResponder() const { return m_isFirstResponder; }
    void setIsFirstResponder(bool isFirstResponder);
    [[nodiscard]] QObject *messages() { return &m_messages; }

    Q_INVOKABLE void finishScript(int ticket, const QVariant &result);
    Q_INVOKABLE void reportLoaded();
    /// The page could not be loaded, or its process is gone.
    Q_INVOKABLE void reportLost(const QString &reason);
    /// The page is there, and not what it should be; the next one is to be loaded in a new view.
    void reportUnfit();

Q_SIGNALS:
    // to the view
    void scriptRequested(int ticket, const QString &script);
    void scriptRequestedWithoutResult(const QString &script);
    void loadRequested(const QString &document);
    void focusRequested();
    void layoutRequested();
    void renewalRequested();
    // to the coordinator
    void loaded();
    void lost();
    void messageReceived(const QString &handler, const QString &body);
    void messageRefused(const QString &handler);
    void isFirstResponderChanged();

private:
    PageMessages m_messages;
    QHash<int, Completion> m_completions;
    int m_lastTicket = 0;
    bool m_isFirstResponder = false;
};
