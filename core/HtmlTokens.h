#pragma once

#include <QString>

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
};

/// Divides a text where a browser would see its tags begin and end, so that what merely looks like
/// markup, in words or in quoted values, is told from markup. The views refer to the given text.
[[nodiscard]] std::vector<HtmlToken> htmlTokens(QStringView html);

/// An attribute inside a tag's source.
struct HtmlAttribute {
    qsizetype start; ///< includes the white space before it
    qsizetype end;
    QStringView name;
    bool isQuoted = false; ///< has a value, and that in quotes
};

[[nodiscard]] std::vector<HtmlAttribute> htmlAttributes(const HtmlToken &tag);
[[nodiscard]] bool isHtmlSpace(QChar c);
