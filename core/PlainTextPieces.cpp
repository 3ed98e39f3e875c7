#include "core/PlainTextPieces.h"

#include "core/HtmlTokens.h"
#include "core/UsualHTML.h"
#include "core/WellFormed.h"

#include <QTextDocument>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
// The importer takes longer for each further item of a list and each further level of nesting, so
// that it must never get a long text whole. Most notes are one piece.
constexpr qsizetype pieceSize = 8192;

/// Note HTML must not make a conversion read files: style sheets and pictures stay unloaded.
class PlainTextDocument : public QTextDocument
{
protected:
    QVariant loadResource(int, const QUrl &) override { return {}; }
};

QString plainText(QStringView html)
{
    if (auto text = plainTextOfUsualHTML(html))
        return *std::move(text);
    QString source = html.toString();
    source.remove(QChar::Null); // would end the text for the importer
    PlainTextDocument document;
    document.setUndoRedoEnabled(false);
    document.setHtml(source);
    // No-break spaces come out as plain ones, so that words divide where they look divided.
    QString text = document.toPlainText();
    text.remove(QChar::ObjectReplacementCharacter); // the place of a picture
    return text;
}

/// Whether what is here, the beginning or the end of a block, begins a line.
bool beginsLine(QStringView html)
{
    static constexpr std::array names{"p"_L1,  "div"_L1, "li"_L1,  "ul"_L1, "ol"_L1,
                                      "h1"_L1, "h2"_L1,  "h3"_L1,  "h4"_L1, "h5"_L1,
                                      "h6"_L1, "hr"_L1,  "pre"_L1, "tr"_L1, "blockquote"_L1};
    if (!html.startsWith(u'<'))
        return false;
    constexpr qsizetype longestName = 10;
    const qsizetype start = html.startsWith("</"_L1) ? 2 : 1;
    qsizetype end = start;
    while (end < html.size() && end <= start + longestName && html[end].isLetterOrNumber())
        ++end;
    const QStringView name = html.sliced(start, end - start);
    return std::ranges::any_of(names, [name](QLatin1StringView each) {
        return name.compare(each, Qt::CaseInsensitive) == 0;
    });
}
} // namespace

PlainTextPieces::PlainTextPieces(QStringView html) : m_html(html), m_isText(isWellFormed(html)) {}

QString PlainTextPieces::next()
{
    const QStringView rest = m_html.sliced(m_at);
    if (!m_isText) {
        m_at = m_html.size();
        return rest.toString();
    }
    const bool isBehindSpace = m_at > 0 && (isHtmlSpace(m_html[m_at - 1]) || isHtmlSpace(rest[0]));
    m_owesLine |= beginsLine(rest);
    const qsizetype end = htmlPieceEnd(rest, pieceSize, beginsLine);
    m_at += end;
    QString text = plainText(rest.first(end));
    if (text.isEmpty())
        return text;
    const bool wasLineOwed = std::exchange(m_owesLine, false);
    const QChar before = std::exchange(m_last, text.back());
    if (before.isNull()) // nothing that there would be something to divide from
        return text;
    if (wasLineOwed)
        text.prepend(u'\n');
    else if (isBehindSpace && !before.isSpace())
        text.prepend(u' ');
    return text;
}
