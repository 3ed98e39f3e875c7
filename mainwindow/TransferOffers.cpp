#include "mainwindow/TransferOffers.h"

#include "core/String+HTML.h"
#include "shell/L10n.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace
{
/// What somebody may have written: the page tidies markup by itself.
QString wordsOf(const Note &note)
{
    return fastStrippingHTML(note.body).simplified();
}
} // namespace

ImportUndo::ImportUndo(NoteStore &store, std::chrono::milliseconds offerTime, QObject *parent)
    : UndoOffer(offerTime, parent), m_store(store)
{
}

QString ImportUndo::text() const
{
    return L10n::imported() + u": "_s + L10n::noteCount(m_count);
}

void ImportUndo::offer(const QSet<QUuid> &noteIDs)
{
    m_texts.clear();
    for (const QUuid &noteID : noteIDs) {
        if (const Note *note = m_store.note(noteID))
            m_texts.insert(noteID, wordsOf(*note));
    }
    m_count = int(noteIDs.size());
    begin();
}

void ImportUndo::takeBack()
{
    QSet<QUuid> untouched;
    for (auto text = m_texts.cbegin(); text != m_texts.cend(); ++text) {
        const Note *note = m_store.note(text.key());
        if (note && wordsOf(*note) == text.value())
            untouched.insert(text.key());
    }
    m_store.deleteNotes(untouched);
}

void ImportUndo::forget()
{
    m_texts.clear();
}

ExportedOffer::ExportedOffer(std::chrono::milliseconds offerTime, QObject *parent)
    : UndoOffer(offerTime, parent)
{
}

QString ExportedOffer::text() const
{
    return L10n::exported() + u": "_s + L10n::noteCount(m_count);
}

QString ExportedOffer::actionText() const
{
    return L10n::openFolder();
}

void ExportedOffer::offer(int count, const QString &path)
{
    const QFileInfo info(path);
    m_count = count;
    m_folder = info.isDir() ? path : info.absolutePath();
    begin();
}

void ExportedOffer::takeBack()
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(m_folder));
}

void ExportedOffer::forget()
{
    m_folder.clear();
}
