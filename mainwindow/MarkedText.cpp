#include "mainwindow/MarkedText.h"

#include <QColor>

using namespace Qt::StringLiterals;

namespace
{
// A view of styled text joins spaces, one of plain text does not; both show the same line here.
QString escaped(QStringView text)
{
    QString markup = text.toString().toHtmlEscaped();
    return markup.replace("  "_L1, "&nbsp; "_L1).replace("  "_L1, "&nbsp; "_L1);
}
} // namespace

QString markedText(const QString &text, const SearchQuery &query, const QColor &color)
{
    const std::vector<qsizetype> places = query.placesIn(text);
    if (places.empty())
        return {};
    const QString opening = u"<font color=\"%1\"><b>"_s.arg(color.name());
    QString markup;
    qsizetype end = 0;
    for (const qsizetype place : places) {
        markup += escaped(QStringView(text).sliced(end, place - end));
        end = place + query.length();
        markup +=
            opening + escaped(QStringView(text).sliced(place, end - place)) + "</b></font>"_L1;
    }
    return markup + escaped(QStringView(text).sliced(end));
}
