#include "editor/EditorLog.h"

Q_LOGGING_CATEGORY(editorLog, "plim.editor", QtInfoMsg)
