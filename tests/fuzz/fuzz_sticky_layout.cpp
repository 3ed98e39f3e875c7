#include "sticky/StickyLayoutEntry.h"
#include "tests/fuzz/FuzzTarget.h"

#include <array>

// Whatever the settings hold, each window gets a frame that a screen can show.

namespace
{
constexpr std::array screens{StickyFrame{0, 0, 1920, 1080}, StickyFrame{-1280, 56, 1280, 1024}};

void checkFrame(const StickyFrame &frame)
{
    const StickyFrame sized = frame.withPossibleSize();
    require(sized.width >= StickyFrame::minimumWidth && sized.width <= StickyFrame::largest &&
                sized.height >= StickyFrame::minimumHeight && sized.height <= StickyFrame::largest,
            "a window has a possible size");
    require(sized.withPossibleSize() == sized, "a possible size stays");
    const StickyFrame shown = frame.broughtIntoView(screens);
    require(shown.isInView(screens), "a window is in view");
    require(shown.broughtIntoView(screens) == shown, "what is in view stays where it is");
    const QRect onScreen = shown.toScreen({0, 0, 1920, 1080});
    require(onScreen.width() > 0 && onScreen.height() > 0, "a window is on the screen");
    (void)frame.toScreen({0, 0, 1920, 1080});
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QList<StickyLayoutEntry> entries = decodeStickyLayout(bytesOf(data, size));
    require(entries.size() <= qsizetype(size) / 36, "an entry has an id");
    const QByteArray written = encodeStickyLayout(entries);
    constexpr qsizetype longestEntry = 192; // its names, its id and four long numbers
    require(written.size() <= longestEntry * entries.size() + 2,
            "a layout is as long as its entries");
    require(decodeStickyLayout(written) == entries, "what was written is what was read");
    for (const StickyLayoutEntry &entry : entries)
        checkFrame(entry.frame);
    return 0;
}
