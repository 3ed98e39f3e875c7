#include "editor/EditorCommand.h"

#include "editor/ScriptLiteral.h"

using namespace Qt::StringLiterals;

EditorCommand EditorCommand::heading(int level)
{
    EditorCommand command(Kind::heading);
    command.m_level = level;
    return command;
}

EditorCommand EditorCommand::link(const QString &url)
{
    EditorCommand command(Kind::link);
    command.m_url = url;
    return command;
}

QString EditorCommand::script() const
{
    const auto run = [](const QString &name, const std::optional<QString> &value = {}) {
        return pageCall(u"runCommand", name, value);
    };
    switch (m_kind) {
    case Kind::heading:
        return run(u"formatBlock"_s, u'h' + QString::number(m_level));
    case Kind::link:
        return run(u"createLink"_s, m_url);
    case Kind::paragraph:
        return run(u"formatBlock"_s, u"p"_s);
    case Kind::bold:
        return run(u"bold"_s);
    case Kind::italic:
        return run(u"italic"_s);
    case Kind::underline:
        return run(u"underline"_s);
    case Kind::strikethrough:
        return run(u"strikeThrough"_s);
    case Kind::bulletList:
        return run(u"insertUnorderedList"_s);
    case Kind::numberedList:
        return run(u"insertOrderedList"_s);
    case Kind::checkbox:
        return pageCall(u"toggleChecklist", std::nullopt);
    case Kind::divider:
        return pageCall(u"insertHTML", u"<hr>"_s);
    case Kind::undo:
        return run(u"undo"_s);
    case Kind::redo:
        return run(u"redo"_s);
    }
    Q_UNREACHABLE();
}

QString pageCall(QStringView name, const std::optional<QString> &argument,
                 const std::optional<QString> &value)
{
    QString script = u"window."_s + name.toString() + u'(' + (argument ? jsString(*argument) : u"null"_s);
    if (value)
        script += u", "_s + jsString(*value);
    return script + u");"_s;
}
