#include "transfer/BareLinks.h"

#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Without what ends the sentence around an address. A bracket belongs to it when it was opened
/// within.
qsizetype lengthWithoutPunctuation(QStringView address)
{
    qsizetype balance = address.count(u'(') - address.count(u')');
    qsizetype length = address.size();
    while (length > 0) {
        const QChar last = address[length - 1];
        const bool isSpareBracket = last == u')' && balance < 0;
        if (!isSpareBracket && !u"?!.,:;*_~'\"„”"_s.contains(last))
            break;
        balance += isSpareBracket ? 1 : 0;
        --length;
    }
    return length;
}
} // namespace

std::vector<BareLink> bareLinks(const QString &text)
{
    static const QRegularExpression pattern(
        u"(?<![\\w/.@+-])(?:(?<web>(?:https?://|ftp://|www\\.)[^\\s<>]++)"
        "|(?<mail>[A-Za-z0-9._+-]++@[A-Za-z0-9-]++(?:\\.[A-Za-z0-9-]++)++))"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    std::vector<BareLink> found;
    if (!text.contains(u'@') && !text.contains(u"://"_s) &&
        !text.contains(u"www."_s, Qt::CaseInsensitive))
        return found;
    if (!text.isValidUtf16())
        return found;
    for (auto it = pattern.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const bool isMail = match.hasCaptured(u"mail"_s);
        const qsizetype length = lengthWithoutPunctuation(match.capturedView());
        const QString address = match.captured().left(length);
        const bool isWithoutScheme = address.startsWith("www."_L1, Qt::CaseInsensitive);
        if (address.endsWith("://"_L1) || address.size() <= "www."_L1.size())
            continue; // nothing but the beginning
        found.push_back({match.capturedStart(), length,
                         isMail            ? u"mailto:"_s + address
                         : isWithoutScheme ? u"http://"_s + address
                                           : address});
    }
    return found;
}
