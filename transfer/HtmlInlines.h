#pragma once

#include "transfer/NoteDocument.h"

#include <functional>

/// Where a picture is found from the place of what is written; empty when it cannot be shown there.
using PictureAddress = std::function<QString(const QString &source)>;

/// A text for HTML, quoted values included; no-break spaces are named, so that they can be told.
[[nodiscard]] QString escapedHtml(QStringView text);

/// The inlines of one block as HTML. A break that ends the block gets another one behind it, or it
/// would not show, and a block without anything gets one to keep it open.
[[nodiscard]] QString htmlInlines(const std::vector<Inline> &inlines,
                                  const PictureAddress &pictureAddress);

/// The markup of lists, opened and closed as their items come.
class HtmlLists
{
public:
    /// Whether lists stand within the item above them, as HTML has it, or beside it, as in notes.
    enum class Nesting { withinItems, besideItems };

    HtmlLists(QString &html, Nesting nesting) : m_html(html), m_nesting(nesting) {}

    /// Opens the item, in the right list, up to where its content begins.
    void beginItem(const Block &item);
    void endItem();
    /// What follows is no item.
    void closeAll();

private:
    struct OpenList {
        Block::Marker marker;
        bool isItemOpen;
    };
    void openList(Block::Marker marker);
    void closeList();
    void closeItem();

    QString &m_html;
    Nesting m_nesting;
    std::vector<OpenList> m_lists;
};
