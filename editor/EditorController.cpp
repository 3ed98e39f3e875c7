#include "editor/EditorController.h"

#include "editor/RichTextEditorCoordinator.h"

#include <utility>

RichTextEditorCoordinator *EditorController::coordinator() const
{
    return m_coordinator;
}

void EditorController::setCoordinator(RichTextEditorCoordinator *coordinator)
{
    m_coordinator = coordinator;
}

void EditorController::setFormatState(const EditorFormatState &state)
{
    m_formatState = state;
    Q_EMIT formatStateChanged();
}

void EditorController::run(const EditorCommand &command)
{
    if (m_coordinator)
        m_coordinator->run(command);
}

void EditorController::runLink(const QString &url)
{
    run(EditorCommand::link(url));
}

void EditorController::requestLinkAtCaret()
{
    if (!m_coordinator) {
        Q_EMIT linkAtCaretReady({});
        return;
    }
    m_coordinator->requestLinkAtCaret([self = QPointer(this)](const QString &address) {
        if (self)
            Q_EMIT self->linkAtCaretReady(address);
    });
}

void EditorController::focusEditor()
{
    if (m_coordinator && m_coordinator->webView())
        m_coordinator->webView()->makeFirstResponder();
}

void EditorController::layOutAgain()
{
    if (m_coordinator)
        m_coordinator->layOutAgain();
}

void EditorController::handOver(const std::shared_ptr<void> &debt)
{
    if (m_coordinator)
        m_coordinator->handOver(debt);
}
