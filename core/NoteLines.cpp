#include "core/NoteLines.h"

#include "core/PlainTextPieces.h"
#include "core/String+HTML.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr qsizetype lineCharacters = 1000;

constexpr int previewWords = 16;
constexpr int previewPieces = 8;              ///< of the text, in which the words are looked for
constexpr qsizetype previewCharacters = 1000; ///< more than the words take, unless one never ends

/// Gives the words one after the other, while they are wanted; returns whether all of them were.
bool forEachWord(QStringView text, const auto &isWanted)
{
    for (const QStringView line : qTokenize(text, u'\n')) {
        for (const QStringView word : qTokenize(line, u' ', Qt::SkipEmptyParts)) {
            if (!isWanted(word))
                return false;
        }
    }
    return true;
}

/// Whether the preview needs no more of the text than these pieces of it. The last word may go on
/// behind them.
bool fillsPreview(QStringView text, int pieces)
{
    int words = 0;
    return pieces >= previewPieces || text.size() > 2 * previewCharacters ||
           !forEachWord(text, [&words](QStringView) { return ++words <= previewWords; });
}

QString previewOf(QStringView text)
{
    QString preview;
    int words = 0;
    forEachWord(text.trimmed(), [&](QStringView word) {
        if (++words > previewWords || preview.size() > previewCharacters)
            return false;
        if (!preview.isEmpty())
            preview += u' ';
        preview += word;
        return true;
    });
    return lineOf(preview);
}

QString allText(QStringView html, const std::function<bool()> &isWanted)
{
    QString text;
    for (PlainTextPieces pieces(html); !pieces.isAtEnd() && isWanted();)
        text += pieces.next();
    return text;
}
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

QString previewLine(const Note &note)
{
    QString below = note.body;
    if (const std::optional<FirstHeading> heading = firstHeading(note.body))
        below.remove(heading->start, heading->length);
    QString text;
    PlainTextPieces pieces(below);
    for (int read = 0; !pieces.isAtEnd() && !fillsPreview(text, read); ++read)
        text += pieces.next();
    return previewOf(text);
}

NotePlainText notePlainText(const Note &note, const std::function<bool()> &isWanted)
{
    NotePlainText result{.heading = note.headingText(), .preview = {}, .all = {}};
    const std::optional<FirstHeading> heading = firstHeading(note.body);
    if (heading && heading->start > 0) { // what is below it is also above it
        result.preview = previewLine(note);
        result.all = allText(note.body, isWanted);
        return result;
    }
    const QStringView body(note.body);
    const qsizetype end = heading ? heading->length : 0;
    result.all = allText(body.first(end), isWanted);
    if (!result.all.isEmpty())
        result.all += u'\n';
    const qsizetype start = result.all.size();
    const auto below = [&] { return QStringView(result.all).sliced(start); };

    bool hasPreview = false;
    int read = 0;
    for (PlainTextPieces pieces(body.sliced(end)); !pieces.isAtEnd() && isWanted(); ++read) {
        if (!hasPreview && fillsPreview(below(), read)) {
            hasPreview = true;
            result.preview = previewOf(below());
        }
        result.all += pieces.next();
    }
    if (!hasPreview)
        result.preview = previewOf(below());
    return result;
}
