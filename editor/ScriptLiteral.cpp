#include "editor/ScriptLiteral.h"

#include <QLocale>

#include <cmath>

using namespace Qt::StringLiterals;

namespace
{
QLatin1StringView escapeOf(QChar c)
{
    switch (c.unicode()) {
    case u'\\':
        return "\\\\"_L1;
    case u'"':
        return "\\\""_L1;
    case u'\n':
        return "\\n"_L1;
    case u'\r':
        return "\\r"_L1;
    case u'\t':
        return "\\t"_L1;
    case 0x2028:
        return "\\u2028"_L1;
    case 0x2029:
        return "\\u2029"_L1;
    default:
        return {};
    }
}
} // namespace

// One pass gives what replacing one after the other gives (the backslash goes first), without
// seven walks over a long note.
QString jsString(QStringView text)
{
    QString literal;
    literal.reserve(text.size() + text.size() / 16 + 2);
    literal += u'"';
    qsizetype begin = 0; // of what stands for itself
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QLatin1StringView escape = escapeOf(text[i]);
        if (escape.isEmpty())
            continue;
        literal += text.sliced(begin, i - begin);
        literal += escape;
        begin = i + 1;
    }
    literal += text.sliced(begin);
    literal += u'"';
    return literal;
}

QString shortestDecimal(double value)
{
    const double size = std::abs(value);
    const bool isPlain = size == 0 || (size >= 1e-4 && size < 1e16);
    QString text = QString::number(value, isPlain ? 'f' : 'g', QLocale::FloatingPointShortest);
    if (!text.contains(u'.') && !text.contains(u'e'))
        text += ".0"_L1;
    return text;
}
