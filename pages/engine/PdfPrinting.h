#pragma once

#include "pages/PrintOutcome.h"

#include <QByteArray>

#include <functional>

class QPrinter;

/// As PageEngine::pageCount.
[[nodiscard]] int pageCountOf(const QByteArray &pdf);
/// As PageEngine::print.
[[nodiscard]] PrintOutcome printPdf(const QByteArray &pdf, QPrinter &printer,
                                    const std::function<bool(int, int)> &goesOn = {});
