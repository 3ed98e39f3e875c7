// Opens the notes of a directory, puts a note on top and saves:
//
//   save_once DIRECTORY HEADING TRIES [damaged | conflict]
//
// Ends with 0 when the last try has succeeded. The calls of the saving are the ones that may fail;
// with "damaged" those of the loading as well. With "conflict" somebody else writes the file in
// between.

#include "core/JsonWriter.h"
#include "core/NoteStore.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <cstdlib>

#include <dlfcn.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
void beginFaults()
{
    using Begin = void (*)();
    if (const auto begin = reinterpret_cast<Begin>(dlsym(RTLD_DEFAULT, "faultsBegin")))
        begin();
}
} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString scenario = arguments.value(4);
    if (scenario == "damaged"_L1)
        beginFaults();
    NoteStore store(arguments.value(1));
    bool isSaved = false;
    QObject::connect(&store, &NoteStore::saved, &store, [&isSaved](bool ok) { isSaved = ok; });
    QCoreApplication::processEvents(); // loading may have saved, too
    if (scenario == "conflict"_L1) {
        QFile file(arguments.value(1) + u"/notes.json"_s);
        if (!file.open(QIODevice::WriteOnly) || file.write("[ ]") < 0)
            return 2;
        file.close();
    }
    if (scenario != "damaged"_L1)
        beginFaults();
    Note note = *store.note(store.addNote());
    note.body = u"<h1>"_s + arguments.value(2) + u"</h1>"_s +
                QString(2 * JsonWriter::pieceSize, u'x') + u"<p>end</p>"_s; // three pieces
    store.updateNote(note);
    for (int i = 0; i < std::max(1, arguments.value(3).toInt()); ++i) {
        store.flush();
        QCoreApplication::processEvents();
    }
    std::quick_exit(isSaved ? 0 : 1); // nothing at the end saves once more
}
