#include "core/app/InfoWindows.h"

#include "sticky/WindowHolder.h"

#include <QLoggingCategory>
#include <QQmlComponent>

#include <memory>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(infoLog, "plim.app")

InfoWindows::InfoWindows(QQmlEngine &engine, const QString &notesFolder, QObject *parent)
    : QObject(parent), m_engine(engine), m_info(notesFolder)
{
}

InfoWindows::~InfoWindows()
{
    delete m_about;
    delete m_shortcuts;
}

void InfoWindows::showAbout()
{
    show(m_about, u"AboutWindow.qml"_s, {{u"info"_s, QVariant::fromValue(&m_info)}});
}

void InfoWindows::showShortcuts()
{
    show(m_shortcuts, u"ShortcutsWindow.qml"_s, {{u"commands"_s, QVariant::fromValue(m_commands)}});
}

void InfoWindows::show(QPointer<QQuickWindow> &window, const QString &file,
                       const QVariantMap &properties)
{
    if (!window) {
        QQmlComponent component(&m_engine, QUrl(u"qrc:/qt/qml/Plim/MainWindow/"_s + file));
        std::unique_ptr<QObject> made(component.createWithInitialProperties(properties));
        window = qobject_cast<QQuickWindow *>(made.get());
        if (!window) {
            qCWarning(infoLog).noquote() << "Plim:" << component.errorString();
            return;
        }
        made.release()->setParent(this);
        QWindow *main = WindowHolder::shared().window;
        if (main && main->isVisible())
            window->setPosition(main->geometry().center() - window->geometry().center() +
                                window->position());
        connect(window, &QWindow::visibleChanged, window, [window = window.data()](bool isVisible) {
            if (!isVisible)
                window->deleteLater();
        });
    }
    window->show();
    window->raise();
    window->requestActivate();
}
