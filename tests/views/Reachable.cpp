#include "tests/views/Reachable.h"

#include "shell/WithoutTypeInformation.h"
#include "tests/views/Stage.h"

#include <functional>

using namespace Qt::StringLiterals;

namespace
{
bool isControl(QAccessible::Role role)
{
    switch (role) {
    case QAccessible::Button:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::EditableText:
    case QAccessible::ListItem:
    case QAccessible::PageTab:
    case QAccessible::Dialog:
    case QAccessible::List:
    case QAccessible::ToolBar:
    case QAccessible::PageTabList:
        return true;
    default:
        return false;
    }
}

WITHOUT_TYPE_INFORMATION void visit(QAccessibleInterface *node,
                                    const std::function<void(QAccessibleInterface *)> &look)
{
    if (!node || !node->isValid())
        return;
    look(node);
    for (int i = 0; i < node->childCount(); ++i)
        visit(node->child(i), look);
}
} // namespace

QList<QAccessibleInterface *> shownIn(QQuickWindow *window)
{
    QList<QAccessibleInterface *> shown;
    visit(QAccessible::queryAccessibleInterface(window),
          [&](QAccessibleInterface *node) WITHOUT_TYPE_INFORMATION {
              const auto *item = qobject_cast<QQuickItem *>(node->object());
              if (item && isDrawn(item) && !node->state().invisible)
                  shown << node;
          });
    return shown;
}

WITHOUT_TYPE_INFORMATION QString nameOf(QAccessibleInterface *node)
{
    return node->text(QAccessible::Name);
}

QAccessibleInterface *interfaceOf(QQuickItem *item)
{
    QAccessibleInterface *found = QAccessible::queryAccessibleInterface(item);
    if (!found)
        qFatal("%s cannot be reached", qPrintable(item->objectName()));
    return found;
}

WITHOUT_TYPE_INFORMATION QStringList namelessIn(QQuickWindow *window)
{
    QStringList nameless;
    for (QAccessibleInterface *node : shownIn(window)) {
        if (isControl(node->role()) && nameOf(node).trimmed().isEmpty())
            nameless << node->object()->objectName() +
                            QLatin1StringView(node->object()->metaObject()->className());
    }
    return nameless;
}

WITHOUT_TYPE_INFORMATION QStringList namesIn(QQuickWindow *window, QAccessible::Role role)
{
    QStringList names;
    for (QAccessibleInterface *node : shownIn(window)) {
        if (node->role() == role)
            names << nameOf(node);
    }
    return names;
}

QList<QAccessibleInterface *> buttonsIn(QQuickWindow *window)
{
    QList<QAccessibleInterface *> buttons = shownIn(window);
    buttons.removeIf([](QAccessibleInterface *node) WITHOUT_TYPE_INFORMATION {
        switch (node->role()) {
        case QAccessible::Button:
        case QAccessible::RadioButton:
        case QAccessible::CheckBox:
        case QAccessible::PageTab:
            return !qobject_cast<QQuickItem *>(node->object())->isEnabled();
        default:
            return true;
        }
    });
    return buttons;
}
