#include "sticky/StickyLog.h"

// The rest is told to who asks for plim.sticky.debug.
Q_LOGGING_CATEGORY(stickyLog, "plim.sticky", QtInfoMsg)
