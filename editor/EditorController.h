#pragma once

#include "editor/EditorCommand.h"
#include "editor/EditorFormatState.h"

#include <QObject>
#include <QPointer>
#include <qqmlregistration.h>

#include <memory>

class RichTextEditorCoordinator;

/// The handle through which toolbars and menus drive the editor of one pane and read its formats.
/// It outlives the editors that come and go under it.
class EditorController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(EditorFormatState formatState READ formatState NOTIFY formatStateChanged)

public:
    using QObject::QObject;

    [[nodiscard]] RichTextEditorCoordinator *coordinator() const;
    void setCoordinator(RichTextEditorCoordinator *coordinator);

    [[nodiscard]] const EditorFormatState &formatState() const { return m_formatState; }
    /// Notifies at every assignment: each report is an event of its own.
    void setFormatState(const EditorFormatState &state);

    /// Carried out by the attached editor; dropped when there is none.
    void run(const EditorCommand &command);
    Q_INVOKABLE void runLink(const QString &url);
    /// Answered by linkAtCaretReady, with "" when there is no link, or no page to ask.
    Q_INVOKABLE void requestLinkAtCaret();
    /// Gives the keyboard back to the attached editor.
    Q_INVOKABLE void focusEditor();
    /// See RichTextEditorCoordinator. Without an editor there is nothing to lay out, and the debt is
    /// let go of at once.
    Q_INVOKABLE void layOutAgain();
    void handOver(const std::shared_ptr<void> &debt);

Q_SIGNALS:
    void formatStateChanged();
    /// The address, as written, of the link that holds the editor's caret or selection.
    void linkAtCaretReady(const QString &address);

private:
    QPointer<RichTextEditorCoordinator> m_coordinator;
    EditorFormatState m_formatState;
};
