#include "shell/L10n.h"
#include "tests/Patience.h"
#include "tests/views/MainWindow.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

using Kind = TransferProgress::Kind;

namespace
{
/// The main window while something is on its way.
struct Transfer : MainWindow {
    explicit Transfer(AppLanguage language = AppLanguage::en, QSize size = QSize(1100, 700))
        : MainWindow(u"A B"_s, size, language)
    {
    }

    void begin(Kind kind, int total)
    {
        progress.begin(kind, total);
        if (!QTest::qWaitFor([this] { return isOpen(); }, longEnough))
            qFatal("No progress is shown");
    }
    [[nodiscard]] QObject *dialog() const { return object(u"transferDialog"_s); }
    [[nodiscard]] bool isOpen() const { return dialog()->property("opened").toBool(); }
    [[nodiscard]] bool isGone() const { return !dialog()->property("visible").toBool(); }
    [[nodiscard]] qreal barWidth() const { return item(u"progressBar"_s)->width(); }
    [[nodiscard]] qreal wholeWidth() const { return item(u"progressBar"_s)->parentItem()->width(); }
    [[nodiscard]] QStringList texts() const { return textsIn(window()->contentItem()); }

    TransferProgress &progress = *content.transferProgress();
    QSignalSpy canceled{&progress, &TransferProgress::canceled};
};

/// Every text in the dialog is as wide as it needs, and lies in the window.
void compareNothingCut(const Transfer &w, const QStringList &texts)
{
    const QRectF window(QPointF(0, 0), QSizeF(w.window()->size()));
    for (const QString &text : texts) {
        bool isFound = false;
        visitItems(w.window()->contentItem(), [&](QQuickItem *item) {
            if (item->property("text").toString() != text || !item->property("truncated").isValid())
                return;
            isFound = true;
            QVERIFY2(!item->property("truncated").toBool(), qPrintable(text));
            QVERIFY2(item->property("contentWidth").toReal() <= item->width() + 0.5,
                     qPrintable(text));
            QVERIFY2(window.contains(frameOf(item)), qPrintable(text));
        });
        QVERIFY2(isFound, qPrintable(text));
    }
}
} // namespace

/// What the main window shows of exports and imports.
class TestTransferDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void theBarGrows()
    {
        Transfer w;
        w.begin(Kind::Export, 2000);
        QVERIFY(w.wholeWidth() > 200);
        qreal before = w.barWidth();
        QVERIFY(before > 0 && before < w.wholeWidth() / 10);
        for (const int done : {500, 1000, 2000}) {
            w.progress.setDone(done);
            QVERIFY(w.barWidth() > std::exchange(before, w.barWidth()));
            QVERIFY(w.texts().contains(u"Exporting… %1 / 2000"_s.arg(done)));
        }
        QCOMPARE(w.barWidth(), w.wholeWidth());
        w.progress.end();
        QTRY_VERIFY(w.isGone());
        QCOMPARE(w.canceled.size(), 0);
    }

    void cancelStopsIt_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"button", "Return", "Esc", "beside"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }
    void cancelStopsIt()
    {
        QFETCH(QString, way);
        Transfer w;
        w.begin(Kind::Import, 100);
        QTRY_VERIFY(w.item(u"cancelTransfer"_s)->hasActiveFocus());
        if (way == "button"_L1)
            click(w.item(u"cancelTransfer"_s));
        else if (way == "beside"_L1)
            QTest::mouseClick(w.window(), Qt::LeftButton, {},
                              QPoint(30, w.window()->height() - 30));
        else
            press(w.window(), way == "Esc"_L1 ? Qt::Key_Escape : Qt::Key_Return);
        if (way == "beside"_L1) { // too easily done by the way
            QCOMPARE(w.canceled.size(), 0);
            QVERIFY(w.isOpen());
            return;
        }
        QTRY_VERIFY(w.isGone());
        QCOMPARE(w.canceled.size(), 1);
        QVERIFY(!w.progress.isShown());
        w.begin(Kind::Export, 3); // and it is there for the next one
    }

    void nothingIsCutInEitherLanguage_data()
    {
        QTest::addColumn<AppLanguage>("language");
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("button");
        QTest::newRow("Polish export")
            << AppLanguage::pl << Kind::Export << u"Eksportowanie… 99999 / 99999"_s << u"Anuluj"_s;
        QTest::newRow("Polish import")
            << AppLanguage::pl << Kind::Import << u"Importowanie… 99999 / 99999"_s << u"Anuluj"_s;
        QTest::newRow("English export")
            << AppLanguage::en << Kind::Export << u"Exporting… 99999 / 99999"_s << u"Cancel"_s;
    }
    void nothingIsCutInEitherLanguage()
    {
        QFETCH(AppLanguage, language);
        QFETCH(Kind, kind);
        QFETCH(QString, title);
        QFETCH(QString, button);
        Transfer w(language, QSize(700, 400));
        w.begin(kind, 99999);
        w.progress.setDone(99999);
        compareNothingCut(w, {title, button});
    }

    void aNoticeWithALongPathIsNotCut()
    {
        for (const auto language : {AppLanguage::pl, AppLanguage::en}) {
            Transfer w(language, QSize(800, 500));
            const QString path = u"/home/somebody/"_s + QString(u"averylongname"_s).repeated(8);
            Q_EMIT w.content.noticeRequested(L10n::exportFailed(),
                                             L10n::cannotWriteTo() + u'\n' + path);
            QTRY_VERIFY(w.object(u"noticeDialog"_s)->property("opened").toBool());
            compareNothingCut(w, {L10n::exportFailed(), L10n::cannotWriteTo() + u'\n' + path});
            click(w.item(u"closeNotice"_s));
            QTRY_VERIFY(!w.object(u"noticeDialog"_s)->property("visible").toBool());
        }
    }

    void theBarBelowOffersTheFolder()
    {
        for (const auto language : {AppLanguage::pl, AppLanguage::en}) {
            Transfer w(language);
            w.content.offerExported(8, w.home.documents());
            QTRY_VERIFY(isDrawn(w.item(u"undoBar"_s)));
            const bool isPolish = language == AppLanguage::pl;
            QCOMPARE(
                textsIn(w.item(u"undoBar"_s)),
                (QStringList{isPolish ? u"Wyeksportowano: 8 notatek —"_s : u"Exported: 8 notes —"_s,
                             isPolish ? u"Otwórz folder"_s : u"Open folder"_s}));
        }
    }

    void anImportIsTakenBackInTheBar()
    {
        Transfer w;
        w.content.addImported({noteNamed(u"N"_s), noteNamed(u"M"_s)});
        QTRY_COMPARE(w.drawnRows(), u"N M A B"_s);
        QCOMPARE(w.openNote(), u"N"_s);
        QTRY_VERIFY(isDrawn(w.item(u"undoBar"_s)));
        QVERIFY(textsIn(w.item(u"undoBar"_s)).contains(u"Imported: 2 notes —"_s));
        click(w.item(u"undoDelete"_s));
        QTRY_COMPARE(w.drawnRows(), u"A B"_s);
    }
};

QTEST_MAIN(TestTransferDialog)
#include "tst_transfer_dialog.moc"
