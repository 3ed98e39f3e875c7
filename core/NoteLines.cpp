#include "core/NoteLines.h"

namespace
{
constexpr qsizetype lineCharacters = 1000;
} // namespace

QString lineOf(const QString &text)
{
    if (text.size() <= lineCharacters)
        return text;
    const bool cutsPair = text[lineCharacters - 1].isHighSurrogate();
    return text.left(cutsPair ? lineCharacters - 1 : lineCharacters);
}

QString headingLine(const Note &note)
{
    return lineOf(note.headingText());
}
