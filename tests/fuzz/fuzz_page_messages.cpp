#include "core/Note.h"
#include "editor/OpenableLink.h"
#include "editor/RichTextEditorCoordinator.h"
#include "tests/editor/FakeView.h"
#include "tests/fuzz/FuzzTarget.h"

#include <QCoreApplication>

// A page may send what it likes, in any order. The input is a conversation: its turns are divided
// by lines of "%%", and the first line of each is the handler that the rest is sent to. "answer"
// answers the oldest question of the host, "host" is a change of the note that comes from
// elsewhere, and "begin", "more" and "end:" with a handler are the pieces of a long message.

using namespace Qt::StringLiterals;

namespace
{
/// Shorter than in the program, so that inputs come to it.
constexpr qsizetype longestMessage = 300;
const QString shownText = u"A0000000-0000-4000-8000-00000000000A"_s;

class Conversation
{
public:
    Conversation()
    {
        m_coordinator.setController(&m_controller);
        m_coordinator.setImagesDirectory(scratchFolder());
        m_value.noteID = QUuid(shownText);
        m_value.html = u"<h1>Shop</h1><p>milk and tea</p>"_s;
        m_coordinator.setWebView(&m_view.seam);
        m_coordinator.update(m_value);
        m_view.seam.reportLoaded();
        QObject::connect(&m_coordinator, &RichTextEditorCoordinator::change, &m_coordinator,
                         [this](const QUuid &id, const QString &html) { take(id, html); });
        QObject::connect(
            &m_coordinator, &RichTextEditorCoordinator::linkActivated, &m_coordinator,
            [](const QUrl &url) { require(isOpenableLink(url), "only what may be opened is"); });
        m_page.setLongest(longestMessage);
        QObject::connect(&m_page, &PageMessages::received, &m_coordinator,
                         [](const QString &, const QString &body) {
                             require(body.size() <= longestMessage, "a message has its measure");
                         });
        m_said = m_value.html.size();
    }

    void say(const QString &handler, const QString &body)
    {
        m_said += body.size();
        if (handler == "answer"_L1) {
            if (!m_view.questions().isEmpty())
                m_view.answer(body);
        } else if (handler == "host"_L1) {
            m_value.html = body;
            m_coordinator.update(m_value);
        } else if (handler == "begin"_L1) {
            m_page.receiveBeginning(body);
        } else if (handler == "more"_L1) {
            m_page.receiveMiddle(body);
        } else if (handler.startsWith("end:"_L1)) {
            m_page.receiveEnd(handler.sliced(4), body);
        } else {
            m_view.post(handler, body);
        }
        require(m_page.keptSize() <= longestMessage, "no more is kept than a message may have");
        require(m_coordinator.hoveredLink().isEmpty() ||
                    isOpenableLink(m_coordinator.hoveredLink()),
                "only what may be opened is shown");
        require(m_coordinator.loadedNoteID() == m_value.noteID, "the page has no say in its note");
    }

    void end()
    {
        QCoreApplication::processEvents();
        for (const QString &script : m_view.takeLog()) {
            if (!script.startsWith("window.pictureStored"_L1))
                continue;
            require(!script.contains(u'\n') && !script.contains(QChar(0x2028)),
                    "an answer is one line of script");
            m_hasPictures = true;
        }
        if (m_hasPictures)
            emptyScratchFolder();
    }

private:
    void take(const QUuid &id, const QString &html)
    {
        require(!html.isEmpty(), "no note is emptied");
        require(html.size() <= 2 * m_said, "a note is no longer than what was said of it, twice");
        if (id == m_value.noteID) {
            m_value.html = html;
            m_coordinator.update(m_value);
        }
    }

    FakeView m_view;
    PageMessages &m_page = *qobject_cast<PageMessages *>(m_view.seam.messages());
    EditorController m_controller;
    RichTextEditorCoordinator m_coordinator;
    RichTextEditor m_value;
    qsizetype m_said = 0;
    bool m_hasPictures = false;
};
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Conversation conversation;
    for (const QString &turn : textOf(data, size).split(u"\n%%\n"_s)) {
        const qsizetype border = turn.indexOf(u'\n');
        conversation.say(turn.first(border < 0 ? turn.size() : border),
                         border < 0 ? QString() : turn.sliced(border + 1));
    }
    conversation.end();
    return 0;
}
