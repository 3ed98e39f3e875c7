#include "mainwindow/TimestampFormat.h"

#include "shell/L10n.h"
#include "shell/LanguageManager.h"

#include <QLocale>
#include <QTimeZone>

using namespace Qt::StringLiterals;

const QString TimestampFormat::time = u"HH:mm"_s;
const QString TimestampFormat::day = u"d MMM"_s;
const QString TimestampFormat::full = u"d MMM yy"_s;

QString TimestampFormat::text(Timestamp moment, const QDateTime &now)
{
    QDateTime then = moment.toDateTime();
    if (now.timeSpec() != Qt::LocalTime)
        then = then.toTimeZone(now.timeZone());
    const QDate date = then.date();
    if (date == now.date())
        return L10n::today() + ", "_L1 + then.time().toString(time);
    if (date.addDays(1) == now.date())
        return L10n::yesterday();
    static const QLocale polish(QLocale::Polish, QLocale::Poland);
    static const QLocale english(QLocale::English, QLocale::UnitedStates);
    const QLocale &locale = LanguageManager::shared().isPolish() ? polish : english;
    return locale.toString(date, date.year() == now.date().year() ? day : full);
}
