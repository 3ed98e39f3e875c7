#pragma once

#include "transfer/HtmlInlines.h"

/// What a page is for.
enum class HtmlUse {
    reading, ///< a file to be kept: the fonts of whoever reads it, after Outfit
    printing ///< the fonts given, and widths and colours that suit paper
};

struct HtmlPage {
    QString title = {};
    QString fontAddress = {}; ///< printing: of the folder of the Outfit faces, with a slash
    HtmlUse use = HtmlUse::reading;
};

/// The document as one readable HTML page with its own style sheet. Nothing in it runs, and it asks
/// for nothing but the pictures.
[[nodiscard]] QString htmlPage(const NoteDocument &document, const HtmlPage &page,
                               const PictureAddress &pictureAddress);
