#include "editor/EditorToolbarModel.h"

#include "shell/LanguageManager.h"
#include "shell/Symbol.h"
#include "tests/ThrowAwayHome.h"
#include "tests/editor/EditorFixture.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

using Format = bool EditorFormatState::*;
Q_DECLARE_METATYPE(Format)

namespace
{
using Mode = QAbstractItemModelTester::FailureReportingMode;
using Model = EditorToolbarModel;

struct Fixture {
    [[nodiscard]] QVariant data(int row, int role) const { return model.index(row).data(role); }
    /// Rows that are lit.
    [[nodiscard]] QList<int> lit() const
    {
        QList<int> rows;
        for (int row = 0; row < model.rowCount(); ++row) {
            if (data(row, Model::IsLitRole).toBool())
                rows << row;
        }
        return rows;
    }
    /// The rows told as changed since the last time.
    [[nodiscard]] QList<int> takeChanges()
    {
        QList<int> rows;
        for (const auto &change : std::as_const(changed)) {
            for (int row = change[0].toModelIndex().row(); row <= change[1].toModelIndex().row();
                 ++row)
                rows << row;
        }
        changed.clear();
        return rows;
    }

    ThrowAwayHome home;
    EditorController controller;
    Model model;
    QAbstractItemModelTester tester{&model, Mode::QtTest};
    QSignalSpy changed{&model, &Model::dataChanged};
};
} // namespace

class TestEditorToolbarModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { LanguageManager::shared().setLanguage(AppLanguage::en); }

    void theButtonsFromTopToBottom_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("label");
        QTest::addColumn<bool>("isSymbol");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("polish");
        QTest::addColumn<bool>("endsGroup");
        QTest::addColumn<Format>("format");
        QTest::addColumn<QString>("script"); // empty: asks for an address
        using State = EditorFormatState;
        int row = 0;
        const auto button = [&row](const QString &label, bool isSymbol, const QString &english,
                                   const QString &polish, bool endsGroup, Format format,
                                   const QString &script) {
            QTest::newRow(qPrintable(label))
                << row++ << label << isSymbol << english << polish << endsGroup << format << script;
        };
        button(u"H1"_s, false, u"Heading 1"_s, u"Nagłówek 1"_s, false, &State::h1,
               u"window.runCommand(\"formatBlock\", \"h1\");"_s);
        button(u"H2"_s, false, u"Heading 2"_s, u"Nagłówek 2"_s, false, &State::h2,
               u"window.runCommand(\"formatBlock\", \"h2\");"_s);
        button(u"H3"_s, false, u"Heading 3"_s, u"Nagłówek 3"_s, false, &State::h3,
               u"window.runCommand(\"formatBlock\", \"h3\");"_s);
        button(u"P"_s, false, u"Paragraph"_s, u"Akapit"_s, true, &State::p,
               u"window.runCommand(\"formatBlock\", \"p\");"_s);
        button(u"bold"_s, true, u"Bold"_s, u"Pogrubienie"_s, false, &State::bold,
               u"window.runCommand(\"bold\");"_s);
        button(u"italic"_s, true, u"Italic"_s, u"Kursywa"_s, false, &State::italic,
               u"window.runCommand(\"italic\");"_s);
        button(u"underline"_s, true, u"Underline"_s, u"Podkreślenie"_s, false, &State::underline,
               u"window.runCommand(\"underline\");"_s);
        button(u"strikethrough"_s, true, u"Strikethrough"_s, u"Przekreślenie"_s, true,
               &State::strike, u"window.runCommand(\"strikeThrough\");"_s);
        button(u"list.bullet"_s, true, u"Bulleted list"_s, u"Lista punktowana"_s, false,
               &State::bullet, u"window.runCommand(\"insertUnorderedList\");"_s);
        button(u"list.number"_s, true, u"Numbered list"_s, u"Lista numerowana"_s, false,
               &State::ordered, u"window.runCommand(\"insertOrderedList\");"_s);
        button(u"checklist"_s, true, u"Checklist"_s, u"Checklista"_s, true, &State::checklist,
               u"window.toggleChecklist(null);"_s);
        button(u"link"_s, true, u"Insert link"_s, u"Wstaw link"_s, false, &State::link, QString());
        button(u"divide"_s, true, u"Divider"_s, u"Linia oddzielająca"_s, false, nullptr,
               EditorCommand(EditorCommand::Kind::divider).script());
    }
    void theButtonsFromTopToBottom()
    {
        QFETCH(int, row);
        QFETCH(QString, label);
        QFETCH(Format, format);
        QFETCH(QString, script);
        Fixture f;
        f.model.setController(&f.controller);
        QTEST(f.data(row, Model::LabelRole).toString(), "label");
        QTEST(f.data(row, Model::IsSymbolRole).toBool(), "isSymbol");
        QCOMPARE(Symbol::isKnown(label), f.data(row, Model::IsSymbolRole).toBool());
        QTEST(f.data(row, Model::EndsGroupRole).toBool(), "endsGroup");
        QTEST(f.data(row, Model::NameRole).toString(), "english");
        QCOMPARE(f.data(row, Model::HelpTextRole).toString(), label);

        if (format) {
            EditorFormatState state;
            state.*format = true;
            f.controller.setFormatState(state);
            QCOMPARE(f.lit(), QList{row});
            QCOMPARE(f.takeChanges(), QList{row});
            QCOMPARE(f.data(row, Model::HelpTextRole).toString(), label + u" • active"_s);
        }
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QTEST(f.data(row, Model::NameRole).toString(), "polish");
        QCOMPARE(f.data(row, Model::HelpTextRole).toString(),
                 format ? label + u" • aktywne"_s : label);

        EditorFixture editor;
        editor.coordinator.setController(&f.controller);
        editor.showNote(noteA, u"<h1>a</h1>"_s);
        QSignalSpy link(&f.model, &Model::linkRequested);
        f.model.press(row);
        if (script.isEmpty()) {
            QCOMPARE(link.count(), 1);
            QVERIFY(editor.view.log().isEmpty());
        } else {
            QTRY_COMPARE(editor.view.log(), QStringList({FakeView::takesKeyboard, script}));
            QCOMPARE(link.count(), 0);
        }
    }

    void thereAreThirteen()
    {
        const Fixture f;
        QCOMPARE(f.model.rowCount(), 13);
        QCOMPARE(f.model.rowCount(f.model.index(0)), 0);
        QCOMPARE(f.lit(), QList<int>());
        QVERIFY(!f.data(13, Model::LabelRole).isValid());
    }

    void onlyButtonsThatChangedAreTold()
    {
        Fixture f;
        f.model.setController(&f.controller);
        QVERIFY(f.takeChanges().isEmpty());
        EditorFormatState state;
        state.h1 = true;
        state.bold = true;
        f.controller.setFormatState(state);
        QCOMPARE(f.takeChanges(), QList({0, 4}));
        f.controller.setFormatState(state); // each report is an event, but this one is no news
        QVERIFY(f.takeChanges().isEmpty());
        state.bold = false;
        state.italic = true;
        f.controller.setFormatState(state);
        const QList<int> roles = f.changed.value(0).value(2).value<QList<int>>();
        QCOMPARE(roles, QList<int>({Model::IsLitRole, Model::HelpTextRole}));
        QCOMPARE(f.takeChanges(), QList({4, 5}));
        QCOMPARE(f.lit(), QList({0, 5}));
    }

    void anotherLanguageIsToldOfEveryButton()
    {
        Fixture f;
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(f.takeChanges().size(), 13);
    }

    void theControllersFormatsAreTakenAlong()
    {
        Fixture f;
        QSignalSpy told(&f.model, &Model::controllerChanged);
        EditorFormatState state;
        state.link = true;
        f.controller.setFormatState(state);
        f.model.setController(&f.controller);
        QCOMPARE(f.lit(), QList{11});
        EditorController other;
        f.model.setController(&other);
        QCOMPARE(f.lit(), QList<int>());
        f.model.setController(&other);
        QCOMPARE(told.count(), 2);
        state.bold = true;
        f.controller.setFormatState(state); // is nobody's any more
        QCOMPARE(f.lit(), QList<int>());
        f.model.setController(nullptr);
        QCOMPARE(told.count(), 3);
    }

    void aControllerThatIsGoneLeavesNothingLit()
    {
        Fixture f;
        auto controller = std::make_unique<EditorController>();
        f.model.setController(controller.get());
        EditorFormatState state;
        state.bold = true;
        controller->setFormatState(state);
        QCOMPARE(f.lit(), QList{4});
        controller.reset();
        QCOMPARE(f.lit(), QList<int>());
        QCOMPARE(f.model.controller(), nullptr);
        f.model.press(4);
    }

    void aPressWithoutAnEditorIsDropped()
    {
        Fixture f;
        QSignalSpy link(&f.model, &Model::linkRequested);
        f.model.press(4);
        f.model.setController(&f.controller);
        for (const int row : {4, -1, 13})
            f.model.press(row);
        QCOMPARE(link.count(), 0);
    }

    void viewsKnowTheRolesByName()
    {
        const Fixture f;
        QList<QByteArray> names = f.model.roleNames().values();
        std::ranges::sort(names);
        QCOMPARE(QByteArrayList(names).join(' '), "endsGroup helpText isLit isSymbol label name");
    }
};

QTEST_MAIN(TestEditorToolbarModel)
#include "tst_editor_toolbar_model.moc"
