#include "transfer/FrontMatter.h"

#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr qsizetype mostLines = 100;

QString unquoted(const QString &value)
{
    const QString text = value.trimmed();
    const bool isQuoted = text.size() > 1 && text.front() == text.back() &&
                          (text.front() == u'"' || text.front() == u'\'');
    return isQuoted ? text.mid(1, text.size() - 2) : text;
}
} // namespace

FrontMatter partedFrontMatter(const QString &text)
{
    static const QRegularExpression key(u"^[A-Za-z_][\\w-]*[ \\t]*:(?:[ \\t]|$)"_s);
    static const QRegularExpression title(u"^title[ \\t]*:(.*)$"_s,
                                          QRegularExpression::CaseInsensitiveOption);
    FrontMatter parted;
    parted.rest = text;
    qsizetype start = text.indexOf(u'\n') + 1;
    if (start == 0 || QStringView(text).first(start).trimmed() != "---"_L1)
        return parted;
    for (qsizetype count = 0; count < mostLines && start < text.size(); ++count) {
        const qsizetype end =
            text.indexOf(u'\n', start) < 0 ? text.size() : text.indexOf(u'\n', start);
        const QString line = text.mid(start, end - start);
        start = end + 1;
        if (line.trimmed() == "---"_L1 || line.trimmed() == "..."_L1) {
            parted.rest = text.mid(start);
            return parted;
        }
        if (count == 0 && !key.match(line).hasMatch())
            break;
        if (const QRegularExpressionMatch match = title.match(line); match.hasMatch())
            parted.title = unquoted(match.captured(1));
        else if (!line.trimmed().isEmpty())
            parted.lines += line;
    }
    return {{}, {}, text}; // it does not end, so it was none
}
