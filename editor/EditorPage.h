#pragma once

#include <QString>

/// The editor page as one HTML document.
///
/// bodyFontSize: the page's --base, in CSS px. rightPadding: right padding of the page's body, in
/// CSS px. A note's content is not part of it; it is pushed once the page has loaded.
[[nodiscard]] QString editorPageDocument(double bodyFontSize, double rightPadding);

/// Runs at document creation, before the page's own script: the channel to the host.
[[nodiscard]] QString editorChannelScript();
