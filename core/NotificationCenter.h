#pragma once

#include <QObject>
#include <QUuid>

class EditorCommand;
enum class AppLanguage : int;

/// Lets menus, editors, the sidebar and sticky windows talk without holding each other. A signal
/// here carries what its folders know; this floor names those types without knowing them.
class NotificationCenter : public QObject
{
    Q_OBJECT

public:
    [[nodiscard]] static NotificationCenter &shared();

Q_SIGNALS:
    /// The program is about to end: every live editor hands its unsaved text to the store.
    void plimFlushEditors();
    /// A formatting command from the menu, for the editor that has the keyboard; others ignore it.
    void plimFormat(const EditorCommand &command);
    /// The keyboard caret should go to the sidebar's search field.
    void plimFocusSearch();
    /// A sticky window wants its note shown in the main window.
    void plimSelectNote(const QUuid &noteID);
    /// Every sticky window takes its collapsed form.
    void plimCollapseAll();
    /// Every sticky window takes its full form; one that has it already draws itself anew.
    void plimExpandAll();
    /// The interface speaks another language from now on.
    void plimLanguageChanged(AppLanguage language);
};
