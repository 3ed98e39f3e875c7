#include "shell/NoteChoices.h"
#include "shell/SystemPreferences.h"
#include "tests/views/Stage.h"

#include <QDirIterator>
#include <QQmlComponent>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{
constexpr double textContrast = 4.5;
constexpr double controlContrast = 3.0;

/// The colour as it is seen through nothing but itself, over an opaque one.
QColor over(const QColor &ink, const QColor &ground)
{
    const float alpha = ink.alphaF();
    const auto mix = [alpha](float a, float b) { return a * alpha + b * (1 - alpha); };
    return QColor::fromRgbF(mix(ink.redF(), ground.redF()), mix(ink.greenF(), ground.greenF()),
                            mix(ink.blueF(), ground.blueF()));
}

double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

/// WCAG's contrast ratio, 1 to 21.
double contrast(const QColor &ink, const QColor &ground)
{
    const auto [dark, light] = std::minmax({luminance(over(ink, ground)), luminance(ground)});
    return (light + 0.05) / (dark + 0.05);
}

QImage flat(QSize size, const QString &color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(QColor(color));
    return image;
}

/// Every colour beside every other, as in the leaves of a tree against the sun.
QImage photograph(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    QRandomGenerator random(1);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, random.generate() | 0xff000000);
    }
    return image;
}

QColor faded(QColor color, double opacity)
{
    color.setAlphaF(float(color.alphaF() * opacity));
    return color;
}
} // namespace

class TestTheme : public QObject
{
    Q_OBJECT

    ThrowAwayHome m_home;
    QQmlEngine m_engine;
    std::unique_ptr<QObject> m_holder;
    QObject *m_theme = nullptr;

    [[nodiscard]] QColor color(const char *name) const
    {
        const QVariant value = m_theme->property(name);
        if (!value.isValid())
            qFatal("Theme has no %s", name);
        return value.value<QColor>();
    }
    [[nodiscard]] double number(const char *name) const
    {
        const QVariant value = m_theme->property(name);
        if (!value.isValid())
            qFatal("Theme has no %s", name);
        return value.toDouble();
    }
    /// The colours of the names, each drawn over the one before it.
    [[nodiscard]] QColor ground(const QByteArray &names) const
    {
        QColor result;
        for (const QByteArray &name : names.split(' '))
            result = result.isValid() ? over(color(name), result) : color(name);
        return result;
    }
    /// The sidebar is translucent: what is behind the window may be anything.
    [[nodiscard]] QList<QColor> onSidebar(const QByteArray &names) const
    {
        QList<QColor> grounds;
        for (const QColor &behind : {QColor(Qt::black), QColor(Qt::white)}) {
            QColor ground = over(color("sidebar"), behind);
            for (const QByteArray &name : names.split(' ')) {
                if (!name.isEmpty())
                    ground = over(color(name), ground);
            }
            grounds << ground;
        }
        return grounds;
    }
    static void add(const char *what, const QColor &ink, const QList<QColor> &grounds, double least)
    {
        for (qsizetype i = 0; i < grounds.size(); ++i)
            QTest::addRow("%s, %d", what, int(i)) << ink << grounds[i] << least;
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_engine.addImportPath(u":/qt/qml"_s);
        QQmlComponent component(&m_engine);
        component.setData(
            "import QtQml\nimport Plim.Shell\nQtObject { property QtObject t: Theme }", {});
        m_holder.reset(component.create());
        QVERIFY2(m_holder, qPrintable(component.errorString()));
        m_theme = m_holder->property("t").value<QObject *>();
        QVERIFY(m_theme);
    }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void everyTextIsReadableOnItsGround_data();
    void everyTextIsReadableOnItsGround()
    {
        QFETCH(QColor, ink);
        QFETCH(QColor, ground);
        QFETCH(double, least);
        const double ratio = contrast(ink, ground);
        QVERIFY2(ratio >= least, qPrintable(u"%1 : 1, wanted %2"_s.arg(ratio).arg(least)));
    }

