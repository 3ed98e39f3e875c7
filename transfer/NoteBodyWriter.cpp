#include "transfer/NoteBodyWriter.h"

#include "transfer/HtmlInlines.h"

using namespace Qt::Literals::StringLiterals;

QString noteBody(const NoteDocument &document)
{
    const auto asItIs = [](const QString &source) { return source; };
    QString html;
    HtmlLists lists(html, HtmlLists::Nesting::besideItems);
    for (const Block &block : document.blocks) {
        if (block.kind == Block::Kind::item)
            lists.beginItem(block);
        else
            lists.closeAll();
        if (block.kind == Block::Kind::divider) {
            html += "<hr>"_L1;
            continue;
        }
        const bool isItem = block.kind == Block::Kind::item;
        const QString tag = block.headingLevel > 0 ? u"h%1"_s.arg(block.headingLevel)
                            : isItem               ? QString()
                                                   : u"p"_s;
        if (!tag.isEmpty())
            html += u'<' + tag + u'>';
        html += htmlInlines(block.inlines, asItIs);
        if (!tag.isEmpty())
            html += u"</"_s + tag + u'>';
        if (isItem)
            lists.endItem();
    }
    lists.closeAll();
    return html;
}
