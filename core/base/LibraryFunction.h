#pragma once

#include <QtCore/QLibrary>

namespace larkspan {

// Finds a function of a library that is loaded only when it is needed; loads it for the first. Returns false, and
// leaves a null pointer, if there is no such library or function.
template <typename Function>
[[nodiscard]] bool findFunction(QLibrary &library, const char *name, Function *&function)
{
    function = reinterpret_cast<Function *>(library.resolve(name));
    return function != nullptr;
}

} // namespace larkspan
