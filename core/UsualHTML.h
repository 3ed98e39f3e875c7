#pragma once

#include <QString>

#include <optional>

/// The plain text of HTML as Plim's own pages write it: paragraphs, headings, lists and inline
/// formats without styles. It is what Qt's importer of rich text would make of it, character for
/// character, in a fiftieth of the time. nullopt for everything else, which is the importer's.
[[nodiscard]] std::optional<QString> plainTextOfUsualHTML(QStringView html);
