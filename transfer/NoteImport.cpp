#include "transfer/NoteImport.h"

#include "transfer/FrontMatter.h"
#include "transfer/ImportedPictures.h"
#include "transfer/MarkdownReader.h"
#include "transfer/NoteBodyWriter.h"
#include "transfer/NoteDocumentReader.h"
#include "transfer/PlainTextReader.h"
#include "transfer/TextDecoding.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace
{
enum class FileKind { text, markdown, html };

struct Suffix {
    QLatin1StringView name;
    FileKind kind;
};
constexpr std::array suffixes{Suffix{"md"_L1, FileKind::markdown},
                              Suffix{"markdown"_L1, FileKind::markdown},
                              Suffix{"txt"_L1, FileKind::text}, Suffix{"html"_L1, FileKind::html},
                              Suffix{"htm"_L1, FileKind::html}};

std::optional<FileKind> kindOf(const QFileInfo &file)
{
    for (const Suffix &suffix : suffixes) {
        if (file.suffix().compare(suffix.name, Qt::CaseInsensitive) == 0)
            return suffix.kind;
    }
    return std::nullopt;
}

/// What stands above the Markdown gives the title; its other lines are kept at the end.
NoteDocument readMarkdownFile(const QString &text)
{
    const FrontMatter matter = partedFrontMatter(text);
    NoteDocument document = withLeadingHeading(readMarkdown(matter.rest), matter.title);
    if (!matter.lines.isEmpty()) {
        const NoteDocument lines = readPlainText(matter.lines.join(u'\n'));
        document.blocks.insert(document.blocks.end(), lines.blocks.begin(), lines.blocks.end());
    }
    return document;
}

NoteDocument read(const QString &text, FileKind kind)
{
    if (kind == FileKind::html) {
        ReadHtml page = readHtml(text);
        return withLeadingHeading(std::move(page.document), page.title);
    }
    return kind == FileKind::markdown ? readMarkdownFile(text)
                                      : withLeadingHeading(readPlainText(text));
}
} // namespace

QStringList importNameFilters()
{
    QStringList filters;
    for (const Suffix &suffix : suffixes)
        filters += u"*."_s + suffix.name;
    return filters;
}

std::variant<Note, ImportFailure> importNote(const QString &path, const QString &imagesDirectory,
                                             Timestamp now)
{
    using Reason = ImportFailure::Reason;
    const QFileInfo info(path);
    const auto failure = [&info](Reason reason, const QString &detail = {}) {
        return ImportFailure{info.fileName(), reason, detail};
    };
    const std::optional<FileKind> kind = kindOf(info);
    if (!kind)
        return failure(Reason::unknownKind);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failure(Reason::unreadable, file.errorString());
    // One byte more than allowed, because what is no plain file may not know its size.
    const QByteArray bytes = file.read(largestImport + 1);
    if (file.error() != QFile::NoError)
        return failure(Reason::unreadable, file.errorString());
    if (bytes.size() > largestImport)
        return failure(Reason::tooLarge);
    const std::optional<QString> text =
        *kind == FileKind::html ? decodedHtml(bytes) : decodedText(bytes);
    if (!text)
        return failure(Reason::notText);

    NoteDocument document = withImportedPictures(read(*text, *kind), info.path(), imagesDirectory);
    std::vector<Inline> &heading = document.blocks.front().inlines;
    if (document.blocks.size() > 1 && heading.empty())
        heading = {{.text = info.completeBaseName()}};
    Note note = Note::fresh(now);
    note.body = noteBody(document);
    return note;
}

ImportedNotes importNotes(const QStringList &paths, const QString &imagesDirectory, Timestamp now)
{
    ImportedNotes imported;
    for (const QString &path : paths) {
        std::variant<Note, ImportFailure> result = importNote(path, imagesDirectory, now);
        if (const auto *note = std::get_if<Note>(&result))
            imported.notes.push_back(*note);
        else
            imported.failures.push_back(std::get<ImportFailure>(result));
    }
    return imported;
}
