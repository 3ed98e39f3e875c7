#include "transfer/LinkAddress.h"

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace
{
bool isAsciiLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isSchemeCharacter(QChar c)
{
    return isAsciiLetter(c) || (c >= u'0' && c <= u'9') || c == u'+' || c == u'.' || c == u'-';
}
} // namespace

QString cleanedAddress(const QString &address)
{
    QString cleaned = address.trimmed();
    cleaned.removeIf([](QChar c) {
        constexpr char16_t firstPrintable = 0x20;
        constexpr char16_t deleteCharacter = 0x7f;
        return c.unicode() < firstPrintable || c.unicode() == deleteCharacter || c == u'\u2028' ||
               c == u'\u2029' || c == QChar::ReplacementCharacter;
    });
    return cleaned.trimmed();
}

QString addressScheme(QStringView address)
{
    qsizetype end = 0;
    while (end < address.size() && isSchemeCharacter(address[end]))
        ++end;
    const bool hasScheme =
        end > 0 && end < address.size() && address[end] == u':' && isAsciiLetter(address[0]);
    return hasScheme ? address.first(end).toString().toLower() : QString();
}

bool isHarmlessLink(QStringView address)
{
    // The same as the editor page refuses.
    static constexpr std::array refused{
        "javascript"_L1, "vbscript"_L1,    "data"_L1,   "blob"_L1,
        "filesystem"_L1, "about"_L1,       "chrome"_L1, "chrome-devtools"_L1,
        "devtools"_L1,   "view-source"_L1, "qrc"_L1,    "file"_L1};
    return !address.isEmpty() && address.size() <= longestLink &&
           std::ranges::find(refused, addressScheme(address)) == refused.end();
}

bool isHarmlessPicture(QStringView address)
{
    const QString scheme = addressScheme(address);
    if (scheme == "data"_L1)
        return address.startsWith("data:image/"_L1, Qt::CaseInsensitive);
    return !address.isEmpty() &&
           (scheme.isEmpty() || scheme == "file"_L1 || scheme == "http"_L1 || scheme == "https"_L1);
}
