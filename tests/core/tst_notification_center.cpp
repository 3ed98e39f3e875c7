#include "core/NotificationCenter.h"

#include <QSignalSpy>
#include <QTest>

// The folders that own these types define them; here small ones stand in.
class EditorCommand
{
public:
    int level = 0;
};
enum class AppLanguage : int { first, second };

class TestNotificationCenter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneCenterIsShared()
    {
        QCOMPARE(&NotificationCenter::shared(), &NotificationCenter::shared());
    }

    void notificationsCarryTheirObjects()
    {
        NotificationCenter &center = NotificationCenter::shared();
        QSignalSpy flushes(&center, &NotificationCenter::plimFlushEditors);
        QSignalSpy searches(&center, &NotificationCenter::plimFocusSearch);
        QSignalSpy collapses(&center, &NotificationCenter::plimCollapseAll);
        QSignalSpy expansions(&center, &NotificationCenter::plimExpandAll);
        int level = 0;
        QUuid selected;
        AppLanguage language = AppLanguage::first;
        connect(&center, &NotificationCenter::plimFormat, this,
                [&](const EditorCommand &command) { level = command.level; });
        connect(&center, &NotificationCenter::plimSelectNote, this,
                [&](const QUuid &noteID) { selected = noteID; });
        connect(&center, &NotificationCenter::plimLanguageChanged, this,
                [&](AppLanguage changed) { language = changed; });

        const QUuid id = QUuid::createUuid();
        EditorCommand command;
        command.level = 2;
        Q_EMIT center.plimFlushEditors();
        Q_EMIT center.plimFormat(command);
        Q_EMIT center.plimSelectNote(id);
        Q_EMIT center.plimLanguageChanged(AppLanguage::second);
        Q_EMIT center.plimCollapseAll();

        QCOMPARE(flushes.count(), 1);
        QCOMPARE(searches.count(), 0);
        QCOMPARE(collapses.count(), 1);
        QCOMPARE(expansions.count(), 0);
        QCOMPARE(level, 2);
        QCOMPARE(selected, id);
        QCOMPARE(language, AppLanguage::second);
    }
};

QTEST_MAIN(TestNotificationCenter)
#include "tst_notification_center.moc"
