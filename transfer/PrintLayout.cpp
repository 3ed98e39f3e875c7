#include "transfer/PrintLayout.h"

QPageLayout printLayout(QLocale::MeasurementSystem measures)
{
    constexpr qreal margin = 20;
    const QPageSize size(measures == QLocale::ImperialUSSystem ? QPageSize::Letter : QPageSize::A4);
    return {size, QPageLayout::Portrait, {margin, margin, margin, margin}, QPageLayout::Millimeter};
}
