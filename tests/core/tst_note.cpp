#include "core/Note.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr Timestamp now{800'000'000.25};

QJsonObject object(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object();
}

Note withBody(const QString &body)
{
    Note note = Note::fresh(now);
    note.body = body;
    return note;
}
} // namespace

class TestNote : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void freshNote()
    {
        const Note note = Note::fresh(now);
        QVERIFY(!note.id.isNull());
        QCOMPARE(note.title, QString());
        QCOMPARE(note.body, u"<h1><br></h1>"_s);
        QCOMPARE(note.color, u"yellow"_s);
        QCOMPARE(note.textSize, NoteTextSize::medium);
        QCOMPARE(note.isArchived, false);
        QVERIFY(note.createdAt == now);
        QVERIFY(note.updatedAt == now);
        QVERIFY(note.id != Note::fresh(now).id);
    }

    void equalityComparesEveryField()
    {
        const Note note = Note::fresh(now);
        const auto differs = [&](auto change) {
            Note other = note;
            change(other);
            return other != note;
        };
        QVERIFY(note == Note(note));
        QVERIFY(differs([](Note &other) { other.id = QUuid::createUuid(); }));
        QVERIFY(differs([](Note &other) { other.title = u"x"_s; }));
        QVERIFY(differs([](Note &other) { other.body = u"x"_s; }));
        QVERIFY(differs([](Note &other) { other.color = u"x"_s; }));
        QVERIFY(differs([](Note &other) { other.textSize = NoteTextSize::big; }));
        QVERIFY(differs([](Note &other) { other.isArchived = true; }));
        QVERIFY(differs([](Note &other) { other.createdAt = {}; }));
        QVERIFY(differs([](Note &other) { other.updatedAt = {}; }));
    }

    void absentKeysTakeDefaults_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("absent") << QByteArray("{}");
        QTest::newRow("null") << QByteArray(
            R"({"id":null,"title":null,"body":null,"color":null,"textSize":null,)"
            R"("isArchived":null,"createdAt":null,"updatedAt":null})");
        QTest::newRow("unknown keys") << QByteArray(R"({"pinned":true,"x":[1]})");
    }
    void absentKeysTakeDefaults()
    {
        QFETCH(QByteArray, json);
        const std::optional<Note> note = Note::fromJson(object(json), now);
        QVERIFY(note);
        QVERIFY(!note->id.isNull());
        QCOMPARE(note->title, QString());
        QCOMPARE(note->body, QString());
        QCOMPARE(note->color, u"yellow"_s);
        QCOMPARE(note->textSize, NoteTextSize::medium);
        QCOMPARE(note->isArchived, false);
        QVERIFY(note->createdAt == now);
        QVERIFY(note->updatedAt == now);
        QVERIFY(note->id != Note::fromJson(object(json), now)->id);
    }

    void wrongTypesFail_data()
    {
        QTest::addColumn<QByteArray>("json");
        for (const char *key : {"id", "title", "body", "color", "textSize"})
            QTest::newRow(key) << QByteArray("{\"") + key + "\":3}";
        QTest::newRow("isArchived number") << QByteArray(R"({"isArchived":1})");
        QTest::newRow("isArchived text") << QByteArray(R"({"isArchived":"true"})");
        QTest::newRow("createdAt text") << QByteArray(R"({"createdAt":"2001-01-01"})");
        QTest::newRow("updatedAt bool") << QByteArray(R"({"updatedAt":true})");
        QTest::newRow("body object") << QByteArray(R"({"body":{}})");
        for (const char *id :
             {"", "x", "{0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0}", "0F1E2D3C4B5A69788796A5B4C3D2E1F0",
              "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F",
              "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0 ",
              "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1FG", "0F1E2D3C04B5A-6978-8796-A5B4C3D2E1F0"})
            QTest::addRow("id '%s'", id) << QByteArray("{\"id\":\"") + id + "\"}";
    }
    void wrongTypesFail()
    {
        QFETCH(QByteArray, json);
        QVERIFY(!object(json).isEmpty());
        QVERIFY(!Note::fromJson(object(json), now));
    }

    void datesThatAreNotFiniteFail()
    {
        QJsonObject infinite;
        infinite[u"createdAt"_s] = std::numeric_limits<double>::infinity();
        QVERIFY(!Note::fromJson(infinite, now));
    }

    void textSizesAreReadLeniently_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<NoteTextSize>("size");
        QTest::newRow("extraSmall") << u"extraSmall"_s << NoteTextSize::extraSmall;
        QTest::newRow("small") << u"small"_s << NoteTextSize::small;
        QTest::newRow("regular") << u"regular"_s << NoteTextSize::medium;
        QTest::newRow("medium") << u"medium"_s << NoteTextSize::medium;
        QTest::newRow("big") << u"big"_s << NoteTextSize::big;
        QTest::newRow("huge") << u"huge"_s << NoteTextSize::medium;
        QTest::newRow("empty") << u""_s << NoteTextSize::medium;
    }
    void textSizesAreReadLeniently()
    {
        QFETCH(QString, text);
        QFETCH(NoteTextSize, size);
        const std::optional<Note> note = Note::fromJson({{u"textSize"_s, text}}, now);
        QVERIFY(note);
        QCOMPARE(note->textSize, size);
        QVERIFY(noteTextSizeFromRawValue(note->toJson()[u"textSize"_s].toString()) == size);
    }

    void unknownColorSurvives()
    {
        const std::optional<Note> note = Note::fromJson({{u"color"_s, u"pink"_s}}, now);
        QVERIFY(note);
        QCOMPARE(note->color, u"pink"_s);
        QCOMPARE(note->toJson()[u"color"_s].toString(), u"pink"_s);
    }

    void idIsWrittenInCapitals()
    {
        const QString lower = u"0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0"_s;
        const std::optional<Note> note = Note::fromJson({{u"id"_s, lower}}, now);
        QVERIFY(note);
        QCOMPARE(uuidText(note->id), lower.toUpper());
        QCOMPARE(note->toJson()[u"id"_s].toString(), lower.toUpper());
    }

    void everyKeyIsWritten()
    {
        QCOMPARE(Note::fresh(now).toJson().keys(),
                 (QStringList{u"body"_s, u"color"_s, u"createdAt"_s, u"id"_s, u"isArchived"_s,
                              u"textSize"_s, u"title"_s, u"updatedAt"_s}));
    }

    void headingText_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("heading");
        QTest::newRow("heading") << u"<h1>Tea &amp; <b>milk</b></h1><div>x</div>"_s
                                 << u"Tea & milk"_s;
        QTest::newRow("no heading") << u"<div>x</div>"_s << u"old title"_s;
        QTest::newRow("empty heading") << u"<h1> <br> </h1>"_s << u"old title"_s;
    }
    void headingText()
    {
        QFETCH(QString, body);
        Note note = withBody(body);
        note.title = u"old title"_s;
        QTEST(note.headingText(), "heading");
    }

    void previewText_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("preview");
        QTest::newRow("only a heading") << u"<h1>Title</h1>"_s << u"No content"_s;
        QTest::newRow("nothing") << u""_s << u"No content"_s;
        QTest::newRow("blank lines")
            << u"<h1>a</h1><div><br></div><div> </div>"_s << u"No content"_s;
        QTest::newRow("lines are joined")
            << u"<h1>T</h1><div>a</div><div>b c</div>"_s << u"a b c"_s;
        QTest::newRow("before and behind the heading")
            << u"<div>a</div><h1>T</h1><div>b</div>"_s << u"a b"_s;
        QTest::newRow("a second heading is content") << u"<h1>T</h1><h1>U</h1>"_s << u"U"_s;
        QTest::newRow("references")
            << u"<h1>T</h1><div>1 &lt; 2&nbsp;&copy;</div>"_s << u"1 < 2 ©"_s;
        QString twenty;
        QStringList sixteen;
        for (int i = 1; i <= 20; ++i) {
            twenty += u"w%1 "_s.arg(i);
            if (i <= 16)
                sixteen += u"w%1"_s.arg(i);
        }
        QTest::newRow("twenty words")
            << u"<h1>T</h1><div>"_s + twenty + u"</div>"_s << sixteen.join(u' ');
    }
    void previewText()
    {
        QFETCH(QString, body);
        QTEST(withBody(body).previewText(u"No content"_s), "preview");
    }

    void placeholderIsTheCallers()
    {
        QCOMPARE(withBody(u"<h1>Title</h1>"_s).previewText(u"Brak treści"_s), u"Brak treści"_s);
    }
};

QTEST_MAIN(TestNote)
#include "tst_note.moc"
