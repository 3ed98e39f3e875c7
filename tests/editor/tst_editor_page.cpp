#include "editor/EditorPage.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <QWebChannel>

#include <algorithm>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace
{
struct Rule {
    QString selector;
    QStringList declarations;

    [[nodiscard]] bool operator==(const Rule &) const = default;
};

QString resource(const QString &name)
{
    QFile file(u":/qt/qml/Plim/Editor/page/"_s + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// What lies between the two, which must be there once.
QString between(const QString &text, const QString &begin, const QString &end)
{
    const auto from = text.indexOf(begin) + begin.size();
    const auto to = text.indexOf(end, from);
    if (text.count(begin) != 1 || to < 0)
        qFatal("The page has not exactly one %s", qPrintable(begin));
    return text.mid(from, to - from);
}

std::vector<Rule> rulesOf(QString styleSheet)
{
    static const QRegularExpression comment(u"/\\*.*?\\*/"_s,
                                            QRegularExpression::DotMatchesEverythingOption);
    styleSheet.remove(comment);
    std::vector<Rule> rules;
    static const QRegularExpression rule(u"([^{}]+)\\{([^{}]*)\\}"_s);
    for (auto it = rule.globalMatch(styleSheet); it.hasNext();) {
        const auto match = it.next();
        Rule &found = rules.emplace_back(Rule{match.captured(1).simplified(), {}});
        for (const QString &declaration : match.captured(2).split(u';')) {
            if (const QString text = declaration.simplified(); !text.isEmpty())
                found.declarations += text;
        }
    }
    return rules;
}

Rule face(const QString &style, int weight)
{
    return {
        u"@font-face"_s,
        {u"font-family: 'Outfit'"_s, u"font-weight: %1"_s.arg(weight),
         u"src: local('Outfit-%1'), url('Fonts/Outfit-%1.ttf') format('truetype')"_s.arg(style)}};
}

Rule heading(const QString &selector, const QString &scale, int weight, const QString &lineHeight,
             const QString &margin)
{
    return {selector,
            {u"font-family: 'Outfit'"_s, u"font-size: calc(var(--base) * %1)"_s.arg(scale),
             u"font-weight: %1"_s.arg(weight), u"line-height: %1"_s.arg(lineHeight),
             u"margin: "_s + margin}};
}

/// Numbered lists with that many items make room for their numbers.
Rule wideNumbers(int count, const QString &width)
{
    return {u"#body ol > li:nth-last-child(n+%1), #body ol > li:nth-last-child(n+%1) ~ li"_s.arg(count),
            {u"margin-left: max(0px, %1 - 24px)"_s.arg(width)}};
}

/// How the page looks, with the text size and right padding given.
std::vector<Rule> expectedRules(const QString &base, const QString &rightPadding)
{
    const QString ink = u"#1c1c1e"_s;
    const QStringList breaksWords{u"overflow-wrap: break-word"_s, u"word-break: break-word"_s};
    Rule title = heading(u"#title"_s, u"1.87"_s, 900, u"1.15"_s, u"0 0 0.25em"_s);
    title.declarations +=
        QStringList{u"outline: none"_s, u"color: "_s + ink, u"caret-color: "_s + ink} +
        breaksWords + QStringList{u"flex-shrink: 0"_s, u"min-height: 1.15em"_s};
    return {
        {u":root"_s, {u"--base: %1px"_s.arg(base)}},
        {u"html, body"_s,
         {u"margin: 0"_s, u"padding: 0"_s, u"height: 100%"_s, u"background: transparent"_s,
          u"overflow: hidden"_s}},
        {u"::-webkit-scrollbar, #body::-webkit-scrollbar"_s, {u"display: none"_s}},
        face(u"Regular"_s, 400),
        face(u"ExtraLight"_s, 200),
        face(u"SemiBold"_s, 600),
        face(u"Bold"_s, 700),
        face(u"Black"_s, 900),
        {u"body"_s,
         {u"font-family: 'Outfit', -apple-system, \"Helvetica Neue\", Arial, sans-serif"_s,
          u"font-weight: 400"_s, u"font-size: var(--base)"_s, u"line-height: 1.45"_s,
          u"color: "_s + ink, u"caret-color: "_s + ink, u"box-sizing: border-box"_s,
          u"padding: 4px %1px 40px 6px"_s.arg(rightPadding), u"display: flex"_s,
          u"flex-direction: column"_s}},
        title,
        {u"#body"_s, QStringList{u"outline: none"_s, u"flex: 1"_s, u"overflow-y: auto"_s,
                                 u"overflow-x: hidden"_s, u"font-size: var(--base)"_s} +
                         breaksWords},
        heading(u"#body h1"_s, u"1.87"_s, 900, u"1.15"_s, u"0.2em 0 0.15em"_s),
        heading(u"#body h2"_s, u"1.47"_s, 600, u"1.25"_s, u"0.3em 0 0.2em"_s),
        heading(u"#body h3"_s, u"1.2"_s, 600, u"1.3"_s, u"0.3em 0 0.2em"_s),
        {u"#body p"_s, {u"margin: 0.35em 0"_s, u"min-height: 1.45em"_s}},
        {u"#body ul, #body ol"_s, {u"padding-left: 24px"_s, u"margin: 0.35em 0"_s}},
        {u"#body hr"_s,
         {u"border: 0"_s, u"border-top: 2px solid rgba(0, 0, 0, 0.25)"_s, u"margin: 14px 0"_s}},
        {u"#body a"_s, {u"color: #0a5ad2"_s}},
        {u"#body img"_s, {u"max-width: 100%"_s, u"border-radius: 6px"_s}},
        {u"#body ul.checklist"_s, {u"list-style: none"_s, u"padding-left: 0"_s}},
        {u"#body ul.checklist > li"_s,
         {u"list-style: none"_s, u"margin: 0.3em 0"_s, u"padding-left: 0"_s, u"display: flex"_s,
          u"align-items: flex-start"_s, u"line-height: 1.45"_s}},
        {u"#body ul.checklist > li > .chk"_s,
         {u"display: inline-block"_s, u"flex-shrink: 0"_s, u"width: 1em"_s, u"height: 1em"_s,
          u"margin: 0.225em 0.5em 0 0"_s, u"border: 1.5px solid "_s + ink, u"border-radius: 2px"_s,
          u"box-sizing: border-box"_s, u"cursor: pointer"_s, u"-webkit-user-select: none"_s,
          u"user-select: none"_s, u"font-size: 1em"_s}},
        {u"#body ul.checklist > li.checked > .chk"_s, {u"background: "_s + ink}},
        {u"#body ul.checklist > li.checked > .chk::after"_s,
         {u"content: '✓'"_s, u"display: block"_s, u"text-align: center"_s, u"font-size: 0.78em"_s,
          u"font-weight: 700"_s, u"line-height: 1.3"_s, u"color: #ffffff"_s}},
        {u"#body ul.checklist > li.checked > *:not(.chk)"_s,
         {u"opacity: 0.6"_s, u"text-decoration: line-through"_s}},
    };
}

/// What a page may add to the rules above: lists in lists, items whose words stand in a line, wide
/// numbers, the hand over a link, very long words.
bool isRefinement(const Rule &rule)
{
    static const std::vector<Rule> refinements{
        {u"#body ul.checklist ul.checklist"_s, {u"padding-left: 24px"_s}},
        {u"#body ul.checklist > li"_s,
         {u"display: block"_s, u"position: relative"_s, u"padding-left: 1.5em"_s}},
        {u"#body ul.checklist > li > .chk"_s, {u"position: absolute"_s, u"left: 0"_s, u"top: 0"_s}},
        {u":root.opens-links #title a, :root.opens-links #body a"_s, {u"cursor: pointer"_s}},
        {u":root.has-long-words"_s, {u"font-kerning: none"_s}},
        wideNumbers(10, u"1.75em"_s),
        wideNumbers(100, u"2.4em"_s),
        {u"#title"_s, {u"max-height: 45%"_s, u"overflow-x: hidden"_s, u"overflow-y: auto"_s}},
    };
    return std::ranges::find(refinements, rule) != refinements.end();
}
} // namespace

class TestEditorPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sizeAndPaddingAreSplicedIn_data()
    {
        QTest::addColumn<double>("size");
        QTest::addColumn<double>("padding");
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("right");
        QTest::newRow("whole") << 15.0 << 24.0 << u"--base: 15.0px; }"_s
                               << u"padding: 4px 24.0px 40px 6px;"_s;
        QTest::newRow("fractions")
            << 12.5 << 0.1 << u"--base: 12.5px; }"_s << u"padding: 4px 0.1px 40px 6px;"_s;
        QTest::newRow("nothing") << 19.0 << 0.0 << u"--base: 19.0px; }"_s
                                 << u"padding: 4px 0.0px 40px 6px;"_s;
    }
    void sizeAndPaddingAreSplicedIn()
    {
        QFETCH(double, size);
        QFETCH(double, padding);
        QFETCH(QString, base);
        QFETCH(QString, right);
        const QString page = editorPageDocument(size, padding);
        QCOMPARE(page.count(base), 1);
        QCOMPARE(page.count(right), 1);
        for (const QString &marker :
             {u"/*base*/"_s, u"/*rightPadding*/"_s, u"/*style*/"_s})
            QVERIFY(!page.contains(marker));
    }

    void onlySizeAndPaddingVary()
    {
        QString one = editorPageDocument(15, 24);
        const QString other = editorPageDocument(19, 50);
        QVERIFY(one != other);
        one.replace(u"--base: 15.0px"_s, u"--base: 19.0px"_s);
        one.replace(u"padding: 4px 24.0px"_s, u"padding: 4px 50.0px"_s);
        QCOMPARE(one, other);
        QCOMPARE(editorPageDocument(19, 50), other);
    }

    void theBodyHoldsTwoRegions()
    {
        const QString page = editorPageDocument(15, 24);
        QVERIFY(page.startsWith(u"<!DOCTYPE html>"_s));
        QCOMPARE(page.count(u"<meta charset=\"utf-8\">"_s), 1);
        QCOMPARE(page.count(u"<style>"_s), 1);
        QVERIFY(!page.contains(u"<script"_s, Qt::CaseInsensitive));
        const QString body = page.mid(page.indexOf(u"<body>"_s) + 6);
        QCOMPARE(body.simplified(), u"<div id=\"title\" contenteditable=\"true\"></div> "
                                    "<div id=\"body\" contenteditable=\"true\"></div> "
                                    "</body> </html>"_s);
    }

    // It is made into an address for every editor anew.
    void theDocumentIsSmall()
    {
        QVERIFY(editorPageDocument(15, 24).size() < 8'000);
    }

    void theScriptIsWhole()
    {
        const QString script = editorScript();
        const QStringList sections =
            QDir(u":/qt/qml/Plim/Editor/page/script"_s).entryList(QDir::Files);
        QVERIFY(sections.size() >= 12);
        qsizetype length = 0;
        for (const QString &section : sections) {
            const QString text = resource(u"script/"_s + section);
            QVERIFY2(!text.isEmpty(), qPrintable(section));
            QVERIFY2(script.count(text) == 1, qPrintable(section));
            length += text.size() + 1;
        }
        QCOMPARE(script.size(), length); // nothing else is in it
        QVERIFY(script.indexOf(resource(u"script/state.js"_s)) <
                script.indexOf(resource(u"script/start.js"_s)));
    }

    void thePageAsksForNothingButItsFonts()
    {
        const QString page = editorPageDocument(15, 24);
        const QString style = between(page, u"<style>"_s, u"</style>"_s);
        QVERIFY(!style.contains(u"@import"_s));
        QVERIFY(!style.contains(u"http"_s));
        QCOMPARE(style.count(u"url("_s), 5);
    }

    void theStyleSheet()
    {
        const QString page = editorPageDocument(15, 24);
        std::vector<Rule> rules = rulesOf(between(page, u"<style>"_s, u"</style>"_s));
        std::erase_if(rules, isRefinement);
        const std::vector<Rule> expected = expectedRules(u"15.0"_s, u"24.0"_s);
        for (std::size_t i = 0; i < std::min(rules.size(), expected.size()); ++i) {
            QCOMPARE(rules[i].selector, expected[i].selector);
            QCOMPARE(rules[i].declarations, expected[i].declarations);
        }
        QCOMPARE(rules.size(), expected.size());
    }

    void theChannelComesWithItsLibrary()
    {
        const QWebChannel library; // its script comes with it
        const QString script = editorChannelScript();
        QVERIFY(script.contains(u"QWebChannel"_s));
        QVERIFY(script.endsWith(resource(u"channel.js"_s)));
        for (const QString &handler : {u"plim:"_s, u"plimState:"_s, u"plimLog:"_s, u"plimLink:"_s,
                                       u"plimHover:"_s, u"plimImage:"_s})
            QVERIFY(resource(u"channel.js"_s).contains(handler));
    }
};

QTEST_GUILESS_MAIN(TestEditorPage)
#include "tst_editor_page.moc"
