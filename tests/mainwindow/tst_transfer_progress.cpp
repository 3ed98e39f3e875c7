#include "mainwindow/TransferProgress.h"

#include "shell/LanguageManager.h"
#include "tests/Patience.h"
#include "tests/ThrowAwayHome.h"

#include <QSignalSpy>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

using Kind = TransferProgress::Kind;

class TestTransferProgress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_home.emplace();
        LanguageManager::shared().setLanguage(AppLanguage::en);
    }
    void cleanup() { m_home.reset(); }

    void whatTakesLongIsShown()
    {
        TransferProgress progress;
        QSignalSpy shown(&progress, &TransferProgress::isShownChanged);
        QElapsedTimer timer;
        timer.start();
        progress.begin(Kind::Export, 8);
        QVERIFY(!progress.isShown());
        QVERIFY(shown.wait(longEnough));
        QVERIFY(progress.isShown());
        QVERIFY2(timer.elapsed() >= 250, qPrintable(QString::number(timer.elapsed())));
        progress.end();
        QVERIFY(!progress.isShown());
        QCOMPARE(shown.size(), 2);
    }

    void whatIsDoneSoonIsNot()
    {
        TransferProgress progress;
        QSignalSpy shown(&progress, &TransferProgress::isShownChanged);
        progress.begin(Kind::Import, 1);
        progress.setDone(1);
        progress.end();
        QVERIFY(!shown.wait(500)); // longer than anybody is asked to wait without a word
    }

    void theShareGrows()
    {
        TransferProgress progress;
        QSignalSpy changed(&progress, &TransferProgress::shareChanged);
        QCOMPARE(progress.share(), 0.0);
        progress.begin(Kind::Export, 8);
        QCOMPARE(changed.size(), 1);
        progress.setDone(2);
        QCOMPARE(progress.share(), 0.25);
        progress.setDone(2);
        QCOMPARE(changed.size(), 2);
        progress.setDone(8);
        QCOMPARE(progress.share(), 1.0);
        progress.begin(Kind::Export, 3);
        QCOMPARE(progress.share(), 0.0);
        progress.begin(Kind::Export, 0);
        QCOMPARE(progress.share(), 0.0);
    }

    void itSaysWhatIsDone()
    {
        TransferProgress progress;
        QSignalSpy changed(&progress, &TransferProgress::shareChanged);
        progress.begin(Kind::Export, 2000);
        progress.setDone(12);
        QCOMPARE(progress.text(), u"Exporting… 12 / 2000"_s);
        progress.begin(Kind::Import, 3);
        QCOMPARE(progress.text(), u"Importing… 0 / 3"_s);
        changed.clear();
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(progress.text(), u"Importowanie… 0 / 3"_s);
        progress.begin(Kind::Export, 3);
        QCOMPARE(progress.text(), u"Eksportowanie… 0 / 3"_s);
    }

    void cancelEndsIt()
    {
        TransferProgress progress;
        QSignalSpy canceled(&progress, &TransferProgress::canceled);
        QSignalSpy shown(&progress, &TransferProgress::isShownChanged);
        bool wasShown = true;
        connect(&progress, &TransferProgress::canceled, &progress,
                [&] { wasShown = progress.isShown(); });
        progress.begin(Kind::Export, 8);
        QVERIFY(shown.wait(longEnough));
        progress.cancel();
        QCOMPARE(canceled.size(), 1);
        QVERIFY(!progress.isShown() && !wasShown);
    }

    void theEndIsNoCancellation()
    {
        TransferProgress progress;
        QSignalSpy canceled(&progress, &TransferProgress::canceled);
        progress.begin(Kind::Export, 8);
        progress.end();
        QCOMPARE(canceled.size(), 0);
    }

private:
    std::optional<ThrowAwayHome> m_home;
};

QTEST_GUILESS_MAIN(TestTransferProgress)
#include "tst_transfer_progress.moc"
