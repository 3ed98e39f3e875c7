#include "transfer/HtmlElements.h"

#include "transfer/LinkAddress.h"
#include "transfer/PlainMarkup.h"

#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// One declaration of a style attribute, in small letters.
struct Declaration {
    QStringView name;
    QStringView value;
};

std::vector<Declaration> declarations(QStringView style)
{
    std::vector<Declaration> found;
    for (const QStringView one : qTokenize(style, u';')) {
        const qsizetype colon = one.indexOf(u':');
        if (colon > 0)
            found.push_back({one.first(colon).trimmed(), one.sliced(colon + 1).trimmed()});
    }
    return found;
}

bool isBoldWeight(QStringView value)
{
    constexpr int semiBold = 600;
    return value.startsWith("bold"_L1) || value.toInt() >= semiBold;
}

bool isChecklistBox(const GumboNode *node)
{
    if (!isElement(node))
        return false;
    if (node->v.element.tag == GUMBO_TAG_INPUT)
        return attribute(node, "type").compare("checkbox"_L1, Qt::CaseInsensitive) == 0;
    return node->v.element.tag == GUMBO_TAG_SPAN &&
           (hasClass(node, u"chk") || attribute(node, "role") == "checkbox"_L1);
}

/// The first thing in it that a reader would see; null when there is none.
const GumboNode *firstVisible(const GumboNode *node)
{
    for (const GumboNode *child : childrenOf(node)) {
        if (child->type != GUMBO_NODE_WHITESPACE && child->type != GUMBO_NODE_COMMENT)
            return child;
    }
    return nullptr;
}
} // namespace

std::span<GumboNode *const> childrenOf(const GumboNode *node)
{
    const GumboVector &children =
        node->type == GUMBO_NODE_DOCUMENT ? node->v.document.children : node->v.element.children;
    return {reinterpret_cast<GumboNode *const *>(children.data), children.length};
}

bool isElement(const GumboNode *node)
{
    return node->type == GUMBO_NODE_ELEMENT;
}

GumboTag tagOf(const GumboNode *node)
{
    return isElement(node) ? node->v.element.tag : GUMBO_TAG_UNKNOWN;
}

QString attribute(const GumboNode *node, const char *name)
{
    const GumboAttribute *found = gumbo_get_attribute(&node->v.element.attributes, name);
    return found ? withoutControlCharacters(QString::fromUtf8(found->value)) : QString();
}

bool hasAttribute(const GumboNode *node, const char *name)
{
    return gumbo_get_attribute(&node->v.element.attributes, name) != nullptr;
}

bool hasClass(const GumboNode *node, QStringView name)
{
    const QString classes = attribute(node, "class");
    for (const QStringView one : qTokenize(QStringView(classes), u' ', Qt::SkipEmptyParts)) {
        if (one.trimmed() == name)
            return true;
    }
    return false;
}

bool isDropped(GumboTag tag)
{
    switch (tag) {
    case GUMBO_TAG_SCRIPT:
    case GUMBO_TAG_STYLE:
    case GUMBO_TAG_TEMPLATE:
    case GUMBO_TAG_HEAD:
    case GUMBO_TAG_TITLE:
    case GUMBO_TAG_NOSCRIPT:
    case GUMBO_TAG_NOEMBED:
    case GUMBO_TAG_NOFRAMES:
    case GUMBO_TAG_IFRAME:
    case GUMBO_TAG_FRAME:
    case GUMBO_TAG_FRAMESET:
    case GUMBO_TAG_OBJECT:
    case GUMBO_TAG_EMBED:
    case GUMBO_TAG_APPLET:
    case GUMBO_TAG_AUDIO:
    case GUMBO_TAG_VIDEO:
    case GUMBO_TAG_CANVAS:
    case GUMBO_TAG_MAP:
    case GUMBO_TAG_INPUT:
    case GUMBO_TAG_DATALIST:
        return true;
    default:
        return false;
    }
}

