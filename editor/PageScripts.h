#pragma once

#include "core/Note.h"
#include "editor/ScriptLiteral.h"

#include <QString>

/// What the host says to the page, besides commands. Most of it is said to a page that may still be
/// without its script.
namespace PageScript
{
inline const QString hasScript = QStringLiteral("typeof window.setContent === 'function'");
inline const QString focus = QStringLiteral("window.focusBodyAtEnd && window.focusBodyAtEnd();");
inline const QString reportState =
    QStringLiteral("window.reportFormatState && window.reportFormatState();");
inline const QString cancelDebounce =
    QStringLiteral("window.cancelDebounce && window.cancelDebounce();");
inline const QString linkAtCaret = QStringLiteral("window.linkAtCaret()");
inline const QString readHTML = QStringLiteral("window.getComposedHTML()");
inline const QString readChangedHTML = QStringLiteral("window.getChangedHTML()");
inline const QString layOut = QStringLiteral("document.body && document.body.offsetHeight;");
inline const QString isFocused =
    QStringLiteral("document.activeElement === document.getElementById('title') || "
                   "document.activeElement === document.getElementById('body') || "
                   "document.getElementById('body').contains(document.activeElement) || "
                   "document.getElementById('title').contains(document.activeElement)");

inline QString setCurrentID(const QUuid &noteID)
{
    return QStringLiteral("window.setCurrentID(\"") + uuidText(noteID) + QStringLiteral("\");");
}

inline QString setContent(const QString &html)
{
    return QStringLiteral("window.setContent(") + jsString(html) + QStringLiteral(");");
}
} // namespace PageScript
