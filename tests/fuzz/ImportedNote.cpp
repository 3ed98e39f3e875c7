#include "tests/fuzz/ImportedNote.h"

#include "core/HtmlTokens.h"
#include "core/StoredHTML.h"
#include "tests/fuzz/FuzzTarget.h"
#include "transfer/LinkAddress.h"
#include "transfer/MarkdownReader.h"
#include "transfer/MarkdownWriter.h"
#include "transfer/NoteBodyWriter.h"
#include "transfer/NoteDocumentReader.h"
#include "transfer/NoteImport.h"

#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
/// How the editor page writes a note: these tags, and nothing else in them.
bool isOfNote(const HtmlToken &tag)
{
    static const QStringList whole{u"<h1>"_s,
                                   u"</h1>"_s,
                                   u"<h2>"_s,
                                   u"</h2>"_s,
                                   u"<h3>"_s,
                                   u"</h3>"_s,
                                   u"<p>"_s,
                                   u"</p>"_s,
                                   u"<b>"_s,
                                   u"</b>"_s,
                                   u"<i>"_s,
                                   u"</i>"_s,
                                   u"<u>"_s,
                                   u"</u>"_s,
                                   u"<s>"_s,
                                   u"</s>"_s,
                                   u"<br>"_s,
                                   u"<hr>"_s,
                                   u"<ul>"_s,
                                   u"</ul>"_s,
                                   u"<ol>"_s,
                                   u"</ol>"_s,
                                   u"<li>"_s,
                                   u"</li>"_s,
                                   u"</a>"_s,
                                   u"</span>"_s,
                                   u"<ul class=\"checklist\">"_s,
                                   u"<li class=\"checked\">"_s};
    if (whole.contains(tag.source))
        return true;
    const std::vector<HtmlAttribute> attributes = htmlAttributes(tag);
    const auto hasOnly = [&](std::initializer_list<QLatin1StringView> names) {
        return std::ranges::all_of(attributes, [&](const HtmlAttribute &attribute) {
            return attribute.isQuoted &&
                   std::any_of(names.begin(), names.end(), [&attribute](QLatin1StringView name) {
                       return attribute.name == name;
                   });
        });
    };
    if (tag.isNamed("a"_L1))
        return hasOnly({"href"_L1});
    if (tag.isNamed("img"_L1))
        return hasOnly({"src"_L1, "alt"_L1});
    return tag.isNamed("span"_L1) &&
           hasOnly({"class"_L1, "contenteditable"_L1, "role"_L1, "aria-checked"_L1});
}

/// Markdown knows no empty lines, among others; what it has kept of a note, it keeps.
void checkMarkdown(const NoteDocument &document)
{
    const auto asItIs = [](const QString &source) { return source; };
    const QString markdown = markdownText(document, asItIs);
    const NoteDocument once = readMarkdown(markdown);
    const QString again = markdownText(once, asItIs);
    const NoteDocument twice = readMarkdown(again);
    if (!(twice == once))
        require(false,
                qPrintable(u"reading Markdown twice is reading it once: "_s + noteBody(once) +
                           u" -> "_s + again + u" -> "_s + noteBody(twice)));
}

void checkBody(const QString &body)
{
    for (const HtmlToken &token : htmlTokens(body)) {
        require(token.kind != HtmlToken::Kind::verbatim, "a note is words and tags");
        require(!token.isTag() || isOfNote(token), "a note holds what a note can say");
    }
    const NoteDocument document = readHtml(body).document;
    for (const Block &block : document.blocks) {
        for (const Inline &part : block.inlines) {
            require(part.formats.link.isEmpty() || isHarmlessLink(part.formats.link),
                    "a link is harmless");
            require(part.kind != Inline::Kind::picture || part.source.startsWith("file://"_L1),
                    "a picture is a file");
        }
    }
    // The boxes of checklists are known by what repairs leave of them.
    require(body.contains("class="_L1) || sanitizeStoredHTML(body) == body,
            "a note needs no repair");
    if (const QString again = noteBody(document); again != body)
        require(false, qPrintable(u"a note read back is the note: "_s + body + u" -> "_s + again));
    checkMarkdown(document);
}
} // namespace

void checkImport(const QByteArray &content, const QString &suffix)
{
    const QString path = scratchFolder() + u"/fuzz."_s + suffix;
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(),
            "the file can be written");
    file.close();
    const auto imported = importNote(path, scratchFolder(), Timestamp{1000});
    const auto *note = std::get_if<Note>(&imported);
    if (!note)
        return;
    // Formats that are left open are opened again in every paragraph, and addresses written again.
    require(note->body.size() <= 64 * content.size() + 131'072, "a note is bounded");
    checkBody(note->body);
    if (note->body.contains("<img"_L1))
        emptyScratchFolder();
}
