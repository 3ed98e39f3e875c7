#pragma once

enum class PrintOutcome {
    printed,
    notPdf,    ///< the bytes are no PDF that can be read
    refused,   ///< the printer, or the file it prints to, cannot be written
    cancelled, ///< the caller did not want to go on
};
