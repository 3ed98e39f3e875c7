#include "transfer/MarkdownReader.h"

#include "core/HtmlTokens.h"
#include "transfer/BareLinks.h"
#include "transfer/HtmlInlines.h"
#include "transfer/NoteDocumentReader.h"
#include "transfer/PlainTextReader.h"

#include <md4c.h>

#include <array>
#include <iterator>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Raw tags that mean something in a note. Others would change how the HTML around them is read.
bool isTaken(const HtmlToken &tag)
{
    static constexpr std::array names{
        "a"_L1,     "b"_L1,     "strong"_L1, "i"_L1,          "em"_L1,      "u"_L1,
        "ins"_L1,   "s"_L1,     "del"_L1,    "br"_L1,         "hr"_L1,      "p"_L1,
        "h1"_L1,    "h2"_L1,    "h3"_L1,     "h4"_L1,         "h5"_L1,      "h6"_L1,
        "ul"_L1,    "ol"_L1,    "li"_L1,     "img"_L1,        "div"_L1,     "span"_L1,
        "pre"_L1,   "code"_L1,  "tr"_L1,     "td"_L1,         "th"_L1,      "table"_L1,
        "thead"_L1, "tbody"_L1, "strike"_L1, "blockquote"_L1, "details"_L1, "summary"_L1};
    return tag.isOneOf(names);
}

