#pragma once

#include "core/NoteArray.h"

#include <QRandomGenerator>
#include <QStringList>

#include <algorithm>

/// Notes of some two kilobytes of HTML each, in words of which some are frequent and most are rare.
/// The same ones every time.
[[nodiscard]] inline NoteArray manyNotes(int count)
{
    constexpr qsizetype bodySize = 2000;
    constexpr int wordCount = 3000;
    QRandomGenerator random(2001);
    const QString letters = QStringLiteral("eaiotnzrwskcydlpmujłgbhąęóżśfćńqvxź");
    const auto lowBounded = [&](int bound) {
        return std::min(random.bounded(bound), random.bounded(bound));
    };
    QStringList words;
    for (int i = 0; i < wordCount; ++i) {
        QString word;
        for (int length = 2 + random.bounded(9); length > 0; --length)
            word += letters[lowBounded(int(letters.size()))];
        words << word;
    }
    NoteArray notes;
    for (int i = 0; i < count; ++i) {
        Note note = Note::fresh({double(random.bounded(700'000'000))});
        QString body = QStringLiteral("<h1>%1 %2</h1>").arg(words[lowBounded(wordCount)]).arg(i);
        while (body.size() < bodySize) {
            body += QStringLiteral("<p>");
            for (int word = 3 + random.bounded(20); word > 0; --word)
                body += words[lowBounded(wordCount)] + u' ';
            body += random.bounded(2) == 0 ? QStringLiteral("<b>milk</b> &amp; bread</p>")
                                           : QStringLiteral("</p>");
        }
        note.body = body;
        notes.append(note);
    }
    return notes;
}
