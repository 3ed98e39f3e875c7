#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

// A fuzz target is one function that takes any bytes. The fuzzer of clang calls it (scripts/fuzz),
// and so does ReplayDriver, which the other presets have instead.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
/// Once, before the first input: an application object, and no words of Qt's.
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);

/// Ends the program when what must hold of every input does not hold of this one.
void require(bool holds, const char *what);

/// The input as bytes; it has to outlive them.
[[nodiscard]] QByteArray bytesOf(const std::uint8_t *data, std::size_t size);
/// The input as text. U+E000 and U+E001 stand for the halves of surrogate pairs, which a text may
/// hold and UTF-8 cannot.
[[nodiscard]] QString textOf(const std::uint8_t *data, std::size_t size);

/// A folder for the files that an input brings about.
[[nodiscard]] const QString &scratchFolder();
/// Deletes the pictures that were put there.
void emptyScratchFolder();
