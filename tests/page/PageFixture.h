#pragma once

#include "editor/RichTextEditorCoordinator.h"

#include <QQuickView>
#include <QString>
#include <QUrl>
#include <QUuid>
#include <QVariant>

#include <memory>
#include <vector>

/// What the program asked the desktop to open, of any kind that a note could ask for.
class OpenedLinks : public QObject
{
    Q_OBJECT

public:
    OpenedLinks();

    std::vector<QUrl> urls;

public Q_SLOTS:
    void take(const QUrl &url) { urls.push_back(url); }
};

/// One editor in a window of its own, with the real page in the real engine.
///
/// Contents are written as in marks.js: "|" is the caret, "[…]" a selection, <check> a checklist,
/// ☐ and ☑ an item's box.
class PageFixture
{
public:
    struct Change {
        QUuid noteID;
        QString html;
    };

    PageFixture();

    /// Opens the window and waits until the page is there and has the keyboard.
    [[nodiscard]] bool open();
    /// As open(), with the note in it.
    [[nodiscard]] bool open(const QUuid &noteID, const QString &html);
    /// Asks for the note, as the window does when another one is selected; does not wait.
    void ask(const QUuid &noteID, const QString &html, double fontSize = 15.0);
    /// Makes this window the active one and waits until the page has the keyboard.
    [[nodiscard]] bool activate();
    /// Puts the test's notation into a page that was loaded anew.
    [[nodiscard]] bool prepare();

    /// The value of the expression in the page.
    QVariant js(const QString &script);
    QString text(const QString &script) { return js(script).toString(); }

    void load(const QString &body, const QString &title = QStringLiteral("T"));
    QString body() { return text(QStringLiteral("marks.body()")); }
    QString title() { return text(QStringLiteral("marks.title()")); }
    QString composed() { return text(QStringLiteral("getComposedHTML()")); }

    /// Presses and releases a key; returns when the page has seen both.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, const QString &text = {}, quint32 scanCode = 0);
    void type(const QString &text);
    /// Clicks the middle of the first element that the selector matches.
    void click(const QString &selector);
    /// Carries out a command of the host at once, without the delay that is made for toolbars.
    void run(const EditorCommand &command);

    [[nodiscard]] RichTextEditorCoordinator &coordinator() { return *m_coordinator; }
    [[nodiscard]] QQuickView &view() { return m_view; }
    [[nodiscard]] QQuickItem *webEngineView() const;

    /// Forgets what the page has reported and what waits to be, but for the report that follows a
    /// command.
    void forgetReports();

    /// Takes the place of the desktop: no test starts a browser.
    [[nodiscard]] static std::vector<QUrl> &openedLinks();

    std::vector<Change> changes;
    std::vector<QString> logs;
    std::vector<QString> states;

private:
    /// Waits until the page has placed its caret for good.
    [[nodiscard]] bool settle();

    QQuickView m_view;
    RichTextEditorCoordinator *m_coordinator = nullptr;
    EditorController m_controller;
};

/// A main for page tests: the platform is prepared as the program does it.
#define PLIM_PAGE_TEST_MAIN(TestClass)                                                             \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        return runPageTest(argc, argv, [](int count, char **arguments) {                           \
            TestClass test;                                                                        \
            return QTest::qExec(&test, count, arguments);                                          \
        });                                                                                        \
    }

[[nodiscard]] int runPageTest(int argc, char **argv, int (*run)(int, char **));
