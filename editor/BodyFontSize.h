#pragma once

#include "core/NoteTextSize.h"

/// px, the page's base font size.
[[nodiscard]] double bodyFontSize(NoteTextSize size);