    void whatIsWrittenOnGlassIsReadableWhateverIsBehind_data();
    void whatIsWrittenOnGlassIsReadableWhateverIsBehind();

    void contrastIsMeasuredAsItShouldBe()
    {
        QCOMPARE(std::round(contrast(Qt::white, Qt::black) * 100), 2100);
        QCOMPARE(std::round(contrast(QColor(0x77, 0x77, 0x77), Qt::white) * 100), 448);
        QCOMPARE(std::round(contrast(faded(Qt::white, 0.5), Qt::white) * 100), 100);
    }

    void movementIsShortAndSeen()
    {
        setMoving(true);
        for (const char *name :
             {"hoverDuration", "buttonFadeDuration", "glideDuration", "fadeDuration"}) {
            QVERIFY2(number(name) >= 120 && number(name) <= 250, name);
        }
    }

    void nothingMovesWhereTheSystemAsksForThat()
    {
        setMoving(false);
        const auto restore = qScopeGuard([] { setMoving(true); });
        for (int i = 0; i < m_theme->metaObject()->propertyCount(); ++i) {
            const QByteArray name = m_theme->metaObject()->property(i).name();
            if (name.endsWith("Duration"))
                QCOMPARE(number(name), 0);
        }
    }

    void coloursAndFontsAreWrittenDownInTheThemeAlone_data();
    void coloursAndFontsAreWrittenDownInTheThemeAlone();
};

