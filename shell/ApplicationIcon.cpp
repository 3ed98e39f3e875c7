#include "shell/ApplicationIcon.h"

using namespace Qt::StringLiterals;

// With its size told, a picture is not read before somebody wants it.
QIcon applicationIcon()
{
    QIcon icon;
    for (const int side : {16, 24, 32, 48, 64, 128})
        icon.addFile(u":/plim/icon/%1.png"_s.arg(side), QSize(side, side));
    return icon;
}
