#include "transfer/ExportFileNames.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <string_view>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr qsizetype longestName = 100;  ///< in characters
constexpr qsizetype longestBytes = 180; ///< file systems allow 255, with suffix and number

bool isForbidden(char32_t c)
{
    return QChar::category(c) == QChar::Other_Control ||
           std::u32string_view(U"<>:\"/\\|?*").find(c) != std::u32string_view::npos;
}

/// Signs that do not show, or turn round how a name reads, among them the marks of direction.
bool isInvisible(char32_t c)
{
    return QChar::category(c) == QChar::Other_Format || c == U'\u2028' || c == U'\u2029';
}

void shorten(QString &name)
{
    name.truncate(longestName);
    while (name.toUtf8().size() > longestBytes)
        name.chop(1);
    if (!name.isEmpty() && name.back().isHighSurrogate())
        name.chop(1);
}
} // namespace

QString safeFileName(const QString &text)
{
    QString name;
    name.reserve(text.size());
    for (const char32_t c : text.normalized(QString::NormalizationForm_C).toUcs4()) {
        if (QChar::isSurrogate(c))
            name += QChar(QChar::ReplacementCharacter); // half a pair
        else if (!isInvisible(c))
            name += isForbidden(c) ? QString(u' ') : QString::fromUcs4(&c, 1);
    }
    name = name.simplified();
    shorten(name);
    const auto isTrimmed = [](QChar c) { return c == u'.' || c.isSpace(); };
    while (!name.isEmpty() && isTrimmed(name.back()))
        name.chop(1);
    while (!name.isEmpty() && isTrimmed(name.front()))
        name.remove(0, 1);
    // With any suffix, too.
    static const QRegularExpression reserved(
        u"^(con|prn|aux|nul|com[0-9¹²³]|lpt[0-9¹²³]|conin\\$|conout\\$)(?=$|\\.)"_s,
        QRegularExpression::CaseInsensitiveOption);
    if (reserved.match(name).hasMatch())
        name.insert(reserved.match(name).capturedLength(), u'_');
    return name;
}

QString ExportFileNames::next(const QString &heading)
{
    QString name = safeFileName(heading);
    if (name.isEmpty())
        name = safeFileName(m_untitled);
    QString candidate = name;
    int &number = m_numbers[name.toCaseFolded()]; // so that many of one name need not all be tried
    for (number = std::max(number, 1); m_taken.contains(candidate.toCaseFolded());)
        candidate = name + u' ' + QString::number(++number);
    reserve(candidate);
    return candidate;
}

QString freePath(const QString &path)
{
    const auto exists = [](const QString &candidate) {
        const QFileInfo info(candidate);
        return info.exists() || info.isSymLink();
    };
    QString candidate = path;
    for (int number = 2; exists(candidate); ++number)
        candidate = path + u' ' + QString::number(number);
    return candidate;
}
