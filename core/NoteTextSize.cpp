#include "core/NoteTextSize.h"

using namespace Qt::Literals::StringLiterals;

QString rawValue(NoteTextSize size)
{
    switch (size) {
    case NoteTextSize::extraSmall:
        return u"extraSmall"_s;
    case NoteTextSize::small:
        return u"small"_s;
    case NoteTextSize::medium:
        return u"medium"_s;
    case NoteTextSize::big:
        return u"big"_s;
    }
    Q_UNREACHABLE();
    return {};
}

std::optional<NoteTextSize> noteTextSizeFromRawValue(QStringView text)
{
    for (const NoteTextSize size : allNoteTextSizes) {
        if (text == rawValue(size))
            return size;
    }
    return std::nullopt;
}
