#include "shell/window/DisplayRoom.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

namespace larkspan {

QSizeF DisplayRoom::now()
{
    return QGuiApplication::primaryScreen()->availableSize();
}

} // namespace larkspan