void TestTheme::everyTextIsReadableOnItsGround_data()
{
    QTest::addColumn<QColor>("ink");
    QTest::addColumn<QColor>("ground");
    QTest::addColumn<double>("least");
    const QColor ink = color("ink");
    const auto quiet = [&](const char *opacity) { return faded(ink, number(opacity)); };

    const QList<QColor> rows = onSidebar({}) + onSidebar("rowHovered") + onSidebar("rowSelected");
    const QList<QColor> ticked = onSidebar("rowTicked") + onSidebar("rowHovered rowTicked") +
                                 onSidebar("rowSelected rowTicked");
    add("row", ink, rows + ticked, textContrast);
    add("time", quiet("timeOpacity"), rows, textContrast);
    add("time of a ticked row", quiet("tickedTimeOpacity"), ticked, textContrast);
    add("hit", color("hit"), rows + ticked, textContrast);
    add("tab", quiet("quietTabOpacity"), onSidebar("tabs"), textContrast);
    add("current tab", ink, onSidebar("tabs pill"), textContrast);
    add("language", quiet("quietLanguageOpacity"), onSidebar({}), textContrast);
    add("label of the languages", quiet("footerLabelOpacity"), onSidebar({}), textContrast);
    add("search", ink, onSidebar("field") + onSidebar("fieldFocused"), textContrast);
    add("placeholder", quiet("placeholderOpacity"), onSidebar("field") + onSidebar("fieldFocused"),
        textContrast);
    add("empty list", color("secondaryInk"), onSidebar({}), textContrast);
    add("header button", ink, onSidebar("hoverFill") + onSidebar("pressedFill"), controlContrast);

    add("empty pane", color("secondaryInk"), {ground("emptyPane")}, textContrast);
    const auto button = [&](const QByteArray &behind, const QByteArray &fill) {
        const QByteArray rest = (behind.isEmpty() ? behind : behind + ' ') + fill;
        return QList<QColor>{ground(rest), ground(rest + " hoverFill"),
                             ground(rest + " pressedFill")};
    };
    add("button", ink, button("emptyPane", "buttonFill"), textContrast);
    add("menu's title", quiet("menuOpacity"), {ground("emptyPane")}, textContrast);
    add("lit menu's title", quiet("litMenuOpacity"),
        {over(quiet("hoveredMenuFill"), ground("emptyPane")),
         over(quiet("openMenuFill"), ground("emptyPane"))},
        textContrast);
    add("menu", ink, {ground("sheet"), ground("sheet menuHover")}, textContrast);
    add("symbol in a menu", color("menuSymbolInk"), {ground("sheet"), ground("sheet menuHover")},
        controlContrast);
    add("delete", color("destructive"), button("emptyPane", "buttonFill"), textContrast);
    add("delete permanently", ink, button({}, "destructiveFill"), textContrast);
    add("insert", ink, button({}, "confirmFill"), textContrast);
    add("selected text", ink, {ground("confirmFill")}, textContrast);
    add("dialog's button", ink, button("sheet", "buttonFill"), textContrast);
    add("undo", color("hit"), button({}, "sheet"), textContrast);
    add("sheet", ink, {ground("sheet")}, textContrast);
    add("message", faded(ink, 0.85), {ground("sheet")}, textContrast);
    add("link field", ink, {ground("sheet field")}, textContrast);
    add("link placeholder", quiet("placeholderOpacity"), {ground("sheet field")}, textContrast);
    add("size", ink, {ground("sheet tabs"), ground("sheet tabs pill"), ground("sheet tabs field")},
        textContrast);
    add("option", ink, button({}, "sheet") + button("sheet", "optionFill"), textContrast);
    add("tip", ink, {ground("tip")}, textContrast);
    add("card", color("cardInk"), {over(color("card"), Qt::black), over(color("card"), Qt::white)},
        textContrast);
    add("focus ring", color("accent"),
        onSidebar({}) + onSidebar("rowSelected") + button({}, "destructiveFill") +
            QList<QColor>{ground("emptyPane"), ground("sheet"), ground("confirmFill")},
        controlContrast);

    for (const QString &name : NoteChoices::colors()) {
        const QColor paper = NoteChoices::displayColor(name);
        const QByteArray of = "of the glowing row, " + name.toUtf8();
        QList<QColor> glowing;
        for (const QColor &row : rows)
            glowing << over(faded(paper, number("glowOpacity")), row);
        add("text " + of, ink, glowing, textContrast);
        add("time " + of, quiet("timeOpacity"), glowing, textContrast);
        add("hit " + of, color("hit"), glowing, textContrast);
        add("ring " + of, paper, rows, controlContrast);
    }

    const QColor tool = color("toolInk");
    for (const QString &name : NoteChoices::colors()) {
        const QColor paper = NoteChoices::displayColor(name);
        const QByteArray on = "on " + name.toUtf8();
        add("black " + on, Qt::black, {paper}, textContrast);
        add("note " + on, QColor(0x1c, 0x1c, 0x1e), {paper}, textContrast); // as the page writes
        add("tool " + on, faded(tool, number("toolOpacity")), {paper}, controlContrast);
        add("hovered tool " + on, faded(tool, number("hoveredToolOpacity")),
            {over(color("toolHoverFill"), paper)}, controlContrast);
        add("lit tool " + on, faded(tool, number("litToolOpacity")),
            {over(color("litFill"), paper)}, controlContrast);
        add("menu's title " + on, faded(tool, number("menuOpacity")), {paper}, textContrast);
        add("lit menu's title " + on, faded(tool, number("litMenuOpacity")),
            {over(faded(tool, number("hoveredMenuFill")), paper),
             over(faded(tool, number("openMenuFill")), paper)},
            textContrast);
        add("focus ring of a tool " + on, color("toolRing"), {paper}, controlContrast);
    }
}

void TestTheme::whatIsWrittenOnGlassIsReadableWhateverIsBehind_data()
{
    QTest::addColumn<QString>("note");
    QTest::addColumn<QString>("behind");
    for (const QString &note : NoteChoices::colors()) {
        for (const QString &behind : {u"white"_s, u"black"_s, u"photograph"_s})
            QTest::addRow("%s on %s", qPrintable(note), qPrintable(behind)) << note << behind;
    }
}

