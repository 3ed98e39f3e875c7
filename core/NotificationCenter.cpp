#include "core/NotificationCenter.h"

NotificationCenter &NotificationCenter::shared()
{
    static NotificationCenter center;
    return center;
}
