#include "bench/probe/CaretSearch.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <span>

namespace
{
constexpr int widest = 6; // pixels, of a caret
constexpr int lowest = 8;
constexpr int highest = 120;
constexpr int surroundings = 3; // pixels to the left and right

struct Box {
    int left = 0;
    int top = 0;
    int right = -1;
    int bottom = -1;

    [[nodiscard]] int width() const { return right - left + 1; }
    [[nodiscard]] int height() const { return bottom - top + 1; }
    [[nodiscard]] bool isLikeACaret() const
    {
        return width() >= 1 && width() <= widest && height() >= lowest && height() <= highest;
    }
    [[nodiscard]] Box widenedIn(const Picture &picture) const
    {
        return {std::max(0, left - surroundings), top,
                std::min(picture.width - 1, right + surroundings), bottom};
    }
};

int pixelDistance(std::uint32_t a, std::uint32_t b)
{
    int distance = 0;
    for (const int shift : {0, 8, 16})
        distance += std::abs(int((a >> shift) & 0xff) - int((b >> shift) & 0xff));
    return distance;
}

std::uint32_t at(const Picture &picture, int x, int y)
{
    return picture.pixels[std::size_t(y) * std::size_t(picture.width) + std::size_t(x)];
}

/// How much the box stands out from what is beside it.
long contrast(const Picture &picture, const Box &box)
{
    const Box wide = box.widenedIn(picture);
    long sum = 0;
    for (int y = box.top; y <= box.bottom; ++y) {
        for (int x = box.left; x <= box.right; ++x)
            sum += pixelDistance(at(picture, x, y), at(picture, wide.left, y)) +
                   pixelDistance(at(picture, x, y), at(picture, wide.right, y));
    }
    return sum;
}

/// What changes there and back again. A change that stays is none of a caret's.
Box blinkingBox(std::span<const Frame> frames)
{
    const Picture &first = frames.front().picture;
    std::vector<int> changes(first.pixels.size());
    for (std::size_t i = 1; i < frames.size(); ++i) {
        for (std::size_t p = 0; p < changes.size(); ++p)
            changes[p] += frames[i].picture.pixels[p] != frames[i - 1].picture.pixels[p];
    }
    Box box{first.width, first.height, -1, -1};
    for (int y = 0; y < first.height; ++y) {
        for (int x = 0; x < first.width; ++x) {
            if (changes[std::size_t(y) * std::size_t(first.width) + std::size_t(x)] < 2)
                continue;
            box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x),
                   std::max(box.bottom, y)};
        }
    }
    return box;
}

bool isOfSize(const Frame &frame, const Picture &other)
{
    return frame.picture.width == other.width && frame.picture.height == other.height;
}
} // namespace

std::optional<Caret> caretAppearance(const std::vector<Frame> &frames, double settled)
{
    if (frames.empty())
        return std::nullopt;
    // The frame that was there already when all had settled counts, too.
    auto first = std::ranges::find_if(frames, [&](const Frame &f) { return f.seconds > settled; });
    if (first != frames.begin())
        --first;
    const std::span<const Frame> last(first, frames.end());
    const Picture &final = last.back().picture;
    if (!std::ranges::all_of(last, [&](const Frame &f) { return isOfSize(f, final); }))
        return std::nullopt;
    const Box box = blinkingBox(last);
    if (!box.isLikeACaret())
        return std::nullopt;

    const auto byContrast = [&](const Frame &a, const Frame &b) {
        return contrast(a.picture, box) < contrast(b.picture, box);
    };
    const Picture &caret = std::ranges::max_element(last, byContrast)->picture;
    // What it stands on may still be changing its colour; a dark window that is still empty shows
    // no caret, though.
    const auto standsOut = [&](const Picture &picture) {
        for (int y = box.top; y <= box.bottom; ++y) {
            const Box row{box.left, y, box.right, y};
            if (contrast(picture, row) * 4 < contrast(caret, row))
                return false;
        }
        return true;
    };
    const auto shown = std::ranges::find_if(frames, [&](const Frame &frame) {
        return isOfSize(frame, final) && standsOut(frame.picture);
    });
    if (shown == frames.end())
        return std::nullopt;
    return Caret{shown->seconds, {box.left, box.top, box.width(), box.height()}};
}
