#include "editor/BodyFontSize.h"

#include <QtGlobal>

double bodyFontSize(NoteTextSize size)
{
    switch (size) {
    case NoteTextSize::extraSmall:
        return 12.0;
    case NoteTextSize::small:
        return 14.0;
    case NoteTextSize::medium:
        return 16.0;
    case NoteTextSize::big:
        return 19.0;
    }
    Q_UNREACHABLE();
}
