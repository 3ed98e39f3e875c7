#pragma once

#include "editor/EditorCommand.h"

#include <QObject>
#include <qqmlregistration.h>

namespace CommandKinds
{
Q_NAMESPACE
QML_NAMED_ELEMENT(CommandKind)

/// The editor's commands as views name them: QML knows enumerators by a capital only.
enum class CommandKind {
    Paragraph = int(EditorCommand::Kind::paragraph),
    Bold = int(EditorCommand::Kind::bold),
    Italic = int(EditorCommand::Kind::italic),
    Underline = int(EditorCommand::Kind::underline),
    Strikethrough = int(EditorCommand::Kind::strikethrough),
    BulletList = int(EditorCommand::Kind::bulletList),
    NumberedList = int(EditorCommand::Kind::numberedList),
    Checkbox = int(EditorCommand::Kind::checkbox),
    Divider = int(EditorCommand::Kind::divider),
    Undo = int(EditorCommand::Kind::undo),
    Redo = int(EditorCommand::Kind::redo),
};
Q_ENUM_NS(CommandKind)
} // namespace CommandKinds
