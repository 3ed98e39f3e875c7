#pragma once

#include "editor/RichTextEditorCoordinator.h"
#include "tests/Patience.h"
#include "tests/editor/FakeView.h"

#include <QTest>

#include <utility>

/// A note of a test, with its id as the page carries it.
struct TestNote {
    QString text; ///< the id in its canonical form
    QUuid id{text};
};

inline const TestNote noteA{QStringLiteral("AAAAAAAA-0000-4000-8000-00000000000A")};
inline const TestNote noteB{QStringLiteral("BBBBBBBB-0000-4000-8000-00000000000B")};
inline const TestNote noteC{QStringLiteral("CCCCCCCC-0000-4000-8000-00000000000C")};

/// What the coordinator handed out: note and HTML, in order.
using Changes = QList<std::pair<QUuid, QString>>;

/// A coordinator with a view that a test plays.
class EditorFixture
{
public:
    EditorFixture()
    {
        QObject::connect(&coordinator, &RichTextEditorCoordinator::change, &coordinator,
                         [this](const QUuid &id, const QString &html) {
                             changes.append({id, html});
                             if (value.noteID == id)
                                 update(id, html);
                         });
    }

    /// The host asks for the note; what comes back from the page is fed into it at once, as the
    /// store does.
    void update(const std::optional<QUuid> &noteID, const QString &html)
    {
        value.noteID = noteID;
        value.html = html;
        coordinator.update(value);
    }
    /// The page is made and loaded; what was asked for until then is forgotten.
    void load()
    {
        coordinator.setWebView(&view.seam);
        if (!QTest::qWaitFor([this] { return !view.documents.isEmpty(); }, longEnough))
            qFatal("The page was not loaded");
        view.seam.reportLoaded();
    }
    /// The note is in the page, nothing is asked, nothing was handed out.
    void showNote(const TestNote &note, const QString &html)
    {
        update(note.id, html);
        load();
        (void)view.takeLog();
    }
    [[nodiscard]] Changes takeChanges() { return std::exchange(changes, {}); }

    FakeView view;
    RichTextEditorCoordinator coordinator;
    RichTextEditor value;
    Changes changes;
};

/// The page's change message.
inline QString message(const TestNote &note, const QString &html)
{
    return QStringLiteral("{\"id\":\"%1\",\"html\":\"%2\"}").arg(note.text, html);
}
