#pragma once

#include <QString>

/// The same markup without what says nothing in a note: comments, drawings and formulas, a tag that
/// the text ends in, and any attribute beyond the first sixty-four of a tag.
///
/// What is left divides into tags and text in one way only, so that whoever looks at the tags sees
/// those that the parser will see; and the parser, which compares each attribute with all the
/// others and treats drawings by rules of their own, is not slowed down or led too deep.
///
/// It has no control characters either, which the parser would take for broken ones.
[[nodiscard]] QString plainMarkup(const QString &html);

/// Without the characters that stand for nothing that could be shown: control characters other than
/// white space, marks of the byte order, and those that Unicode keeps from being any. References to
/// them may be left in markup.
[[nodiscard]] QString withoutControlCharacters(QString text);