bool isBlock(GumboTag tag)
{
    switch (tag) {
    case GUMBO_TAG_HTML:
    case GUMBO_TAG_BODY:
    case GUMBO_TAG_P:
    case GUMBO_TAG_H1:
    case GUMBO_TAG_H2:
    case GUMBO_TAG_H3:
    case GUMBO_TAG_H4:
    case GUMBO_TAG_H5:
    case GUMBO_TAG_H6:
    case GUMBO_TAG_UL:
    case GUMBO_TAG_OL:
    case GUMBO_TAG_MENU:
    case GUMBO_TAG_DIR:
    case GUMBO_TAG_LI:
    case GUMBO_TAG_DIV:
    case GUMBO_TAG_CENTER:
    case GUMBO_TAG_BLOCKQUOTE:
    case GUMBO_TAG_PRE:
    case GUMBO_TAG_LISTING:
    case GUMBO_TAG_XMP:
    case GUMBO_TAG_PLAINTEXT:
    case GUMBO_TAG_TABLE:
    case GUMBO_TAG_CAPTION:
    case GUMBO_TAG_THEAD:
    case GUMBO_TAG_TBODY:
    case GUMBO_TAG_TFOOT:
    case GUMBO_TAG_TR:
    case GUMBO_TAG_SECTION:
    case GUMBO_TAG_ARTICLE:
    case GUMBO_TAG_HEADER:
    case GUMBO_TAG_FOOTER:
    case GUMBO_TAG_HGROUP:
    case GUMBO_TAG_MAIN:
    case GUMBO_TAG_ASIDE:
    case GUMBO_TAG_NAV:
    case GUMBO_TAG_ADDRESS:
    case GUMBO_TAG_FIGURE:
    case GUMBO_TAG_FIGCAPTION:
    case GUMBO_TAG_DL:
    case GUMBO_TAG_DT:
    case GUMBO_TAG_DD:
    case GUMBO_TAG_FORM:
    case GUMBO_TAG_FIELDSET:
    case GUMBO_TAG_LEGEND:
    case GUMBO_TAG_DETAILS:
    case GUMBO_TAG_SUMMARY:
    case GUMBO_TAG_OPTION:
    case GUMBO_TAG_TEXTAREA:
        return true;
    default:
        return false;
    }
}

bool isPreformatted(GumboTag tag)
{
    return tag == GUMBO_TAG_PRE || tag == GUMBO_TAG_LISTING || tag == GUMBO_TAG_XMP ||
           tag == GUMBO_TAG_PLAINTEXT || tag == GUMBO_TAG_TEXTAREA;
}

bool isList(GumboTag tag)
{
    return tag == GUMBO_TAG_UL || tag == GUMBO_TAG_OL || tag == GUMBO_TAG_MENU ||
           tag == GUMBO_TAG_DIR;
}

int headingLevel(GumboTag tag)
{
    switch (tag) {
    case GUMBO_TAG_H1:
        return 1;
    case GUMBO_TAG_H2:
        return 2;
    case GUMBO_TAG_H3:
    case GUMBO_TAG_H4:
    case GUMBO_TAG_H5:
    case GUMBO_TAG_H6:
        return 3;
    default:
        return 0;
    }
}

bool applyStyle(const GumboNode *node, InlineFormats &formats)
{
    const QString style = attribute(node, "style").toLower();
    for (const auto &[name, value] : declarations(style)) {
        if (name == "display"_L1 && value.startsWith("none"_L1))
            return false;
        if (name == "font-weight"_L1 && headingLevel(tagOf(node)) == 0)
            formats.isBold = isBoldWeight(value);
        else if (name == "font-style"_L1)
            formats.isItalic = value.startsWith("italic"_L1) || value.startsWith("oblique"_L1);
        else if (name.startsWith("text-decoration"_L1)) {
            formats.isUnderlined |= value.contains("underline"_L1);
            formats.isStruck |= value.contains("line-through"_L1);
        }
    }
    return true;
}

void applyTag(const GumboNode *node, InlineFormats &formats)
{
    switch (node->v.element.tag) {
    case GUMBO_TAG_B:
    case GUMBO_TAG_STRONG:
        formats.isBold = true;
        break;
    case GUMBO_TAG_I:
    case GUMBO_TAG_EM:
        formats.isItalic = true;
        break;
    case GUMBO_TAG_U:
    case GUMBO_TAG_INS:
        formats.isUnderlined = true;
        break;
    case GUMBO_TAG_S:
    case GUMBO_TAG_STRIKE:
    case GUMBO_TAG_DEL:
        formats.isStruck = true;
        break;
    case GUMBO_TAG_A:
        if (const QString address = cleanedAddress(attribute(node, "href"));
            isHarmlessLink(address))
            formats.link = address;
        break;
    default:
        break;
    }
}

const GumboNode *boxOf(const GumboNode *item)
{
    constexpr int deepest = 3;
    const GumboNode *node = firstVisible(item);
    for (int level = 0; node && isElement(node) && level < deepest; ++level) {
        if (isChecklistBox(node))
            return node;
        const GumboTag tag = node->v.element.tag;
        if (tag != GUMBO_TAG_P && tag != GUMBO_TAG_LABEL && tag != GUMBO_TAG_DIV)
            break;
        node = firstVisible(node);
    }
    // Stored notes may have lost the box's classes.
    const GumboNode *first = firstVisible(item);
    const bool isRemnant = first && isElement(first) && first->v.element.tag == GUMBO_TAG_SPAN &&
                           attribute(first, "contenteditable") == "false"_L1;
    return isRemnant ? first : nullptr;
}

bool isTicked(const GumboNode *item, const GumboNode *box)
{
    if (hasClass(item, u"checked"))
        return true;
    if (!box)
        return false;
    return hasClass(box, u"checked") || attribute(box, "aria-checked") == "true"_L1 ||
           (box->v.element.tag == GUMBO_TAG_INPUT && hasAttribute(box, "checked"));
}

bool isItem(const GumboNode *node)
{
    return isElement(node) && node->v.element.tag == GUMBO_TAG_LI;
}
