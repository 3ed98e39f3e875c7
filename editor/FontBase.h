#pragma once

#include <QUrl>

/// The directory under which the page finds "Fonts/Outfit-….ttf", as a URL with a closing slash.
/// The first place that has the fonts wins; empty when none has.
[[nodiscard]] QUrl fontBaseURL();
