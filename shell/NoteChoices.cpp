#include "shell/NoteChoices.h"

#include "core/NoteColor.h"
#include "core/NoteTextSize.h"

using namespace Qt::StringLiterals;

namespace
{
QString label(NoteTextSize size)
{
    switch (size) {
    case NoteTextSize::extraSmall:
        return u"X-SMALL"_s;
    case NoteTextSize::small:
        return u"SMALL"_s;
    case NoteTextSize::medium:
        return u"MEDIUM"_s;
    case NoteTextSize::big:
        return u"BIG"_s;
    }
    Q_UNREACHABLE();
}
} // namespace

QStringList NoteChoices::colors()
{
    QStringList values;
    for (const NoteColor color : allNoteColors)
        values << rawValue(color);
    return values;
}

QStringList NoteChoices::textSizes()
{
    QStringList values;
    for (const NoteTextSize size : allNoteTextSizes)
        values << rawValue(size);
    return values;
}

QStringList NoteChoices::textSizeLabels()
{
    QStringList labels;
    for (const NoteTextSize size : allNoteTextSizes)
        labels << label(size);
    return labels;
}

int NoteChoices::colorIndex(const QString &rawValue)
{
    return int(colors().indexOf(rawValue));
}

int NoteChoices::textSizeIndex(const QString &rawValue)
{
    return int(textSizes().indexOf(rawValue));
}

QColor NoteChoices::displayColor(const QString &rawValue)
{
    return displayNoteColor(rawValue);
}
