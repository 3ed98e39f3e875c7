#pragma once

#include <QString>

#include <vector>

/// A stretch of a text that is an address by its looks.
struct BareLink {
    qsizetype start;
    qsizetype length;
    QString address;
};

/// The web and mail addresses in a text of Markdown, as GitHub finds them: the web ones begin with
/// their scheme or with "www.", and punctuation at the end belongs to the sentence.
[[nodiscard]] std::vector<BareLink> bareLinks(const QString &text);
