#include "tests/views/Stage.h"

#include "shell/SystemPreferences.h"
#include "tests/Patience.h"
#include "tests/views/SteadyTime.h"

#include <QDBusVariant>
#include <QGuiApplication>
#include <QImage>
#include <QPointer>
#include <QQmlComponent>
#include <QTest>
#include <QWheelEvent>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(Plim_EditorPlugin)
Q_IMPORT_QML_PLUGIN(Plim_MainWindowPlugin)
Q_IMPORT_QML_PLUGIN(Plim_ShellPlugin)
Q_IMPORT_QML_PLUGIN(Plim_StickyPlugin)

using namespace Qt::StringLiterals;

namespace
{
QQuickItem *find(QQuickItem *root, const QString &name)
{
    if (root->objectName() == name)
        return root;
    for (QQuickItem *child : root->childItems()) {
        if (QQuickItem *found = find(child, name))
            return found;
    }
    return nullptr;
}

/// Rows and columns place what is in them when the window is drawn next, which may not have been
/// yet since the item came up: a click would go to where it was before.
void putInPlace(QQuickItem *item)
{
    if (item->window()->isExposed())
        pictureOf(item->window());
}
} // namespace

void visitItems(QQuickItem *root, const std::function<void(QQuickItem *)> &visit)
{
    visit(root);
    for (QQuickItem *child : root->childItems())
        visitItems(child, visit);
}

QQuickItem *itemIn(const QQuickWindow *window, const QString &name)
{
    return itemIn(window->contentItem(), name);
}

QQuickItem *itemIn(QQuickItem *root, const QString &name)
{
    QQuickItem *found = find(root, name);
    if (!found)
        qFatal("There is no %s", qPrintable(name));
    return found;
}

bool hasItem(const QQuickWindow *window, const QString &name)
{
    return find(window->contentItem(), name) != nullptr;
}

QPoint middleOf(const QQuickItem *item)
{
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

QRectF frameOf(const QQuickItem *item)
{
    return item->mapRectToScene(QRectF(QPointF(0, 0), item->size()));
}

qreal opacityOf(const QQuickItem *item)
{
    qreal opacity = 1;
    for (; item; item = item->parentItem())
        opacity *= item->opacity();
    return opacity;
}

bool isDrawn(const QQuickItem *item)
{
    return item->isVisible() && opacityOf(item) > 0 && item->width() > 0 && item->height() > 0;
}

QStringList textsIn(QQuickItem *root)
{
    QStringList texts;
    visitItems(root, [&](QQuickItem *item) {
        if (item->inherits("QQuickText") && isDrawn(item))
            texts << item->property("text").toString();
    });
    return texts;
}

QImage pictureOf(QQuickWindow *window)
{
    return window->grabWindow();
}

void click(QQuickItem *item)
{
    putInPlace(item);
    QTest::mouseClick(item->window(), Qt::LeftButton, {}, middleOf(item));
}

void hover(QQuickItem *item)
{
    putInPlace(item);
    moveTo(item->window(), middleOf(item));
}

// By two moves, as a pointer does that comes from somewhere.
void moveTo(QQuickWindow *window, QPoint place)
{
    QTest::mouseMove(window, place - QPoint(1, 1));
    QTest::mouseMove(window, place);
}

void press(QQuickWindow *window, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(window, key, modifiers);
}

void type(QQuickWindow *window, const QString &text)
{
    for (const QChar letter : text)
        QTest::keyClick(window, letter.toLatin1());
}

void turnWheel(QQuickWindow *window, QPoint place, int notches)
{
    QWheelEvent event(place, window->mapToGlobal(place), QPoint(), QPoint(0, 120 * notches),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QGuiApplication::sendEvent(window, &event);
}

void setMoving(bool isMoving)
{
    const bool isTold = QMetaObject::invokeMethod(
        &SystemPreferences::shared(), "follow", Q_ARG(QString, u"org.gnome.desktop.interface"_s),
        Q_ARG(QString, u"enable-animations"_s), Q_ARG(QDBusVariant, QDBusVariant(isMoving)));
    if (!isTold || SystemPreferences::shared().reducesMotion() == isMoving)
        qFatal("The preferences do not follow the desktop");
    static QPointer<SteadyTime> time;
    if (!isMoving)
        delete time;
    else if (!time)
        time = new SteadyTime(QCoreApplication::instance());
}

void forgetKeyboard(QQuickWindow *window)
{
    QTest::mouseClick(window, Qt::LeftButton, {}, QPoint(window->width() - 1, 0));
}

Stage::Stage(const QByteArray &views, QSize size)
{
    m_engine.addImportPath(u":/qt/qml"_s);
    const QByteArray document =
        "import QtQuick\nimport QtQuick.Templates as T\nimport Plim.Editor\n"
        "import Plim.MainWindow\nimport Plim.Shell\nimport Plim.Sticky\n"
        "Window { color: Theme.emptyPane; width: " +
        QByteArray::number(size.width()) + "; height: " + QByteArray::number(size.height()) + "\n" +
        views + "\n}";
    QQmlComponent component(&m_engine);
    component.setData(document, QUrl(u"qrc:/stage.qml"_s));
    m_window.reset(qobject_cast<QQuickWindow *>(component.create()));
    if (!m_window)
        qFatal("%s", qPrintable(component.errorString()));
    m_window->show();
    m_window->requestActivate();
    if (!QTest::qWaitForWindowActive(m_window.get(), longEnough))
        qFatal("The window does not come up");
}

Stage::~Stage() = default;

QObject *Stage::object(const QString &name) const
{
    auto *found = m_window->findChild<QObject *>(name);
    if (!found)
        qFatal("There is no %s", qPrintable(name));
    return found;
}
