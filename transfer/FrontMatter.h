#pragma once

#include <QStringList>

/// What many programs write above the Markdown of a file: a few lines about it, between two rules.
/// Read as Markdown they would be a divider and a heading.
struct FrontMatter {
    QString title;     ///< what they say the title is
    QStringList lines; ///< the others
    QString rest;      ///< the Markdown
};

/// With no title and no lines where the text has nothing of the kind.
[[nodiscard]] FrontMatter partedFrontMatter(const QString &text);
