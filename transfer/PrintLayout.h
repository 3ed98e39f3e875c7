#pragma once

#include <QLocale>
#include <QPageLayout>

/// The paper that is usual where such measures are: Letter in the United States, A4 elsewhere;
/// upright, with margins of 20 mm.
[[nodiscard]] QPageLayout printLayout(QLocale::MeasurementSystem measures);
