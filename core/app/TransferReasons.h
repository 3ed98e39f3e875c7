#pragma once

#include "core/app/NotePrinting.h"
#include "transfer/NoteExport.h"
#include "transfer/NoteImport.h"

#include <QString>

// Why something was not exported, imported or printed, in the words of the current language.

/// What became of a file that could not be written: where it was to be, and the reason. `detail`
/// has the system's words, which say it where these have none.
[[nodiscard]] QString unwrittenText(const QString &path, const QString &detail = {});
[[nodiscard]] QString failureText(const ExportFailure &failure);
[[nodiscard]] QString failureText(NotePrinting::Failure failure, const QString &file);
/// A line for each file, and not too many of them.
[[nodiscard]] QString failureText(const std::vector<ImportFailure> &failures);
