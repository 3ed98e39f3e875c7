#include "editor/EditorPage.h"

#include "editor/ScriptLiteral.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace
{
QString resourceText(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("resource %s is missing", qUtf8Printable(path));
    return QString::fromUtf8(file.readAll());
}

QString pageResource(const QString &name)
{
    return resourceText(u":/qt/qml/Plim/Editor/page/"_s + name);
}

/// The document is three fixed pieces with the two values spliced between them.
struct Pieces {
    QString head;
    QString middle;
    QString tail;
};

Pieces readPieces()
{
    QString page = pageResource(u"editor.html"_s);
    page.replace("/*style*/\n"_L1, pageResource(u"style.css"_s));

    const auto base = page.indexOf("/*base*/"_L1);
    const auto padding = page.indexOf("/*rightPadding*/"_L1);
    Q_ASSERT(base > 0 && padding > base);
    const auto afterBase = base + "/*base*/"_L1.size();
    return {page.left(base), page.mid(afterBase, padding - afterBase),
            page.mid(padding + "/*rightPadding*/"_L1.size())};
}
} // namespace

QString editorPageDocument(double bodyFontSize, double rightPadding)
{
    static const Pieces pieces = readPieces();
    return pieces.head + shortestDecimal(bodyFontSize) + pieces.middle
        + shortestDecimal(rightPadding) + pieces.tail;
}

QString editorScript()
{
    QString script;
    // The order is that of the sections: each may use what stands before it when it is run.
    for (const QLatin1StringView section :
         {"state"_L1, "dom"_L1, "lock"_L1, "cleaning"_L1, "caret"_L1, "reports"_L1, "words"_L1,
          "links"_L1, "blocks"_L1, "lists"_L1, "checklists"_L1, "tidy"_L1, "history"_L1, "keys"_L1,
          "pictures"_L1, "paste"_L1, "commands"_L1, "start"_L1})
        script += pageResource(u"script/"_s + section + u".js"_s) + u'\n';
    return script;
}

QString editorChannelScript()
{
    static const QString script =
        resourceText(u":/qtwebchannel/qwebchannel.js"_s) + pageResource(u"channel.js"_s);
    return script;
}
