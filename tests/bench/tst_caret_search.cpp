#include "bench/probe/CaretSearch.h"

#include <QTest>

namespace
{
constexpr int width = 40;
constexpr int height = 30;
constexpr double settled = 2; // seconds
constexpr double never = -1;
constexpr std::uint32_t paper = 0xfff3b0;
constexpr std::uint32_t ink = 0x1c1c1e;

Picture filled(std::uint32_t colour)
{
    return {width, height, std::vector<std::uint32_t>(std::size_t(width) * height, colour)};
}

Picture with(Picture picture, const QRect &box, std::uint32_t colour)
{
    for (int y = box.top(); y <= box.bottom(); ++y) {
        for (int x = box.left(); x <= box.right(); ++x)
            picture.pixels[std::size_t(y) * picture.width + x] = colour;
    }
    return picture;
}

const Picture note = with(filled(paper), {2, 8, 10, 12}, ink); // a word on it
const QRect caretBox(14, 6, 1, 16);

Picture withCaret(const Picture &picture)
{
    return with(picture, caretBox, ink);
}

using Frames = std::vector<Frame>;

/// The frames, and then what is shown and hidden in turn.
Frames andThen(Frames frames, const Picture &shown, const Picture &hidden)
{
    for (const double second : {2.5, 3.0, 3.5, 4.0})
        frames.push_back({second, int(second * 2) % 2 ? hidden : shown});
    return frames;
}

Frames andBlinking(const Frames &frames)
{
    return andThen(frames, withCaret(note), note);
}
} // namespace

Q_DECLARE_METATYPE(std::vector<Frame>)

class TestCaretSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aCaretIsFound_data()
    {
        QTest::addColumn<Frames>("frames");
        QTest::addColumn<double>("seconds");

        QTest::newRow("no frames") << Frames{} << never;
        QTest::newRow("nothing blinks") << Frames{{0.1, note}} << never;
        QTest::newRow("comes with the note") << andBlinking({{0.1, withCaret(note)}}) << 0.1;
        QTest::newRow("comes after the note")
            << andBlinking({{0.1, note}, {0.2, withCaret(note)}}) << 0.2;
        QTest::newRow("the window is empty and light at first")
            << andBlinking({{0.1, filled(paper)}, {0.3, withCaret(note)}}) << 0.3;
        QTest::newRow("the window is empty and dark at first")
            << andBlinking({{0.1, filled(ink)}, {0.3, withCaret(note)}}) << 0.3;
        QTest::newRow("the window fades in")
            << andBlinking(
                   {{0.1, with(filled(0x808080), caretBox, 0x606060)}, {0.3, withCaret(note)}})
            << 0.3;
        QTest::newRow("its paper is on its way to its colour")
            << andBlinking({{0.1, filled(0x403c2c)},
                            {0.2, with(filled(0x807a58), caretBox, ink)},
                            {0.3, withCaret(note)}})
            << 0.2;
        QTest::newRow("a part of it is something else at first")
            << andBlinking(
                   {{0.1, with(filled(paper), QRect(14, 6, 1, 8), ink)}, {0.3, withCaret(note)}})
            << 0.3;
        QTest::newRow("the window is smaller at first")
            << andBlinking({{0.1, {2, 1, {ink, paper}}}, {0.3, withCaret(note)}}) << 0.3;
        QTest::newRow("it has blinked before all came to rest")
            << andBlinking({{0.1, withCaret(note)}, {0.6, note}, {1.1, withCaret(note)}}) << 0.1;
        const Picture button = with(note, {30, 2, 8, 8}, ink);
        QTest::newRow("something else changes once")
            << andThen({{0.1, withCaret(note)}, {2.1, note}}, withCaret(button), button) << 0.1;
        QTest::newRow("something larger blinks")
            << andThen({{0.1, note}}, with(note, {20, 4, 12, 12}, ink), note) << never;
        QTest::newRow("two things blink")
            << andThen({{0.1, note}}, with(withCaret(note), {34, 6, 1, 16}, ink), note) << never;
        QTest::newRow("the window changes its size at last")
            << andThen({{0.1, withCaret(note)}}, withCaret(note), {2, 1, {ink, paper}}) << never;
    }
    void aCaretIsFound()
    {
        QFETCH(Frames, frames);
        QFETCH(double, seconds);
        const auto caret = caretAppearance(frames, settled);
        QCOMPARE(caret ? caret->seconds : never, seconds);
        if (caret) {
            const Area box{caretBox.left(), caretBox.top(), caretBox.width(), caretBox.height()};
            QVERIFY(caret->area == box);
        }
    }
};

QTEST_APPLESS_MAIN(TestCaretSearch)
#include "tst_caret_search.moc"
