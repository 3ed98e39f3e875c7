#include "tests/views/StickyNotes.h"

#include "editor/RichTextEditorCoordinator.h"
#include "shell/FontRegistration.h"
#include "shell/WithoutTypeInformation.h"
#include "sticky/StickyNoteFactory.h"
#include "tests/Patience.h"
#include "tests/views/WaitFor.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{
RichTextEditorCoordinator *coordinatorOf(const QQuickWindow *window)
{
    return itemIn(window, u"editor"_s)
        ->property("coordinator")
        .value<RichTextEditorCoordinator *>();
}
} // namespace

StickyNotes::StickyNotes(const QString &words, AppLanguage language)
    : StickyNotes(notesOf(words), language)
{
}

StickyNotes::StickyNotes(const NoteArray &notes, AppLanguage language)
{
    [[maybe_unused]] static const bool hasFonts = [] {
        registerOutfitFonts();
        return true;
    }();
    LanguageManager::shared().setLanguage(language);
    store.setNotes(notes);
    for (const Note &note : store.notes())
        m_ids << note.id;
    engine.addImportPath(u":/qt/qml"_s);
    manager.setFactory(stickyNoteFactory(engine, store, manager));
    m_other.setGeometry(2000, 1200, 100, 100);
}

StickyNotes::~StickyNotes()
{
    manager.setFactory({}); // its windows are made by the engine
}

QQuickWindow *StickyNotes::open(int index, std::optional<StickyFrame> frame)
{
    manager.open(id(index), store, nullptr, frame);
    QQuickWindow *opened = window(index);
    if (!QTest::qWaitForWindowActive(opened, longEnough))
        qFatal("The sticky window does not come up");
    return opened;
}

QQuickWindow *StickyNotes::openPage(int index)
{
    QQuickWindow *opened = open(index);
    settle(index);
    if (!waitFor([&] { return isWriting(index); }))
        qFatal("The page does not get the keyboard");
    return opened;
}

void StickyNotes::settle(int index) const
{
    const auto isShown = [this, index] {
        return coordinatorOf(window(index))->loadedNoteID() == id(index) &&
               js(u"typeof getComposedHTML === 'function' && innerHeight > 0"
                  " && document.activeElement.isContentEditable"_s,
                  index)
                   .toBool();
    };
    if (!waitFor(isShown))
        qFatal("The page does not show the note");
    // The page puts the caret into what it was given a moment later.
    (void)js(u"window.hasSettled = false;"
             "setTimeout(() => { window.hasSettled = true; }, 2 * FOCUS_DELAY); null"_s,
             index);
    if (!waitFor([&] { return js(u"window.hasSettled"_s, index).toBool(); }))
        qFatal("The page does not settle");
}

void StickyNotes::fold(int index) const
{
    controller(index).toggleCollapse();
    QTRY_COMPARE(item(u"stickyNoteView"_s, index)->height(), capsuleHeight);
}

void StickyNotes::leave()
{
    m_other.show();
    m_other.requestActivate();
    if (!QTest::qWaitForWindowActive(&m_other, longEnough))
        qFatal("The other window does not come up");
    for (QWindow *window : QGuiApplication::allWindows()) {
        if (window != &m_other && window->isVisible())
            QTest::mouseMove(window, QPoint(1, 1)); // in its shadow
    }
    QTest::mouseMove(&m_other, QPoint(50, 50));
}

StickyNoteHost &StickyNotes::host(int index) const
{
    auto *host = qobject_cast<StickyNoteHost *>(manager.window(id(index)));
    if (!host)
        qFatal("The note has no window");
    return *host;
}

QQuickWindow *StickyNotes::window(int index) const
{
    const StickyNoteHost &wanted = host(index);
    for (QWindow *window : QGuiApplication::allWindows()) {
        if (wanted.isHostedBy(window))
            return qobject_cast<QQuickWindow *>(window);
    }
    qFatal("The host has no window");
}

StickyNoteController &StickyNotes::controller(int index) const
{
    return *window(index)->property("note").value<StickyNoteController *>();
}

QQuickWindow *StickyNotes::options(int index) const
{
    for (QWindow *other : QGuiApplication::allWindows()) {
        if (other->objectName() == "stickyOptions"_L1 &&
            other->property("note").value<StickyNoteController *>() == &controller(index))
            return qobject_cast<QQuickWindow *>(other);
    }
    return nullptr;
}

QQuickWindow *StickyNotes::openOptions(int index) const
{
    click(item(u"sticky.color"_s, index));
    QQuickWindow *opened = options(index);
    if (!opened || !waitFor([&] { return QGuiApplication::focusWindow() == opened; }))
        qFatal("The options do not open");
    pictureOf(opened); // drawing puts everything into its place
    return opened;
}

WITHOUT_TYPE_INFORMATION QString StickyNotes::focusedName(int index) const
{
    const QQuickItem *item = window(index)->activeFocusItem();
    while (item && item->objectName().isEmpty())
        item = item->parentItem();
    return item ? item->objectName() : QString();
}

QVariant StickyNotes::js(const QString &script, int index) const
{
    struct Answer {
        QVariant value;
        QEventLoop loop;
        bool isThere = false;
    };
    const auto answer = std::make_shared<Answer>();
    // A page that goes away takes the question along; then there is nothing to wait for.
    std::shared_ptr<void> asked(nullptr, [answer](void *) {
        answer->isThere = true;
        answer->loop.quit();
    });
    coordinatorOf(window(index))
        ->webView()
        ->evaluate(script, [answer, asked = std::move(asked)](const QVariant &result) {
            answer->value = result;
            answer->isThere = true;
            answer->loop.quit();
        });
    QTimer::singleShot(longEnough, &answer->loop, &QEventLoop::quit);
    if (!answer->isThere)
        answer->loop.exec();
    return answer->value;
}

bool StickyNotes::isWriting(int index) const
{
    return window(index)->isActive() && focusedName(index) == "editorWebView"_L1 &&
           js(u"document.hasFocus() && typeof getComposedHTML === 'function'"
              " && document.activeElement.isContentEditable"_s,
              index)
               .toBool();
}

void StickyNotes::typeLetter(char letter, int index) const
{
    const QString before = js(u"getComposedHTML()"_s, index).toString();
    QTest::keyClick(window(index), letter);
    QVERIFY(waitFor([&] { return js(u"getComposedHTML()"_s, index).toString() != before; }));
}
