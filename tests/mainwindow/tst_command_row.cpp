#include "editor/EditorController.h"
#include "editor/EditorWebView.h"
#include "editor/RichTextEditorCoordinator.h"
#include "mainwindow/CommandKind.h"
#include "tests/ThrowAwayHome.h"

#include <QMetaEnum>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

#include <memory>

Q_IMPORT_QML_PLUGIN(Plim_EditorPlugin)
Q_IMPORT_QML_PLUGIN(Plim_MainWindowPlugin)
Q_IMPORT_QML_PLUGIN(Plim_ShellPlugin)

using namespace Qt::StringLiterals;

namespace
{
/// The row of command buttons over an editor without a page: what it would be sent is kept.
struct Row {
    Row()
    {
        coordinator.setWebView(&view);
        controller.setCoordinator(&coordinator);
        engine.addImportPath(u":/qt/qml"_s);
        QQmlComponent component(&engine, QUrl(u"qrc:/qt/qml/Plim/MainWindow/CommandRow.qml"_s));
        row.reset(qobject_cast<QQuickItem *>(component.createWithInitialProperties(
            {{u"controller"_s, QVariant::fromValue(&controller)}, {u"width"_s, 600}})));
        if (!row)
            qFatal("%s", qPrintable(component.errorString()));
    }

    /// Every item in it, its own children before theirs.
    [[nodiscard]] QList<QQuickItem *> items() const
    {
        QList<QQuickItem *> items{row.get()};
        for (qsizetype i = 0; i < items.size(); ++i)
            items << items[i]->childItems();
        return items;
    }
    [[nodiscard]] QQuickItem *item(const QString &name) const
    {
        for (QQuickItem *item : items()) {
            if (item->objectName() == name)
                return item;
        }
        qFatal("There is no %s", qPrintable(name));
    }

    ThrowAwayHome home;
    EditorWebView view;
    RichTextEditorCoordinator coordinator;
    EditorController controller;
    QQmlEngine engine;
    std::unique_ptr<QQuickItem> row;
    QSignalSpy sent{&view, &EditorWebView::scriptRequestedWithoutResult};
};
} // namespace

class TestCommandRow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    /// What is typed after the link was given up belongs into the note.
    void closedLinkRowGivesTheKeyboardBack()
    {
        Row row;
        QSignalSpy focus(&row.view, &EditorWebView::focusRequested);
        auto *field = row.item(u"linkField"_s);
        QMetaObject::invokeMethod(row.item(u"link"_s), "clicked");
        QVERIFY(field->parentItem()->isVisible());
        field->setProperty("text", u"half an address"_s);
        QMetaObject::invokeMethod(row.item(u"link"_s), "clicked");
        QVERIFY(!field->parentItem()->isVisible());
        QCOMPARE(focus.size(), 1);
        QMetaObject::invokeMethod(row.item(u"link"_s), "clicked");
        QCOMPARE(field->property("text").toString(), u"https://"_s); // a new link starts anew
    }

    void commandsAreNamedAsTheEditorNamesThem()
    {
        const auto names = QMetaEnum::fromType<CommandKinds::CommandKind>();
        const auto kinds = QMetaEnum::fromType<EditorCommand::Kind>();
        for (int i = 0; i < names.keyCount(); ++i)
            QCOMPARE(QByteArray(names.key(i)).toLower(),
                     QByteArray(kinds.valueToKey(names.value(i))).toLower());
        QCOMPARE(names.keyCount(),
                 kinds.keyCount() - 2); // headings and links carry more than a name
    }

    void aButtonSendsItsCommand_data()
    {
        QTest::addColumn<EditorCommand>("command");
        QTest::newRow("heading1") << EditorCommand::heading(1);
        QTest::newRow("heading2") << EditorCommand::heading(2);
        QTest::newRow("heading3") << EditorCommand::heading(3);
        const auto kinds = QMetaEnum::fromType<EditorCommand::Kind>();
        for (int i = 0; i < kinds.keyCount(); ++i) {
            const auto kind = EditorCommand::Kind(kinds.value(i));
            if (kind != EditorCommand::Kind::heading && kind != EditorCommand::Kind::link)
                QTest::newRow(kinds.key(i)) << EditorCommand(kind);
        }
    }
    void aButtonSendsItsCommand()
    {
        QFETCH(EditorCommand, command);
        Row row;
        auto *button = row.item(QString::fromLatin1(QTest::currentDataTag()));
        QMetaObject::invokeMethod(button, "clicked");
        QTRY_COMPARE(row.sent.count(), 1);
        QCOMPARE(row.sent[0][0].toString(), command.script());
    }

    void aLinkAsksForItsAddressFirst()
    {
        Row row;
        auto *field = row.item(u"linkField"_s);
        QMetaObject::invokeMethod(row.item(u"link"_s), "clicked");
        QVERIFY(field->parentItem()->property("visible").toBool());
        QCOMPARE(field->property("text").toString(), u"https://"_s);
        field->setProperty("text", u"https://example.org/a"_s);
        QMetaObject::invokeMethod(field, "accepted");
        QTRY_COMPARE(row.sent.count(), 1);
        QCOMPARE(row.sent[0][0].toString(),
                 EditorCommand::link(u"https://example.org/a"_s).script());
        QVERIFY(!field->parentItem()->property("visible").toBool());
    }

    void theFormatsAtTheCaretAreLit()
    {
        Row row;
        const auto lit = [&] {
            QStringList lit;
            for (const auto *button : row.items()) {
                if (button->property("isLit").toBool())
                    lit << button->objectName();
            }
            lit.sort();
            return lit;
        };
        QCOMPARE(lit(), QStringList());
        EditorFormatState state;
        state.bold = state.h2 = state.ordered = state.checklist = true;
        row.controller.setFormatState(state);
        QCOMPARE(lit(), (QStringList{u"bold"_s, u"checkbox"_s, u"heading2"_s, u"numberedList"_s}));
        row.controller.setFormatState({});
        QCOMPARE(lit(), QStringList());
    }
};

QTEST_MAIN(TestCommandRow)
#include "tst_command_row.moc"
