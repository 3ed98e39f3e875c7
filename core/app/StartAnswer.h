#pragma once

#include "core/DataLock.h"
#include "core/app/Invocation.h"

#include <variant>

/// What this start is to do, with the notes locked for it; or the exit code, when that is all: the
/// command line was answered, the Plim that runs was told, or nobody can have these notes now.
/// Needs no window, and makes the only application there is until it returns.
[[nodiscard]] std::variant<Invocation, int> answerStart(int argc, char **argv, DataLock &lock);
