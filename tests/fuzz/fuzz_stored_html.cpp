#include "core/HtmlTokens.h"
#include "core/NoteRepair.h"
#include "core/StoredHTML.h"
#include "tests/fuzz/FuzzTarget.h"

// A stored note is repaired as the store does when it loads: its markup, its pictures, its title.
// What stands before the first U+0001 is the title.

namespace
{
/// The words of a text. Where two of them meet, a repair may put a space or a comment.
QString wordsOf(const QString &html)
{
    QString words;
    for (const HtmlToken &token : htmlTokens(html)) {
        if (token.kind == HtmlToken::Kind::text)
            words += token.source;
    }
    return words.remove(u' ');
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = textOf(data, size);
    const qsizetype border = text.indexOf(QChar(1));
    Note note;
    note.title = border < 0 ? QString() : text.first(border);
    note.body = text.sliced(border + 1);

    const QString repairedBody = sanitizeStoredHTML(note.body);
    require(repairedBody.size() <= 2 * note.body.size(), "repairing at most doubles a text");
    require(wordsOf(repairedBody) == wordsOf(note.body), "repairing keeps every word");

    const Note repaired = repairedNote(note, scratchFolder());
    // An inline picture of few letters becomes the address of a file; a title's quotes, references.
    constexpr qsizetype shortestPicture = 28;
    const qsizetype addresses = text.size() / shortestPicture * (scratchFolder().size() + 64);
    require(repaired.body.size() <= 6 * text.size() + addresses + 16, "a repaired note is bounded");
    require(repairedNote(repaired, scratchFolder()) == repaired,
            "repairing twice is repairing once");
    if (repaired.body.contains(scratchFolder()))
        emptyScratchFolder();
    return 0;
}
