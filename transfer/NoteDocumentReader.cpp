#include "transfer/NoteDocumentReader.h"

#include "transfer/DocumentBuilder.h"
#include "transfer/HtmlElements.h"
#include "transfer/HtmlNesting.h"
#include "transfer/LinkAddress.h"
#include "transfer/PlainMarkup.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace
{
QString wordsOf(const GumboNode *text)
{
    return withoutControlCharacters(QString::fromUtf8(text->v.text.text));
}

/// Walks the parsed tree without recursion.
class TreeReader
{
public:
    NoteDocument read(const GumboNode *root)
    {
        m_open.push_back({root});
        while (!m_open.empty()) {
            Frame &frame = m_open.back();
            const std::span<GumboNode *const> children = childrenOf(frame.node);
            if (frame.next == children.size())
                leave();
            else
                visit(children[frame.next++]);
        }
        return m_builder.take();
    }

private:
    struct Frame {
        const GumboNode *node;
        std::size_t next = 0;
        TextContext context = {};
        bool isChecklist = false; ///< of a list
        bool isBareChecklist =
            false;          ///< none of its items shows a box, so that all of them have one
        int unseenItem = 0; ///< the serial of an item that may not be in the document yet
    };

    void visit(const GumboNode *node)
    {
        switch (node->type) {
        case GUMBO_NODE_WHITESPACE:
            if (!isBesideItems())
                m_builder.addText(wordsOf(node), m_open.back().context);
            return;
        case GUMBO_NODE_TEXT:
        case GUMBO_NODE_CDATA:
            m_builder.addText(wordsOf(node), wordContext());
            return;
        case GUMBO_NODE_ELEMENT:
            visitElement(node);
            return;
        default:
            return;
        }
    }

    void visitElement(const GumboNode *node)
    {
        const GumboTag tag = tagOf(node);
        if (node->v.element.tag_namespace != GUMBO_NAMESPACE_HTML || hasAttribute(node, "hidden"))
            return;
        if (tag == GUMBO_TAG_BR)
            m_builder.addBreak(wordContext());
        else if (tag == GUMBO_TAG_HR)
            addDivider();
        else if (tag == GUMBO_TAG_IMG || tag == GUMBO_TAG_IMAGE)
            addPicture(node, wordContext());
        else if (!isDropped(tag))
            enter(node);
    }

    [[nodiscard]] bool isBesideItems() const
    {
        return isList(tagOf(m_open.back().node)) && m_open.back().context.itemSerial == 0;
    }

    /// Words beside the items of a list are taken for an item.
    TextContext wordContext()
    {
        if (isBesideItems())
            m_open.back().context.itemSerial = ++m_lastSerial;
        return m_open.back().context;
    }

    void addDivider()
    {
        m_builder.addDivider();
        // What follows in the same item cannot go on with it.
        for (Frame &frame : m_open) {
            frame.unseenItem = 0;
            if (frame.context.itemSerial != 0)
                frame.context.itemSerial = ++m_lastSerial;
        }
    }

    void addPicture(const GumboNode *node, const TextContext &context)
    {
        const QString source = cleanedAddress(attribute(node, "src"));
        const QString alternative = attribute(node, "alt");
        if (isHarmlessPicture(source))
            m_builder.addPicture(source, alternative, context);
        else
            m_builder.addText(alternative, context);
    }

    void enter(const GumboNode *node)
    {
        const GumboTag tag = tagOf(node);
        InlineFormats formats = m_open.back().context.formats;
        applyTag(node, formats);
        if (!applyStyle(node, formats))
            return;
        if (isBlock(tag))
            m_builder.endLine();

        Frame frame{.node = node};
        if (tag == GUMBO_TAG_LI || isList(tag)) {
            if (isList(tagOf(m_open.back().node)))
                m_open.back().context.itemSerial = 0; // the words beside the items end here
            frame.context = m_open.back().context;
            if (tag == GUMBO_TAG_LI)
                enterItem(frame);
            else
                enterList(frame);
        } else {
            frame.context = wordContextFor(tag);
        }
        frame.context.formats = formats;
        if (const int level = headingLevel(tag))
            frame.context.headingLevel = level;
        frame.context.isPreformatted |= isPreformatted(tag);
        m_open.push_back(frame);
    }

    void enterList(Frame &frame)
    {
        TextContext &context = frame.context;
        const GumboTag tag = tagOf(frame.node);
        if (context.itemSerial != 0)
            m_builder.ensureItem(context); // an item stands above its own list, though it be empty
        ++context.listDepth;
        context.listSerial = ++m_lastSerial;
        context.itemSerial = 0;
        context.headingLevel = 0;
        context.isTicked = false;
        context.marker = tag == GUMBO_TAG_OL ? Block::Marker::number : Block::Marker::bullet;
        frame.isChecklist = tag == GUMBO_TAG_UL && hasClass(frame.node, u"checklist");
        const auto showsBox = [](const GumboNode *child) { return isItem(child) && boxOf(child); };
        frame.isBareChecklist =
            frame.isChecklist && std::ranges::none_of(childrenOf(frame.node), showsBox);
    }

    void enterItem(Frame &frame)
    {
        TextContext &context = frame.context;
        if (context.listDepth == 0) { // an item without a list is one of a list all the same
            context.listDepth = 1;
            context.marker = Block::Marker::bullet;
        }
        context.itemSerial = ++m_lastSerial;
        frame.unseenItem = context.itemSerial;
        context.headingLevel = 0;
        const GumboNode *box = boxOf(frame.node);
        const Frame &list = m_open.back();
        const bool isBox =
            (box && (list.isChecklist || tagOf(box) == GUMBO_TAG_INPUT)) || list.isBareChecklist;
        if (isBox)
            context.marker = Block::Marker::box;
        context.isTicked = isBox && isTicked(frame.node, box);
    }

    /// Of an element that is neither a list nor an item.
    TextContext wordContextFor(GumboTag tag)
    {
        if (isBlock(tag) && isBesideItems())
            return m_open.back().context; // may hold items without words of its own
        return wordContext();
    }

    void leave()
    {
        const Frame frame = m_open.back();
        m_open.pop_back();
        if (m_open.empty())
            return;
        const GumboTag tag = tagOf(frame.node);
        if (frame.unseenItem != 0)
            m_builder.ensureItem(frame.context);
        if (isBlock(tag))
            m_builder.endLine();
        else if (tag == GUMBO_TAG_TD || tag == GUMBO_TAG_TH)
            m_builder.separate(frame.context);
    }

    std::vector<Frame> m_open;
    DocumentBuilder m_builder;
    int m_lastSerial = 0;
};

/// The title of a page, from its head.
QString pageTitle(const GumboNode *root)
{
    for (const GumboNode *part : childrenOf(root)) {
        if (!isElement(part) || tagOf(part) != GUMBO_TAG_HEAD)
            continue;
        for (const GumboNode *node : childrenOf(part)) {
            if (!isElement(node) || tagOf(node) != GUMBO_TAG_TITLE)
                continue;
            QString title;
            for (const GumboNode *text : childrenOf(node))
                title += wordsOf(text);
            return title.simplified();
        }
    }
    return {};
}
/// An address that goes on over many lines is written again in each of them. Once that has come to
/// more than is good for a note, the rest is left as words.
void boundLinks(NoteDocument &document, qsizetype mostLetters)
{
    qsizetype letters = 0;
    for (Block &block : document.blocks) {
        for (Inline &part : block.inlines) {
            letters += part.formats.link.size();
            if (letters > mostLetters)
                part.formats.link.clear();
        }
        if (letters > mostLetters)
            block.inlines = normalized(std::move(block.inlines));
    }
}
} // namespace

ReadHtml readHtml(const QString &html)
{
    const QByteArray bytes = withBoundedNesting(plainMarkup(html)).toUtf8();
    GumboOptions options = kGumboDefaultOptions;
    options.max_errors = 0;
    const auto destroy = [&options](GumboOutput *output) {
        gumbo_destroy_output(&options, output);
    };
    const std::unique_ptr<GumboOutput, decltype(destroy)> output(
        gumbo_parse_with_options(&options, bytes.constData(), std::size_t(bytes.size())), destroy);
    ReadHtml page{TreeReader().read(output->root), pageTitle(output->root)};
    boundLinks(page.document, 8 * html.size() + 65'536);
    return page;
}
