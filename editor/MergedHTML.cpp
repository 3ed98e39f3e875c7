#include "editor/MergedHTML.h"

#include "core/HtmlTokens.h"

#include <algorithm>
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
enum class Grain { words, characters };

/// Neighbouring pieces of one text, none of them empty. Tags and character references are whole.
using Pieces = std::vector<QStringView>;

/// base[from, to) was replaced by other[otherFrom, otherTo).
struct Hunk {
    qsizetype from;
    qsizetype to;
    qsizetype otherFrom;
    qsizetype otherTo;
};

/// Texts further apart than this many pieces are taken as one large replacement.
constexpr qsizetype maxDistance = 600;

bool isWordPart(QChar c)
{
    return c.isLetterOrNumber() || c.isMark() || c.isSurrogate();
}

qsizetype referenceLength(QStringView text)
{
    qsizetype length = 1;
    while (length < text.size() && (text[length].isLetterOrNumber() || text[length] == u'#'))
        ++length;
    return length < text.size() && text[length] == u';' ? length + 1 : 1;
}

qsizetype pieceLength(QStringView text, Grain grain)
{
    if (text[0] == u'&')
        return referenceLength(text);
    if (text[0].isHighSurrogate() && text.size() > 1 && grain == Grain::characters)
        return 2;
    qsizetype length = 0;
    while (grain == Grain::words && length < text.size() && isWordPart(text[length]))
        ++length;
    return std::max<qsizetype>(length, 1);
}

Pieces piecesOf(QStringView html, Grain grain)
{
    Pieces pieces;
    for (const HtmlToken &token : htmlTokens(html)) {
        QStringView rest = token.source;
        while (token.kind == HtmlToken::Kind::text && !rest.isEmpty()) {
            const qsizetype length = pieceLength(rest, grain);
            pieces.push_back(rest.first(length));
            rest = rest.sliced(length);
        }
        if (!rest.isEmpty())
            pieces.push_back(rest);
    }
    return pieces;
}

/// The shortest way from one range of pieces to the other, found by widening the number of
/// insertions and deletions allowed; nullopt when it is too long.
std::optional<std::vector<Hunk>> shortestWay(const Pieces &base, const Pieces &other, Hunk range)
{
    const qsizetype width = range.to - range.from;
    const qsizetype height = range.otherTo - range.otherFrom;
    const qsizetype limit = std::min(width + height, maxDistance);
    std::vector<std::vector<qsizetype>> reached; // by distance, then by diagonal (x - y) + distance
    const auto reach = [&](qsizetype distance, qsizetype diagonal) {
        return reached[distance][diagonal + distance];
    };
    const auto isDown = [&](qsizetype distance, qsizetype diagonal) {
        return diagonal == -distance ||
               (diagonal != distance &&
                reach(distance - 1, diagonal - 1) < reach(distance - 1, diagonal + 1));
    };
    qsizetype distance = 0;
    for (bool isFound = false; !isFound; ++distance) {
        if (distance > limit)
            return std::nullopt;
        reached.emplace_back(2 * distance + 1, 0);
        for (qsizetype diagonal = -distance; diagonal <= distance && !isFound; diagonal += 2) {
            qsizetype x = 0;
            if (distance > 0)
                x = isDown(distance, diagonal) ? reach(distance - 1, diagonal + 1)
                                               : reach(distance - 1, diagonal - 1) + 1;
            while (x < width && x - diagonal < height &&
                   base[range.from + x] == other[range.otherFrom + x - diagonal])
                ++x;
            reached[distance][diagonal + distance] = x;
            isFound = x == width && x - diagonal == height;
        }
    }
    std::vector<Hunk> hunks;
    qsizetype x = width;
    qsizetype y = height;
    for (--distance; distance > 0; --distance) {
        const bool down = isDown(distance, x - y);
        const qsizetype diagonal = x - y + (down ? 1 : -1);
        const qsizetype fromX = reach(distance - 1, diagonal);
        const qsizetype fromY = fromX - diagonal;
        const Hunk step{range.from + fromX, range.from + fromX + (down ? 0 : 1),
                        range.otherFrom + fromY, range.otherFrom + fromY + (down ? 1 : 0)};
        if (!hunks.empty() && hunks.back().from == step.to &&
            hunks.back().otherFrom == step.otherTo) {
            hunks.back().from = step.from;
            hunks.back().otherFrom = step.otherFrom;
        } else {
            hunks.push_back(step);
        }
        x = fromX;
        y = fromY;
    }
    std::ranges::reverse(hunks);
    return hunks;
}

/// The one hunk that holds every difference; nullopt when there is none.
std::optional<Hunk> hunkBetween(const Pieces &base, const Pieces &other)
{
    const auto shared = std::ranges::mismatch(base, other);
    const qsizetype head = shared.in1 - base.begin();
    qsizetype tail = 0;
    const qsizetype most = std::min(ssize(base), ssize(other)) - head;
    while (tail < most && base[base.size() - 1 - tail] == other[other.size() - 1 - tail])
        ++tail;
    const Hunk all{head, ssize(base) - tail, head, ssize(other) - tail};
    if (all.from == all.to && all.otherFrom == all.otherTo)
        return std::nullopt;
    return all;
}

std::vector<Hunk> hunksBetween(const Pieces &base, const Pieces &other)
{
    const std::optional<Hunk> all = hunkBetween(base, other);
    if (!all)
        return {};
    return shortestWay(base, other, *all).value_or(std::vector{*all});
}

