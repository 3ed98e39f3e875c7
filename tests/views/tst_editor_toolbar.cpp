#include "editor/EditorController.h"
#include "editor/RichTextEditorCoordinator.h"
#include "shell/HelpTip.h"
#include "shell/LanguageManager.h"
#include "shell/Symbol.h"
#include "tests/views/Stage.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray view = R"(
    property EditorController controller: EditorController { objectName: "controller" }
    EditorToolbar { objectName: "toolbar"; x: 20; y: 10; controller: Window.window.controller }
)";

const QStringList labels{u"H1"_s,          u"H2"_s,          u"H3"_s,        u"P"_s,
                         u"bold"_s,        u"italic"_s,      u"underline"_s, u"strikethrough"_s,
                         u"list.bullet"_s, u"list.number"_s, u"checklist"_s, u"link"_s,
                         u"divide"_s};

struct Toolbar : Stage {
    Toolbar() : Stage(view, QSize(400, 560))
    {
        LanguageManager::shared().setLanguage(AppLanguage::en);
        moveTo(window(), QPoint(380, 540));
    }

    [[nodiscard]] EditorController *controller() const
    {
        return window()->property("controller").value<EditorController *>();
    }
    [[nodiscard]] QQuickItem *tool(const QString &label) const { return item(u"tool."_s + label); }
    /// The colour with which a button's text or symbol is drawn.
    [[nodiscard]] QColor ink(const QString &label) const
    {
        return tool(label)->property("ink").value<QColor>();
    }
};
} // namespace

class TestEditorToolbar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void buttonsStandInTheirOrder()
    {
        const Toolbar w;
        qreal bottom = 0;
        QList<int> gapsAfter;
        for (qsizetype i = 0; i < labels.size(); ++i) {
            const QRectF frame = frameOf(w.tool(labels[i]));
            QVERIFY(frame.top() >= bottom);
            if (i > 0 && frame.top() > bottom)
                gapsAfter << int(i);
            bottom = frame.bottom();
        }
        QCOMPARE(gapsAfter, (QList<int>{4, 8, 11}));
    }

    void everySymbolIsKnown()
    {
        const Toolbar w;
        int count = 0;
        visitItems(w.item(u"toolbar"_s), [&](QQuickItem *item) {
            const auto *symbol = qobject_cast<Symbol *>(item);
            if (!symbol || !symbol->isVisible())
                return;
            ++count;
            QVERIFY2(Symbol::isKnown(symbol->name()), qPrintable(symbol->name()));
        });
        QCOMPARE(count, 9);
        QCOMPARE(textsIn(w.item(u"toolbar"_s)), (QStringList{u"H1"_s, u"H2"_s, u"H3"_s, u"P"_s}));
    }

    void aFormatOfTheCaretIsLit()
    {
        const Toolbar w;
        const auto opacity = [&](const QString &label) {
            return qRound(w.ink(label).alphaF() * 100);
        };
        for (const QString &label : labels)
            QCOMPARE(opacity(label), 55);
        EditorFormatState state;
        state.bold = true;
        state.h2 = true;
        w.controller()->setFormatState(state);
        for (const QString &label : labels)
            QCOMPARE(opacity(label), label == u"bold" || label == u"H2" ? 90 : 55);
        w.controller()->setFormatState({});
        QCOMPARE(opacity(u"bold"_s), 55);
    }

    void litButtonsHaveAGround()
    {
        const Toolbar w;
        const QPoint place = frameOf(w.tool(u"bold"_s)).topLeft().toPoint() + QPoint(8, 6);
        const auto ground = [&] { return pictureOf(w.window()).pixelColor(place); };
        const QColor unlit = ground();
        EditorFormatState state;
        state.bold = true;
        w.controller()->setFormatState(state);
        QTRY_VERIFY(ground() != unlit);
        w.controller()->setFormatState({});
        QTRY_COMPARE(ground(), unlit);
    }

    void theTipNamesTheButtonAndSaysWhetherItIsLit()
    {
        const Toolbar w;
        HelpTip &tip = HelpTip::shared();
        hover(w.tool(u"bold"_s));
        QTRY_VERIFY(tip.isShown());
        QCOMPARE(tip.text(), u"bold"_s);
        EditorFormatState state;
        state.bold = true;
        w.controller()->setFormatState(state);
        QCOMPARE(tip.text(), u"bold • active"_s);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(tip.text(), u"bold • aktywne"_s);
        moveTo(w.window(), QPoint(380, 540));
        QTRY_VERIFY(!tip.isShown());
    }

    void theLinkButtonAsksForAnAddress()
    {
        const Toolbar w;
        QSignalSpy asked(w.item(u"toolbar"_s), SIGNAL(linkRequested()));
        for (const QString &label : labels)
            click(w.tool(label));
        QCOMPARE(asked.size(), 1);
    }

    void arrowsGoFromButtonToButton()
    {
        const Toolbar w;
        w.tool(u"H1"_s)->forceActiveFocus(Qt::TabFocusReason);
        press(w.window(), Qt::Key_Up); // there is nothing above
        QVERIFY(w.tool(u"H1"_s)->hasActiveFocus());
        for (const QString &label : labels.mid(1)) {
            press(w.window(), Qt::Key_Down);
            QVERIFY2(w.tool(label)->hasActiveFocus(), qPrintable(label));
        }
        press(w.window(), Qt::Key_Down); // nor below
        QVERIFY(w.tool(u"divide"_s)->hasActiveFocus());
        press(w.window(), Qt::Key_Up);
        QVERIFY(w.tool(u"link"_s)->hasActiveFocus());
        QSignalSpy asked(w.item(u"toolbar"_s), SIGNAL(linkRequested()));
        press(w.window(), Qt::Key_Return);
        press(w.window(), Qt::Key_Space);
        QCOMPARE(asked.size(), 2);
    }
};

QTEST_MAIN(TestEditorToolbar)
#include "tst_editor_toolbar.moc"
