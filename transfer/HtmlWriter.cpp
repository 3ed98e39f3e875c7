#include "transfer/HtmlWriter.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace
{
QString styleSheet(const QString &name)
{
    QFile file(u":/plim/transfer/"_s + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("resource %s is missing", qUtf8Printable(name));
    return QString::fromUtf8(file.readAll());
}

QString content(const NoteDocument &document, const PictureAddress &pictureAddress)
{
    QString html;
    HtmlLists lists(html, HtmlLists::Nesting::withinItems);
    for (const Block &block : document.blocks) {
        const bool isItem = block.kind == Block::Kind::item;
        if (isItem)
            lists.beginItem(block);
        else
            lists.closeAll();
        if (block.kind == Block::Kind::divider) {
            html += "<hr>\n"_L1;
            continue;
        }
        QString text = htmlInlines(block.inlines, pictureAddress);
        if (block.headingLevel > 0)
            text = u"<h%1>"_s.arg(block.headingLevel) + text + u"</h%1>"_s.arg(block.headingLevel);
        else if (isItem && block.marker == Block::Marker::box)
            text = u"<span class=\"text\">"_s + text + u"</span>"_s;
        else if (!isItem)
            text = u"<p>"_s + text + u"</p>"_s;
        html += text;
        if (isItem)
            lists.endItem();
        else
            html += u'\n';
    }
    lists.closeAll();
    return html;
}
} // namespace

QString htmlPage(const NoteDocument &document, const HtmlPage &page,
                 const PictureAddress &pictureAddress)
{
    QString style = styleSheet(u"page.css"_s);
    if (page.use == HtmlUse::printing)
        style += styleSheet(u"print.css"_s).replace("FONTS/"_L1, page.fontAddress);
    return u"<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta http-equiv=\"Content-Security-Policy\" "
           "content=\"script-src 'none'; object-src 'none'; frame-src 'none'; form-action "
           "'none'; connect-src 'none'\">\n<title>"_s +
           escapedHtml(page.title) + u"</title>\n<style>\n"_s + style +
           u"</style>\n</head>\n<body>\n"_s + content(document, pictureAddress) +
           u"</body>\n</html>\n"_s;
}
