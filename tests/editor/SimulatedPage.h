#pragma once

#include "editor/EditorWebView.h"

#include <QJSEngine>
#include <QQueue>

#include <functional>

/// A page as far as the host can tell: scripts reach it and its messages and answers leave it in
/// order, each when the test says so. It runs the scripts themselves.
class SimulatedPage
{
public:
    SimulatedPage()
    {
        m_engine.evaluate(QStringLiteral(R"(
            var page = { id: null, html: '<h1><br></h1>', isPending: false, size: 0 };
            var regions = {};
            for (const name of ['title', 'body']) regions[name] = { contains(e) { return e === this; } };
            var document = { activeElement: null, getElementById(name) { return regions[name]; } };
            var window = {
                setCurrentID(id) { page.id = id; },
                setContent(html) { page.html = html; page.isPending = true; },
                setFontSize(size) { page.size = size; },
                getComposedHTML() { return page.html; },
                getChangedHTML() { return page.html; },
                cancelDebounce() { page.isPending = false; },
                focusBodyAtEnd() { document.activeElement = regions.body; },
                reportFormatState() {},
            };
            function message() {
                page.isPending = false;
                return JSON.stringify({ id: page.id, html: page.html });
            })"));
        QObject::connect(&seam, &EditorWebView::scriptRequested, &seam,
                         [this](int ticket, const QString &script) {
                             m_toPage.enqueue({ticket, script});
                         });
        QObject::connect(&seam, &EditorWebView::scriptRequestedWithoutResult, &seam,
                         [this](const QString &script) {
                             m_toPage.enqueue({0, script});
                         });
    }

    [[nodiscard]] QString html() { return run(QStringLiteral("page.html")).toString(); }
    [[nodiscard]] QString noteID() { return run(QStringLiteral("page.id")).toString(); }

    /// Changes not yet reported wait for the page's timer, or for the page to lose the keyboard.
    [[nodiscard]] bool isPending() { return run(QStringLiteral("page.isPending")).toBool(); }
    void report()
    {
        const QString body = run(QStringLiteral("message()")).toString();
        m_toHost.enqueue([this, body] {
            QMetaObject::invokeMethod(seam.messages(), "receive",
                                      Q_ARG(QString, QStringLiteral("plim")), Q_ARG(QString, body));
        });
    }

    void click() { run(QStringLiteral("window.focusBodyAtEnd()")); }
    void edit(const QString &html)
    {
        m_engine.globalObject()
            .property(QStringLiteral("page"))
            .setProperty(QStringLiteral("html"), html);
        run(QStringLiteral("page.isPending = true"));
    }

    [[nodiscard]] bool isQuiet() const { return m_toPage.isEmpty() && m_toHost.isEmpty(); }
    void runNextScript()
    {
        if (m_toPage.isEmpty())
            return;
        const Request request = m_toPage.dequeue();
        const QVariant result = run(request.script).toVariant();
        if (request.ticket > 0)
            m_toHost.enqueue(
                [this, request, result] { seam.finishScript(request.ticket, result); });
    }
    void deliverNext()
    {
        if (!m_toHost.isEmpty())
            m_toHost.dequeue()();
    }
    /// Everything that is under way arrives, and what it brings about.
    void settle()
    {
        for (int step = 0; !isQuiet(); ++step) {
            if (step > 10'000)
                qFatal("Page and host never come to rest");
            runNextScript();
            deliverNext();
        }
    }

    EditorWebView seam;

private:
    struct Request {
        int ticket;
        QString script;
    };

    QJSValue run(const QString &script)
    {
        const QJSValue value = m_engine.evaluate(script);
        if (value.isError())
            qFatal("%s: %s", qPrintable(value.toString()), qPrintable(script));
        return value;
    }

    QJSEngine m_engine;
    QQueue<Request> m_toPage;
    QQueue<std::function<void()>> m_toHost;
};