/// Turns the parser's events into HTML. That is read like any other, so that raw HTML gets no other
/// way into a note than a foreign page has.
class HtmlRenderer
{
public:
    explicit HtmlRenderer(qsizetype markdownLength) : m_longest(16 * markdownLength + 65'536) {}

    [[nodiscard]] QString take() { return std::move(m_html); }

    /// Whether so much has come of so little that it is not worth going on: one definition serves
    /// any number of references, and every row of a table is as wide as its first.
    [[nodiscard]] bool isTooLong() const { return m_html.size() + m_addresses > m_longest; }

    void enterBlock(MD_BLOCKTYPE type, void *detail)
    {
        if (type == MD_BLOCK_LI)
            enterItem(*static_cast<MD_BLOCK_LI_DETAIL *>(detail));
        else if (type == MD_BLOCK_HR)
            m_html += "<hr>"_L1;
        else if (const QString tag = tagOf(type, detail); !tag.isEmpty())
            m_html += u'<' + tag + u'>';
        // The first line feed in it would be left out.
        if (type == MD_BLOCK_CODE)
            m_html += u'\n';
        m_headingStart = m_html.size();
    }

    void leaveBlock(MD_BLOCKTYPE type, void *detail)
    {
        if (type == MD_BLOCK_H && m_html.size() == m_headingStart)
            m_html += "<br>"_L1; // keeps it open
        if (type == MD_BLOCK_HTML)
            takeRaw();
        else if (const QString tag = tagOf(type, detail); !tag.isEmpty())
            m_html += u"</"_s + tag + u'>';
    }

    void enterSpan(MD_SPANTYPE type, void *detail)
    {
        m_linkDepth += type == MD_SPAN_A ? 1 : 0;
        m_addresses += addressLength(type, detail);
        if (isTooLong())
            return;
        if (type == MD_SPAN_IMG) {
            const auto &image = *static_cast<MD_SPAN_IMG_DETAIL *>(detail);
            if (m_pictureDepth++ == 0)
                m_html += u"<img src=\""_s + attribute(image.src) + u"\" alt=\""_s;
        } else if (m_pictureDepth > 0) {
            return;
        } else if (type == MD_SPAN_A) {
            m_html += u"<a href=\""_s + attribute(static_cast<MD_SPAN_A_DETAIL *>(detail)->href) +
                      u"\">"_s;
        } else if (const QString tag = tagOf(type); !tag.isEmpty()) {
            m_html += u'<' + tag + u'>';
        }
    }

    void leaveSpan(MD_SPANTYPE type)
    {
        m_linkDepth -= type == MD_SPAN_A ? 1 : 0;
        if (type == MD_SPAN_IMG) {
            if (--m_pictureDepth == 0)
                m_html += "\">"_L1;
        } else if (m_pictureDepth == 0) {
            if (const QString tag = tagOf(type); !tag.isEmpty())
                m_html += u"</"_s + tag + u'>';
        }
    }

    void addText(MD_TEXTTYPE type, const QString &text)
    {
        switch (type) {
        case MD_TEXT_NULLCHAR:
            m_html += QChar::ReplacementCharacter;
            break;
        case MD_TEXT_BR:
            m_html += m_pictureDepth > 0 ? " "_L1 : "<br>"_L1;
            break;
        case MD_TEXT_SOFTBR:
            m_html += u'\n';
            break;
        case MD_TEXT_ENTITY:
            m_html += text;
            break;
        case MD_TEXT_HTML:
            if (m_pictureDepth == 0)
                m_raw += text;
            if (!m_isInRawBlock)
                takeRaw();
            break;
        case MD_TEXT_NORMAL:
            addWords(text);
            break;
        default:
            m_html += escapedHtml(text);
        }
    }

    void setInRawBlock(bool isInRawBlock) { m_isInRawBlock = isInRawBlock; }

private:
    static QString tagOf(MD_BLOCKTYPE type, void *detail)
    {
        switch (type) {
        case MD_BLOCK_QUOTE:
            return u"blockquote"_s;
        case MD_BLOCK_UL:
            return u"ul"_s;
        case MD_BLOCK_OL:
            return u"ol"_s;
        case MD_BLOCK_LI:
            return u"li"_s;
        case MD_BLOCK_H:
            return u"h%1"_s.arg(static_cast<MD_BLOCK_H_DETAIL *>(detail)->level);
        case MD_BLOCK_CODE:
            return u"pre"_s;
        case MD_BLOCK_P:
            return u"p"_s;
        case MD_BLOCK_TABLE:
            return u"table"_s;
        case MD_BLOCK_TR:
            return u"tr"_s;
        case MD_BLOCK_TH:
        case MD_BLOCK_TD:
            return u"td"_s;
        default:
            return {};
        }
    }

    static QString tagOf(MD_SPANTYPE type)
    {
        switch (type) {
        case MD_SPAN_EM:
            return u"i"_s;
        case MD_SPAN_STRONG:
            return u"b"_s;
        case MD_SPAN_DEL:
            return u"s"_s;
        case MD_SPAN_A:
            return u"a"_s;
        default:
            return {};
        }
    }

    // The parser finds bare links too, but also within the addresses of others, and loses its way.
    void addWords(const QString &text)
    {
        qsizetype written = 0;
        if (m_pictureDepth == 0 && m_linkDepth == 0) {
            for (const BareLink &link : bareLinks(text)) {
                const QStringView words = QStringView(text).sliced(link.start, link.length);
                m_html += escapedHtml(QStringView(text).sliced(written, link.start - written)) +
                          u"<a href=\""_s + escapedHtml(link.address) + u"\">"_s +
                          escapedHtml(words) + u"</a>"_s;
                written = link.start + link.length;
            }
        }
        m_html += escapedHtml(QStringView(text).sliced(written));
    }

    static qsizetype addressLength(MD_SPANTYPE type, void *detail)
    {
        if (type == MD_SPAN_A)
            return static_cast<MD_SPAN_A_DETAIL *>(detail)->href.size;
        return type == MD_SPAN_IMG ? static_cast<MD_SPAN_IMG_DETAIL *>(detail)->src.size : 0;
    }

    void enterItem(const MD_BLOCK_LI_DETAIL &item)
    {
        m_html += "<li>"_L1;
        if (item.is_task)
            m_html += item.task_mark == ' ' ? "<input type=\"checkbox\">"_L1
                                            : "<input type=\"checkbox\" checked>"_L1;
    }

    static QString attribute(const MD_ATTRIBUTE &value)
    {
        QString text;
        for (int i = 0; value.text && value.substr_offsets[i] < value.size; ++i) {
            const MD_OFFSET start = value.substr_offsets[i];
            const QString part =
                QString::fromUtf8(value.text + start, value.substr_offsets[i + 1] - start);
            if (value.substr_types[i] == MD_TEXT_ENTITY)
                text += part;
            else if (value.substr_types[i] == MD_TEXT_NULLCHAR)
                text += QChar::ReplacementCharacter;
            else
                text += escapedHtml(part);
        }
        return text;
    }

    /// What began as a comment or script ends with the raw HTML it stands in.
    void takeRaw()
    {
        const QString raw = std::exchange(m_raw, {});
        for (const HtmlToken &token : htmlTokens(raw)) {
            if (token.isTag() ? isTaken(token) : token.kind == HtmlToken::Kind::text)
                m_html += token.source;
        }
    }

    QString m_html;
    qsizetype m_longest;
    qsizetype m_addresses = 0; ///< the letters of all so far, whether written or not
    QString m_raw;
    bool m_isInRawBlock = false;
    int m_pictureDepth = 0; ///< within the words of a picture
    int m_linkDepth = 0;
    qsizetype m_headingStart = 0;
};

HtmlRenderer &rendererOf(void *userdata)
{
    return *static_cast<HtmlRenderer *>(userdata);
}

/// Other than zero ends the parsing.
int goesOn(const HtmlRenderer &renderer)
{
    return renderer.isTooLong() ? 1 : 0;
}

int enterBlock(MD_BLOCKTYPE type, void *detail, void *userdata)
{
    rendererOf(userdata).setInRawBlock(type == MD_BLOCK_HTML);
    rendererOf(userdata).enterBlock(type, detail);
    return goesOn(rendererOf(userdata));
}

int leaveBlock(MD_BLOCKTYPE type, void *detail, void *userdata)
{
    rendererOf(userdata).leaveBlock(type, detail);
    rendererOf(userdata).setInRawBlock(false);
    return goesOn(rendererOf(userdata));
}

int enterSpan(MD_SPANTYPE type, void *detail, void *userdata)
{
    rendererOf(userdata).enterSpan(type, detail);
    return goesOn(rendererOf(userdata));
}

int leaveSpan(MD_SPANTYPE type, void * /*detail*/, void *userdata)
{
    rendererOf(userdata).leaveSpan(type);
    return goesOn(rendererOf(userdata));
}

int addText(MD_TEXTTYPE type, const MD_CHAR *text, MD_SIZE size, void *userdata)
{
    rendererOf(userdata).addText(type, QString::fromUtf8(text, size));
    return goesOn(rendererOf(userdata));
}
} // namespace

NoteDocument readMarkdown(const QString &markdown)
{
    const QByteArray bytes = markdown.toUtf8();
    MD_PARSER parser{};
    parser.flags = MD_FLAG_TABLES | MD_FLAG_STRIKETHROUGH | MD_FLAG_TASKLISTS;
    parser.enter_block = enterBlock;
    parser.leave_block = leaveBlock;
    parser.enter_span = enterSpan;
    parser.leave_span = leaveSpan;
    parser.text = addText;
    HtmlRenderer renderer(bytes.size());
    if (md_parse(bytes.constData(), MD_SIZE(bytes.size()), &parser, &renderer) != 0)
        return readPlainText(markdown); // no word is lost
    return readHtml(renderer.take()).document;
}
