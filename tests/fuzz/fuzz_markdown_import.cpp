#include "tests/fuzz/FuzzTarget.h"
#include "tests/fuzz/ImportedNote.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    checkImport(bytesOf(data, size), QStringLiteral("md"));
    return 0;
}
