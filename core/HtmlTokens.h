#pragma once

#include <QString>

#include <span>
#include <vector>

/// A piece of an HTML text. The pieces, joined in order, are the text again, byte for byte.
struct HtmlToken {
    enum class Kind {
        text,
        startTag,
        endTag,
        verbatim, ///< comments, declarations, the content of script or style, an unfinished tag
    };
    Kind kind;
    QStringView source;
    QStringView name; ///< of tags, as written

    [[nodiscard]] bool isTag() const { return kind == Kind::startTag || kind == Kind::endTag; }
    [[nodiscard]] bool isNamed(QLatin1StringView other) const
    {
        return isTag() && name.compare(other, Qt::CaseInsensitive) == 0;
    }
    [[nodiscard]] bool isOneOf(std::span<const QLatin1StringView> names) const;
};

/// Divides a text where a browser would see its tags begin and end, so that what merely looks like
/// markup, in words or in quoted values, is told from markup. The views refer to the given text.
[[nodiscard]] std::vector<HtmlToken> htmlTokens(QStringView html);

/// Where the first piece of a text ends that can be read by itself: at a token that is such a good
/// place to begin at, about `size` characters on, else at the next one or, in a long run of words,
/// at a space. Never more than it takes: what follows is not looked at.
[[nodiscard]] qsizetype htmlPieceEnd(QStringView html, qsizetype size,
                                     bool (*isGoodBeginning)(QStringView rest));

/// An attribute inside a tag's source.
struct HtmlAttribute {
    qsizetype start; ///< includes the white space before it
    qsizetype end;
    QStringView name;
    bool isQuoted = false; ///< has a value, and that in quotes
};

[[nodiscard]] std::vector<HtmlAttribute> htmlAttributes(const HtmlToken &tag);
/// Whether what follows, up to the end tag, is text and no markup.
[[nodiscard]] bool holdsRawText(const HtmlToken &token);
[[nodiscard]] bool isHtmlSpace(QChar c);
