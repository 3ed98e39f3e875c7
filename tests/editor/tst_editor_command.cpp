#include "editor/EditorCommand.h"

#include <QJSEngine>
#include <QMetaEnum>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

Q_DECLARE_METATYPE(EditorCommand)

class TestEditorCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void calls_data()
    {
        using Kind = EditorCommand::Kind;
        QTest::addColumn<EditorCommand>("command");
        QTest::addColumn<QString>("script");
        const auto row = [](const char *name, const EditorCommand &command, const QString &script) {
            QTest::newRow(name) << command << script;
        };
        row("heading 1", EditorCommand::heading(1),
            u"window.runCommand(\"formatBlock\", \"h1\");"_s);
        row("heading 2", EditorCommand::heading(2),
            u"window.runCommand(\"formatBlock\", \"h2\");"_s);
        row("heading 3", EditorCommand::heading(3),
            u"window.runCommand(\"formatBlock\", \"h3\");"_s);
        row("link", EditorCommand::link(u"https://plim.org/?a=b&c"_s),
            u"window.runCommand(\"createLink\", \"https://plim.org/?a=b&c\");"_s);
        row("a link with everything", EditorCommand::link(u"a\"b\\c\r\nd\te"_s),
            u"window.runCommand(\"createLink\", \"a\\\"b\\\\c\\r\\nd\\te\");"_s);
        row("an empty link", EditorCommand::link({}),
            u"window.runCommand(\"createLink\", \"\");"_s);
        row("paragraph", Kind::paragraph, u"window.runCommand(\"formatBlock\", \"p\");"_s);
        row("bold", Kind::bold, u"window.runCommand(\"bold\");"_s);
        row("italic", Kind::italic, u"window.runCommand(\"italic\");"_s);
        row("underline", Kind::underline, u"window.runCommand(\"underline\");"_s);
        row("strikethrough", Kind::strikethrough, u"window.runCommand(\"strikeThrough\");"_s);
        row("bullets", Kind::bulletList, u"window.runCommand(\"insertUnorderedList\");"_s);
        row("numbers", Kind::numberedList, u"window.runCommand(\"insertOrderedList\");"_s);
        row("checkbox", Kind::checkbox, u"window.toggleChecklist(null);"_s);
        row("divider", Kind::divider, u"window.insertHTML(\"<hr>\");"_s);
        row("undo", Kind::undo, u"window.runCommand(\"undo\");"_s);
        row("redo", Kind::redo, u"window.runCommand(\"redo\");"_s);
    }
    void calls()
    {
        QFETCH(EditorCommand, command);
        QTEST(command.script(), "script");
    }

    void thereAreThirteenInOrder()
    {
        const QStringList names{
            u"heading"_s,   u"link"_s,          u"paragraph"_s,  u"bold"_s,         u"italic"_s,
            u"underline"_s, u"strikethrough"_s, u"bulletList"_s, u"numberedList"_s, u"checkbox"_s,
            u"divider"_s,   u"undo"_s,          u"redo"_s};
        const auto kinds = QMetaEnum::fromType<EditorCommand::Kind>();
        QCOMPARE(kinds.keyCount(), names.size());
        for (int i = 0; i < kinds.keyCount(); ++i) {
            QCOMPARE(QString::fromLatin1(kinds.key(i)), names[i]);
            QCOMPARE(kinds.value(i), i);
        }
    }

    void addressesArriveUnchanged_data()
    {
        QTest::addColumn<QString>("url");
        QTest::newRow("quote") << u"https://a.b/\"x\""_s;
        QTest::newRow("backslashes") << u"file:\\\\a\\n\\u2028\\"_s;
        QTest::newRow("line breaks") << u"a\nb\rc\r\n"_s + QChar(0x2028) + QChar(0x2029);
        QTest::newRow("out of the string") << u"\"); alert(1); (\""_s;
    }
    void addressesArriveUnchanged()
    {
        QFETCH(QString, url);
        QJSEngine engine;
        engine.evaluate(
            u"var got = null; var window = { runCommand(name, value) { got = [name, value]; } };"_s);
        const QJSValue result = engine.evaluate(EditorCommand::link(url).script());
        QVERIFY2(!result.isError(), qPrintable(result.toString()));
        QCOMPARE(engine.evaluate(u"got.length"_s).toInt(), 2);
        QCOMPARE(engine.evaluate(u"got[0]"_s).toString(), u"createLink"_s);
        QCOMPARE(engine.evaluate(u"got[1]"_s).toString(), url);
    }

    void equalityLooksAtTheWholeCommand()
    {
        QVERIFY(EditorCommand::heading(2) == EditorCommand::heading(2));
        QVERIFY(!(EditorCommand::heading(2) == EditorCommand::heading(3)));
        QVERIFY(EditorCommand::link(u"a"_s) == EditorCommand::link(u"a"_s));
        QVERIFY(!(EditorCommand::link(u"a"_s) == EditorCommand::link(u"b"_s)));
        QVERIFY(!(EditorCommand(EditorCommand::Kind::undo) ==
                  EditorCommand(EditorCommand::Kind::redo)));
    }

    void pageCalls_data()
    {
        QTest::addColumn<std::optional<QString>>("argument");
        QTest::addColumn<std::optional<QString>>("value");
        QTest::addColumn<QString>("script");
        using Text = std::optional<QString>;
        QTest::newRow("neither") << Text() << Text() << u"window.f(null);"_s;
        QTest::newRow("argument") << Text(u"a\"b"_s) << Text() << u"window.f(\"a\\\"b\");"_s;
        QTest::newRow("value") << Text() << Text(u"c"_s) << u"window.f(null, \"c\");"_s;
        QTest::newRow("both") << Text(u"a\n"_s) << Text(u"\\"_s)
                              << u"window.f(\"a\\n\", \"\\\\\");"_s;
        QTest::newRow("empty is not absent")
            << Text(u""_s) << Text(u""_s) << u"window.f(\"\", \"\");"_s;
    }
    void pageCalls()
    {
        QFETCH(std::optional<QString>, argument);
        QFETCH(std::optional<QString>, value);
        QTEST(pageCall(u"f", argument, value), "script");
    }
};

QTEST_GUILESS_MAIN(TestEditorCommand)
#include "tst_editor_command.moc"
