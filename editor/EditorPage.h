#pragma once

#include <QString>

/// The editor page as one HTML document, without its script.
///
/// bodyFontSize: the page's --base, in CSS px. rightPadding: right padding of the page's body, in
/// CSS px. A note's content is not part of it; it is pushed once the page has loaded.
[[nodiscard]] QString editorPageDocument(double bodyFontSize, double rightPadding);

/// The page's script, which runs once the document is there. It is no part of the document because
/// that goes to the web engine anew for every editor, and percent-encoded, as an address.
[[nodiscard]] QString editorScript();

/// Runs at document creation, before the page's own script: the channel to the host.
[[nodiscard]] QString editorChannelScript();
