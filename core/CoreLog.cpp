#include "core/CoreLog.h"

Q_LOGGING_CATEGORY(plimCore, "plim.core")
