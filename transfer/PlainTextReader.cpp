#include "transfer/PlainTextReader.h"

#include "transfer/DocumentBuilder.h"

NoteDocument readPlainText(const QString &text)
{
    TextContext context;
    context.isPreformatted = true;
    DocumentBuilder builder;
    QStringView rest(text);
    while (rest.endsWith(u'\n'))
        rest.chop(1);
    for (const QStringView line : qTokenize(rest, u'\n')) {
        builder.addText(line, context);
        builder.addBreak(context);
        builder.endLine();
    }
    return builder.take();
}
