#pragma once

#include <QRandomGenerator>
#include <QString>

#include <array>

using namespace Qt::Literals::StringLiterals;

/// HTML as a page writes it, and now and then as it does not.
class RandomNoteHTML
{
public:
    explicit RandomNoteHTML(quint32 seed) : m_random(seed) {}

    QString note()
    {
        static constexpr std::array names{"p"_L1, "h1"_L1, "h2"_L1, "h3"_L1, "div"_L1};
        QString html;
        for (int blocks = m_random.bounded(4); blocks >= 0; --blocks) {
            html += isOnceIn(4) ? list(0) : inside(one(names), words());
            if (isOnceIn(5))
                html += u'\n';
        }
        return isOnceIn(20) ? html.remove(m_random.bounded(html.size()), 1) : html;
    }

private:
    [[nodiscard]] bool isOnceIn(int times) { return m_random.bounded(times) == 0; }
    template <typename Array>
    const typename Array::value_type &one(const Array &array)
    {
        return array[std::size_t(m_random.bounded(int(array.size())))];
    }
    static QString inside(QLatin1StringView name, const QString &content)
    {
        return u'<' + name + u'>' + content + u"</"_s + name + u'>';
    }
    QString words()
    {
        static const std::array pieces{u" "_s,      u"\n "_s,    u"a"_s,         u"b "_s,
                                       u"&nbsp;"_s, u"ż"_s,      u"中"_s,        u"&amp;"_s,
                                       u"—"_s,      u"“c”"_s,    u"&lt;b&gt;"_s, u"&quot;"_s,
                                       u"<br>"_s,   u"\u00a0"_s, u"\U0001F600"_s};
        static const std::array others{u"&#65;"_s, u"\u2003"_s, u"a<b>c"_s, u"<img>"_s};
        static constexpr std::array names{"b"_L1, "i"_L1,  "u"_L1,      "s"_L1,
                                          "a"_L1, "em"_L1, "strong"_L1, "span"_L1};
        QString text;
        for (int count = m_random.bounded(5); count >= 0; --count)
            text += isOnceIn(3) ? inside(one(names), isOnceIn(40) ? one(others) : one(pieces))
                                : one(pieces);
        return text;
    }
    QString list(int depth)
    {
        constexpr int deepest = 4;
        QString html = isOnceIn(2) ? u"<ul class=\"checklist\">"_s : u"<ul>"_s;
        for (int items = m_random.bounded(3); items >= 0; --items) {
            html += isOnceIn(4) ? u"<li>"_s
                                : u"<li><span class=\"chk\" contenteditable=\"false\"></span>"_s;
            html += words();
            if (depth < deepest && isOnceIn(3))
                html += list(depth + 1);
            html += isOnceIn(8) ? words() + u"</li>\n"_s : u"</li>"_s;
        }
        return html + u"</ul>"_s;
    }

    QRandomGenerator m_random;
};
