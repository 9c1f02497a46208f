#pragma once

#include <vector>

#include <QtCore/QString>
#include <QtGui/QImage>

namespace larkspan::demo {

// One clip of the sample shoot: what it shows, and how it is recorded.
struct Scene
{
    QString file;     // its name, whose extension decides the container
    QString encoding; // arguments for ffmpeg
    QImage picture;   // what the camera moves over
};

// A small house, drawn: rooms, the front, the pool, a view from above, and a clip with nothing to be seen.
std::vector<Scene> sampleShoot();

} // namespace larkspan::demo
