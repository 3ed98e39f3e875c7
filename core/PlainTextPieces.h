#pragma once

#include <QString>

/// The plain text of an HTML text, from its beginning, a piece at a time: who needs only the
/// beginning of a long one, or no longer needs any, does not wait for the rest. Takes time linear
/// in the text, whatever the text holds.
class PlainTextPieces
{
public:
    /// The text must outlive this.
    explicit PlainTextPieces(QStringView html);

    [[nodiscard]] bool isAtEnd() const { return m_at == m_html.size(); }
    /// The next piece, with what divides it from those before in front. Every reference is decoded
    /// and blocks become lines. What is no text, but holds half a surrogate pair, comes out as it
    /// is.
    [[nodiscard]] QString next();

private:
    QStringView m_html;
    qsizetype m_at = 0;
    bool m_isText;
    bool m_owesLine = false; ///< a line began since the last text
    QChar m_last;            ///< of the text so far
};
