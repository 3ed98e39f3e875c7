#include "editor/EditorFormatState.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

std::optional<EditorFormatState> EditorFormatState::fromJson(const QString &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();
    if (!std::ranges::all_of(object, [](const QJsonValue &value) { return value.isBool(); }))
        return std::nullopt;
    const auto flag = [&object](QLatin1StringView name) { return object.value(name).toBool(); };
    EditorFormatState state;
    state.bold = flag("bold"_L1);
    state.italic = flag("italic"_L1);
    state.underline = flag("underline"_L1);
    state.strike = flag("strike"_L1);
    state.bullet = flag("bullet"_L1);
    state.ordered = flag("ordered"_L1);
    state.h1 = flag("h1"_L1);
    state.h2 = flag("h2"_L1);
    state.h3 = flag("h3"_L1);
    state.p = flag("p"_L1);
    state.link = flag("link"_L1);
    state.checklist = flag("checklist"_L1);
    return state;
}
