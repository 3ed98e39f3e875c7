#include "sticky/WindowHolder.h"

WindowHolder &WindowHolder::shared()
{
    static WindowHolder holder;
    return holder;
}
