#include "core/NoteRepair.h"

#include "core/ImageStore.h"
#include "core/StoredHTML.h"

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Old files kept the heading apart from the body.
void moveTitleIntoBody(Note &note)
{
    if (note.title.isEmpty() || note.body.contains("<h1"_L1, Qt::CaseInsensitive))
        return;
    note.body = u"<h1>"_s + note.title.toHtmlEscaped() + u"</h1>"_s + note.body;
    note.title.clear();
}
} // namespace

Note repairedNote(Note note, const QString &imagesDirectory)
{
    note.body = sanitizeStoredHTML(note.body);
    if (MigratedHTML migrated = migrateImages(note.body, imagesDirectory); migrated.changed)
        note.body = std::move(migrated.html);
    // Not before: what looked like a heading may be gone, and the next start would find more to do.
    moveTitleIntoBody(note);
    if (note.body.trimmed().isEmpty())
        note.body = u"<h1><br></h1>"_s;
    return note;
}
