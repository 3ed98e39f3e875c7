#include "transfer/HtmlInlines.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
struct FormatTag {
    bool InlineFormats::*format;
    QLatin1StringView name;
};
constexpr FormatTag formatTags[] = {{&InlineFormats::isBold, "b"_L1},
                                    {&InlineFormats::isItalic, "i"_L1},
                                    {&InlineFormats::isUnderlined, "u"_L1},
                                    {&InlineFormats::isStruck, "s"_L1}};

/// The formats that are open, so that neighbours share what they have in common.
class FormatWriter
{
public:
    explicit FormatWriter(QString &html) : m_html(html) {}

    void setFormats(const InlineFormats &formats)
    {
        if (formats.link != m_link) {
            closeTo(0);
            if (!m_link.isEmpty())
                m_html += "</a>"_L1;
            m_link = formats.link;
            if (!m_link.isEmpty())
                m_html += u"<a href=\""_s + escapedHtml(m_link) + u"\">"_s;
        }
        std::size_t kept = 0;
        while (kept < m_open.size() && formats.*(m_open[kept]->format))
            ++kept;
        closeTo(kept);
        for (const FormatTag &tag : formatTags) {
            if (!(formats.*(tag.format)) || isOpen(tag))
                continue;
            m_html += u'<' + tag.name + u'>';
            m_open.push_back(&tag);
        }
    }

private:
    [[nodiscard]] bool isOpen(const FormatTag &tag) const
    {
        for (const FormatTag *open : m_open) {
            if (open == &tag)
                return true;
        }
        return false;
    }
    void closeTo(std::size_t count)
    {
        while (m_open.size() > count) {
            m_html += "</"_L1 + m_open.back()->name + u'>';
            m_open.pop_back();
        }
    }

    QString &m_html;
    QString m_link;
    std::vector<const FormatTag *> m_open;
};

QLatin1StringView listTag(Block::Marker marker)
{
    return marker == Block::Marker::number ? "ol"_L1 : "ul"_L1;
}
} // namespace

QString escapedHtml(QStringView text)
{
    QString escaped;
    escaped.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'&':
            escaped += "&amp;"_L1;
            break;
        case u'<':
            escaped += "&lt;"_L1;
            break;
        case u'>':
            escaped += "&gt;"_L1;
            break;
        case u'"':
            escaped += "&quot;"_L1;
            break;
        case QChar::Nbsp:
            escaped += "&nbsp;"_L1;
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

QString htmlInlines(const std::vector<Inline> &inlines, const PictureAddress &pictureAddress)
{
    QString html;
    FormatWriter formats(html);
    for (const Inline &part : inlines) {
        formats.setFormats(part.formats);
        switch (part.kind) {
        case Inline::Kind::text:
            html += escapedHtml(part.text);
            break;
        case Inline::Kind::lineBreak:
            html += "<br>"_L1;
            break;
        case Inline::Kind::picture:
            if (const QString address = pictureAddress(part.source); address.isEmpty()) {
                html += escapedHtml(part.text);
            } else {
                html += u"<img src=\""_s + escapedHtml(address) + u'"';
                if (!part.text.isEmpty())
                    html += u" alt=\""_s + escapedHtml(part.text) + u'"';
                html += u'>';
            }
            break;
        }
    }
    formats.setFormats({});
    if (inlines.empty() || inlines.back().kind == Inline::Kind::lineBreak)
        html += "<br>"_L1;
    return html;
}

void HtmlLists::beginItem(const Block &item)
{
    const auto depth = std::size_t(item.depth);
    while (m_lists.size() > depth + 1)
        closeList();
    if (m_lists.size() == depth + 1) {
        closeItem();
        if (m_lists.back().marker != item.marker || item.startsList)
            closeList();
    }
    while (m_lists.size() < depth + 1) {
        if (!m_lists.empty() && m_nesting == Nesting::besideItems)
            closeItem();
        openList(item.marker);
    }
    m_html += "<li"_L1;
    if (item.isTicked)
        m_html += " class=\"checked\""_L1;
    m_html += u'>';
    if (item.marker == Block::Marker::box) {
        m_html += "<span class=\"chk"_L1;
        m_html += item.isTicked ? " checked"_L1 : ""_L1;
        m_html += m_nesting == Nesting::besideItems ? "\" contenteditable=\"false"_L1 : ""_L1;
        m_html += "\" role=\"checkbox\" aria-checked=\""_L1;
        m_html += item.isTicked ? "true"_L1 : "false"_L1;
        m_html += "\"></span>"_L1;
    }
    m_lists.back().isItemOpen = true;
}

void HtmlLists::endItem()
{
    if (m_nesting == Nesting::besideItems)
        closeItem();
}

void HtmlLists::closeAll()
{
    while (!m_lists.empty())
        closeList();
}

void HtmlLists::openList(Block::Marker marker)
{
    if (m_nesting == Nesting::withinItems)
        m_html += u'\n';
    m_html += u'<' + listTag(marker);
    if (marker == Block::Marker::box)
        m_html += " class=\"checklist\""_L1;
    m_html += u'>';
    if (m_nesting == Nesting::withinItems)
        m_html += u'\n';
    m_lists.push_back({marker, false});
}

void HtmlLists::closeList()
{
    closeItem();
    m_html += "</"_L1 + listTag(m_lists.back().marker) + u'>';
    if (m_nesting == Nesting::withinItems)
        m_html += u'\n';
    m_lists.pop_back();
}

void HtmlLists::closeItem()
{
    if (!m_lists.back().isItemOpen)
        return;
    m_html += "</li>"_L1;
    if (m_nesting == Nesting::withinItems)
        m_html += u'\n';
    m_lists.back().isItemOpen = false;
}