// As it is drawn: the glass is of several layers, with grain in it.
void TestTheme::whatIsWrittenOnGlassIsReadableWhateverIsBehind()
{
    QFETCH(QString, note);
    QFETCH(QString, behind);
    Stage stage(R"(
        property alias tint: card.tint
        property alias behind: photograph.source
        Image { id: photograph; anchors.fill: parent }
        GlassCard { id: card; anchors.fill: parent; tint: "transparent" }
    )",
                QSize(300, 340));
    const QString file = m_home.path(behind + u".png"_s); // of its own: Qt remembers it
    QVERIFY(behind == "photograph"_L1 ? photograph(stage.window()->size()).save(file)
                                      : flat(stage.window()->size(), behind).save(file));
    setMoving(false);
    const auto restore = qScopeGuard([] { setMoving(true); });
    QVERIFY(stage.window()->setProperty("behind", QUrl::fromLocalFile(file)));
    QVERIFY(stage.window()->setProperty("tint", NoteChoices::displayColor(note)));
    const QImage picture = pictureOf(stage.window());

    struct Writing {
        const char *what;
        QColor ink;
        double least;
        QRect where;
    };
    const QRect card(QPoint(0, 0), stage.window()->size());
    const int top = int(number("stickyTop"));
    const int padding = int(number("stickyPadding"));
    const QRect controls(card.right() - 110, 6, 104, 28);
    const QRect text = card.adjusted(padding, top, -int(number("stickyRadius")), -1);
    const QRect title = card.adjusted(padding, 8, -padding, -8); // a capsule is all of the card
    for (const Writing &writing : std::initializer_list<Writing>{
             {"note", QColor(0x1c, 0x1c, 0x1e), textContrast, text}, // as the page writes
             {"title", color("capsuleInk"), textContrast, title},
             {"control", faded(color("toolInk"), number("toolOpacity")), controlContrast, controls},
             {"pinned", faded(color("toolInk"), number("pinnedOpacity")), controlContrast,
              controls},
         }) {
        double worst = 21;
        for (int y = writing.where.top(); y <= writing.where.bottom(); ++y) {
            for (int x = writing.where.left(); x <= writing.where.right(); ++x)
                worst = std::min(worst, contrast(writing.ink, picture.pixelColor(x, y)));
        }
        const QString found = u"%1: %2 : 1"_s.arg(QLatin1StringView(writing.what)).arg(worst);
        QVERIFY2(worst >= writing.least, qPrintable(found));
    }
}

void TestTheme::coloursAndFontsAreWrittenDownInTheThemeAlone_data()
{
    QTest::addColumn<QString>("path");
    int count = 0;
    for (const QString &folder : {u"shell"_s, u"editor"_s, u"sticky"_s, u"mainwindow"_s}) {
        QDirIterator files(QStringLiteral(PLIM_SOURCES) + u'/' + folder, {u"*.qml"_s}, QDir::Files);
        while (files.hasNext()) {
            files.next();
            if (files.fileName() == "Theme.qml"_L1)
                continue;
            QTest::newRow(qPrintable(folder + u'/' + files.fileName())) << files.filePath();
            ++count;
        }
    }
    if (count == 0)
        qFatal("There are no views");
}

void TestTheme::coloursAndFontsAreWrittenDownInTheThemeAlone()
{
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    QStringList names = QColor::colorNames();
    names.removeOne(u"transparent"_s);
    const QRegularExpression written(
        u"(\"#[0-9a-fA-F]{3,8}\"|Qt\\.(rgba|hsla|hsva|color|font)\\b|\\b(color|Color):\\s*\"(%1)\"|"
        "\\b(pixelSize|pointSize|font\\.family|font\\.weight|font\\.bold)\\b|"
        "Qt\\.alpha\\(\"|\\bduration:\\s*[1-9])"_s.arg(names.join(u'|')),
        QRegularExpression::CaseInsensitiveOption);
    const auto match = written.match(text);
    QVERIFY2(!match.hasMatch(), qPrintable(match.captured()));
}

QTEST_MAIN(TestTheme)
#include "tst_theme.moc"
