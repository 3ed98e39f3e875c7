#include "sticky/StickyNoteFactory.h"

#include "sticky/StickyLog.h"
#include "sticky/StickyNoteController.h"
#include "sticky/StickyNoteHost.h"

#include <QQmlComponent>
#include <QQuickWindow>

using namespace Qt::StringLiterals;

namespace
{
class Workshop
{
public:
    Workshop(QQmlEngine &engine, NoteStore &store, StickyNoteManager &manager)
        : m_engine(engine), m_store(store), m_manager(manager)
    {
    }

    [[nodiscard]] std::unique_ptr<StickyWindow> make(const QUuid &noteID, NoteTextSize textSize)
    {
        auto controller =
            std::make_unique<StickyNoteController>(noteID, textSize, m_store, m_manager);
        QObject::connect(controller.get(), &StickyNoteController::editedAfterDeletion, &m_manager,
                         &StickyNoteManager::editedAfterDeletion);
        std::unique_ptr<QObject> object(component().createWithInitialProperties(
            {{u"note"_s, QVariant::fromValue(controller.get())}}));
        auto *window = qobject_cast<QQuickWindow *>(object.get());
        if (!window) {
            qCWarning(stickyLog).noquote() << component().errorString();
            return {};
        }
        (void)object.release();
        return std::make_unique<StickyNoteHost>(std::move(controller),
                                                std::unique_ptr<QQuickWindow>(window), &m_keeper);
    }

private:
    // Made when the first window is: it loads the web engine's module.
    [[nodiscard]] QQmlComponent &component()
    {
        if (!m_component)
            m_component = std::make_unique<QQmlComponent>(
                &m_engine, QUrl(u"qrc:/qt/qml/Plim/Sticky/StickyNoteWindow.qml"_s));
        return *m_component;
    }

    QQmlEngine &m_engine;
    NoteStore &m_store;
    StickyNoteManager &m_manager;
    std::unique_ptr<QQmlComponent> m_component;
    QObject m_keeper;
};
} // namespace

StickyWindowFactory stickyNoteFactory(QQmlEngine &engine, NoteStore &store,
                                      StickyNoteManager &manager)
{
    return [workshop = std::make_shared<Workshop>(engine, store, manager)](const QUuid &noteID,
                                                                           NoteTextSize textSize) {
        return workshop->make(noteID, textSize);
    };
}
