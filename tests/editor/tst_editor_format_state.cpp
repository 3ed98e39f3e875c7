#include "editor/EditorController.h"
#include "editor/EditorFormatState.h"
#include "editor/RichTextEditorCoordinator.h"

#include <QMetaProperty>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QStringList names{u"bold"_s,   u"italic"_s,  u"underline"_s, u"strike"_s,
                        u"bullet"_s, u"ordered"_s, u"h1"_s,        u"h2"_s,
                        u"h3"_s,     u"p"_s,       u"link"_s,      u"checklist"_s};

/// The members that are set, by name, in their order.
QStringList setMembers(const EditorFormatState &state)
{
    QStringList found;
    const QMetaObject &type = EditorFormatState::staticMetaObject;
    for (int i = 0; i < type.propertyCount(); ++i) {
        if (type.property(i).readOnGadget(&state).toBool())
            found += QString::fromLatin1(type.property(i).name());
    }
    return found;
}
} // namespace

class TestEditorFormatState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasTwelveMembersInOrder()
    {
        const QMetaObject &type = EditorFormatState::staticMetaObject;
        QCOMPARE(type.propertyCount(), 12);
        for (int i = 0; i < 12; ++i)
            QCOMPARE(QString::fromLatin1(type.property(i).name()), names[i]);
        QCOMPARE(setMembers({}), QStringList());
    }

    void eachMemberIsReadByItsName_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString &name : names)
            QTest::newRow(qPrintable(name)) << name;
    }
    void eachMemberIsReadByItsName()
    {
        QFETCH(QString, name);
        const auto alone = EditorFormatState::fromJson(u"{\"%1\":true}"_s.arg(name));
        QVERIFY(alone);
        QCOMPARE(setMembers(*alone), QStringList(name)); // the absent ones are false

        QStringList members;
        for (const QString &other : names)
            members += u"\"%1\":%2"_s.arg(other, other == name ? u"false"_s : u"true"_s);
        const auto others = EditorFormatState::fromJson(u"{%1}"_s.arg(members.join(u',')));
        QVERIFY(others);
        QStringList expected = names;
        expected.removeOne(name);
        QCOMPARE(setMembers(*others), expected);
        QVERIFY(*alone != *others);
        QVERIFY(*alone != EditorFormatState());
        QVERIFY(*alone == *EditorFormatState::fromJson(u"{\"%1\":true}"_s.arg(name)));
    }

    void reports_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isReport");
        QTest::newRow("nothing set") << u"{}"_s << true;
        QTest::newRow("unknown member") << u"{\"sub\":true,\"h1\":true}"_s << true;
        QTest::newRow("spaces") << u" { \"h1\" : true } "_s << true;
        QTest::newRow("empty") << u""_s << false;
        QTest::newRow("no JSON") << u"bold"_s << false;
        QTest::newRow("cut off") << u"{\"bold\":true"_s << false;
        QTest::newRow("more behind it") << u"{\"bold\":true}x"_s << false;
        QTest::newRow("array") << u"[true]"_s << false;
        QTest::newRow("boolean") << u"true"_s << false;
        QTest::newRow("null") << u"null"_s << false;
        QTest::newRow("number") << u"{\"bold\":1}"_s << false;
        QTest::newRow("text") << u"{\"bold\":\"true\"}"_s << false;
        QTest::newRow("null member") << u"{\"bold\":null}"_s << false;
        QTest::newRow("object member") << u"{\"bold\":{}}"_s << false;
        QTest::newRow("one wrong among right ones") << u"{\"bold\":true,\"h1\":0}"_s << false;
        QTest::newRow("a wrong one we do not know") << u"{\"bold\":true,\"sub\":0}"_s << false;
    }
    void reports()
    {
        QFETCH(QString, text);
        QTEST(EditorFormatState::fromJson(text).has_value(), "isReport");
    }

    void everyAssignmentNotifies()
    {
        EditorController controller;
        QCOMPARE(setMembers(controller.formatState()), QStringList());
        const QSignalSpy spy(&controller, &EditorController::formatStateChanged);
        const EditorFormatState bold{.bold = true};
        controller.setFormatState(bold);
        QCOMPARE(spy.size(), 1);
        QVERIFY(controller.formatState() == bold);
        controller.setFormatState(bold);
        QCOMPARE(spy.size(), 2);
        QVERIFY(controller.formatState() == bold);
    }
};

QTEST_GUILESS_MAIN(TestEditorFormatState)
#include "tst_editor_format_state.moc"