QString joined(const Pieces &pieces, qsizetype from, qsizetype to)
{
    QString text;
    for (qsizetype i = from; i < to; ++i)
        text += pieces[i];
    return text;
}

/// What a reader would miss: words and pictures.
QString wordsOf(const QString &html)
{
    QString words;
    for (const HtmlToken &token : htmlTokens(html)) {
        if (token.kind == HtmlToken::Kind::text || token.isNamed("img"_L1))
            words += token.source;
    }
    return words;
}

/// The words with what both typed into them, "abc" from "b" by way of "ab" and "bc"; nullopt when
/// either took anything away, for then a letter left over may be of quite another word.
std::optional<QString> mergedByCharacters(const QString &base, const QString &theirs,
                                          const QString &mine)
{
    const Pieces pieces = piecesOf(base, Grain::characters);
    const Pieces left = piecesOf(theirs, Grain::characters);
    const Pieces right = piecesOf(mine, Grain::characters);
    const std::optional<Hunk> leftHunk = hunkBetween(pieces, left);
    const std::optional<Hunk> rightHunk = hunkBetween(pieces, right);
    const auto isInsertion = [](const std::optional<Hunk> &hunk) {
        return hunk && hunk->from == hunk->to;
    };
    if (!isInsertion(leftHunk) || !isInsertion(rightHunk))
        return std::nullopt;
    const QString theirWords = joined(left, leftHunk->otherFrom, leftHunk->otherTo);
    const QString myWords = joined(right, rightHunk->otherFrom, rightHunk->otherTo);
    const bool areTheirsFirst = leftHunk->from <= rightHunk->from;
    const qsizetype first = std::min(leftHunk->from, rightHunk->from);
    const qsizetype second = std::max(leftHunk->from, rightHunk->from);
    return joined(pieces, 0, first) + (areTheirsFirst ? theirWords : myWords) +
           joined(pieces, first, second) + (areTheirsFirst ? myWords : theirWords) +
           joined(pieces, second, ssize(pieces));
}

/// Both sides changed the same words.
QString settled(const QString &base, const QString &theirs, const QString &mine)
{
    if (theirs == mine)
        return theirs;
    if (const auto both = mergedByCharacters(base, theirs, mine))
        return *both;
    const QString words = wordsOf(base);
    if (wordsOf(mine) == words)
        return theirs;
    if (wordsOf(theirs) == words)
        return mine;
    const bool wouldJoin = !theirs.isEmpty() && !mine.isEmpty() && isWordPart(theirs.back()) &&
                           isWordPart(mine.front());
    return wouldJoin ? theirs + u' ' + mine : theirs + mine;
}

/// One side of the merge: its changes in order, and how far they have been looked at.
struct Side {
    Side(const Pieces &base, const QString &html)
        : pieces(piecesOf(html, Grain::words)), hunks(hunksBetween(base, pieces))
    {
    }

    Pieces pieces;
    std::vector<Hunk> hunks;
    std::size_t next = 0;

    [[nodiscard]] bool isDone() const { return next == hunks.size(); }
    [[nodiscard]] qsizetype start() const { return isDone() ? PTRDIFF_MAX : hunks[next].from; }
    [[nodiscard]] bool insertsAt(qsizetype place) const
    {
        return !isDone() && hunks[next].from == place && hunks[next].to == place;
    }
    /// This side's text for base[from, to), which holds its hunks from first up to next.
    [[nodiscard]] QString textFor(qsizetype from, qsizetype to, std::size_t first) const
    {
        const qsizetype before = first == 0 ? 0 : hunks[first - 1].otherTo - hunks[first - 1].to;
        const qsizetype after = next == 0 ? 0 : hunks[next - 1].otherTo - hunks[next - 1].to;
        return joined(pieces, from + before, to + after);
    }
};
} // namespace

QString mergedHTML(const QString &base, const QString &theirs, const QString &mine)
{
    if (theirs == base || theirs == mine)
        return mine;
    if (mine == base)
        return theirs;
    const Pieces pieces = piecesOf(base, Grain::words);
    Side left(pieces, theirs);
    Side right(pieces, mine);
    QString result;
    qsizetype done = 0;
    while (!left.isDone() || !right.isDone()) {
        const std::size_t firstLeft = left.next;
        const std::size_t firstRight = right.next;
        const qsizetype from = std::min(left.start(), right.start());
        qsizetype to = from;
        // Changes that overlap are looked at together, those that merely touch one after the other.
        const auto take = [&to](Side &side) { to = std::max(to, side.hunks[side.next++].to); };
        const bool isRightFirst = right.start() == from && !left.insertsAt(from) &&
                                  (left.start() != from || right.insertsAt(from));
        take(isRightFirst ? right : left);
        while (std::min(left.start(), right.start()) < to)
            take(left.start() < to ? left : right);
        result += joined(pieces, done, from);
        const QString leftText = left.textFor(from, to, firstLeft);
        const QString rightText = right.textFor(from, to, firstRight);
        if (right.next == firstRight)
            result += leftText;
        else if (left.next == firstLeft)
            result += rightText;
        else
            result += settled(joined(pieces, from, to), leftText, rightText);
        done = to;
    }
    return result + joined(pieces, done, ssize(pieces));
}
