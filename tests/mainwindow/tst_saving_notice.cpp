#include "core/NotesJson.h"
#include "shell/LanguageManager.h"
#include "tests/Patience.h"
#include "tests/mainwindow/ContentFixture.h"

#include <QDir>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

// What a user hears of the notes' file.
class TestSavingNotice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFailingSaveIsToldAsLongAsItLasts()
    {
        ContentFixture f(u"A"_s);
        QVERIFY(f.content.savingFailsText().isEmpty());
        QSignalSpy changed(&f.content, &ContentController::savingFailsTextChanged);
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(u"Nie udało się zapisać notatek: .+"_s));
        QVERIFY(QDir(f.home.data()).removeRecursively());
        QFile obstacle(f.home.data());
        QVERIFY(obstacle.open(QIODevice::WriteOnly));
        f.store.addNote();
        QTRY_VERIFY(!f.content.savingFailsText().isEmpty());
        QVERIFY(changed.count() > 0);
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QVERIFY2(f.content.savingFailsText().contains(QRegularExpression(
                     u"^Saving has been failing since \\d\\d:\\d\\d\\. Plim keeps"_s)),
                 qPrintable(f.content.savingFailsText()));
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QVERIFY(f.content.savingFailsText().startsWith(u"Zapisywanie nie udaje się od "_s));
        QVERIFY(obstacle.remove());
        QTRY_VERIFY(f.content.savingFailsText().isEmpty());
        QVERIFY(QFile::exists(f.home.data() + u"/notes.json"_s));
    }

    void aForeignChangeIsToldOnce()
    {
        ContentFixture f(u"A"_s);
        f.store.save();
        QSignalSpy saved(&f.store, &NoteStore::saved);
        QVERIFY(saved.wait(longEnough));
        QSignalSpy told(&f.content, &ContentController::noticeRequested);
        QFile file(f.home.data() + u"/notes.json"_s);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("[]") == 2);
        file.close();
        f.store.addNote();
        QVERIFY(saved.wait(longEnough));
        QTRY_COMPARE(told.count(), 1);
        QVERIFY(told[0][1].toString().contains(u"notes.json.conflict-"_s));
        f.store.addNote();
        QVERIFY(saved.wait(longEnough));
        QCoreApplication::processEvents();
        QCOMPARE(told.count(), 1);
    }
};

QTEST_MAIN(TestSavingNotice)
#include "tst_saving_notice.moc"
