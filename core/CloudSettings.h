#pragma once

#include <QtCore/QString>

namespace larkspan {

// Where and how a cloud model is asked. Read once, when the engine is built; nothing in the program writes them.
struct CloudSettings
{
    QString endpoint;
    QString model;
    QString apiKey; // a secret: never shown, logged or stored by us
    int maxFramesPerClip = 3;

    friend bool operator==(const CloudSettings &, const CloudSettings &) = default;
};

} // namespace larkspan
