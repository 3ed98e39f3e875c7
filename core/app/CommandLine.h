#pragma once

#include <optional>

/// Answers --version and --help on standard output and anything it does not know in one line on
/// standard error. Needs no display. Returns the exit code when that is all there is to do.
[[nodiscard]] std::optional<int> answerCommandLine(int argc, char **argv);
