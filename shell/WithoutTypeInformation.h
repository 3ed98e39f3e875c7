#pragma once

/// For a function that meets what the web engine has made: that is built without type information,
/// so that the undefined-behaviour sanitizer takes none of it for what it is.
#define WITHOUT_TYPE_INFORMATION __attribute__((no_sanitize("vptr")))
