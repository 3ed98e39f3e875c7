#pragma once

#include <QString>

/// Two changes of one text in one: what the host holds (theirs) and what a page holds (mine), both
/// made from base. Where both changed the same words the words of both are kept, theirs first; a
/// change of markup alone gives way to a change of words.
[[nodiscard]] QString mergedHTML(const QString &base, const QString &theirs, const QString &mine);
