#include "transfer/PrintedPage.h"

#include "transfer/HtmlWriter.h"
#include "transfer/LinkAddress.h"
#include "transfer/NoteDocumentReader.h"

#include <QFileInfo>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

QString printedPage(const Note &note, const QString &fontsDirectory, const QString &untitled)
{
    const NoteDocument document = readHtml(note.body).document;
    const QString heading = document.headingText();
    const HtmlPage page{.title = heading.isEmpty() ? untitled : heading,
                        .fontAddress = QUrl::fromLocalFile(fontsDirectory + u'/')
                                           .toString(QUrl::FullyEncoded)
                                           .replace(u'\'', u"%27"_s),
                        .use = HtmlUse::printing};
    // What lies on the web is not loaded; words say more than the sign of a broken picture.
    return htmlPage(document, page, [](const QString &source) {
        const QString scheme = addressScheme(source);
        const bool isThere =
            scheme == "data"_L1 ||
            (scheme == "file"_L1 && QFileInfo(QUrl(source).toLocalFile()).isFile());
        return isThere ? source : QString();
    });
}
