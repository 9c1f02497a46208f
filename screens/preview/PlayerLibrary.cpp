#include "screens/preview/PlayerLibrary.h"

#include <optional>

#include <QtCore/QLibrary>

#include "core/base/LibraryFunction.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

std::optional<PlayerLibrary> load()
{
    constexpr int majorVersion = MPV_CLIENT_API_VERSION >> 16; // of the headers, and in the library's name
    QLibrary library(u"mpv"_s, majorVersion);
    PlayerLibrary mpv{};
    const bool complete =
        findFunction(library, "mpv_create", mpv.create) && findFunction(library, "mpv_initialize", mpv.initialize) &&
        findFunction(library, "mpv_terminate_destroy", mpv.terminateDestroy) &&
        findFunction(library, "mpv_set_option_string", mpv.setOptionString) &&
        findFunction(library, "mpv_set_property_string", mpv.setPropertyString) &&
        findFunction(library, "mpv_set_property_async", mpv.setPropertyAsync) &&
        findFunction(library, "mpv_observe_property", mpv.observeProperty) &&
        findFunction(library, "mpv_command_async", mpv.commandAsync) &&
        findFunction(library, "mpv_wait_event", mpv.waitEvent) &&
        findFunction(library, "mpv_set_wakeup_callback", mpv.setWakeupCallback) &&
        findFunction(library, "mpv_render_context_create", mpv.renderContextCreate) &&
        findFunction(library, "mpv_render_context_free", mpv.renderContextFree) &&
        findFunction(library, "mpv_render_context_render", mpv.renderContextRender) &&
        findFunction(library, "mpv_render_context_update", mpv.renderContextUpdate) &&
        findFunction(library, "mpv_render_context_set_update_callback", mpv.renderContextSetUpdateCallback);
    return complete ? std::optional(mpv) : std::nullopt;
}

} // namespace

const PlayerLibrary *PlayerLibrary::loaded()
{
    static const std::optional<PlayerLibrary> mpv = load();
    return mpv ? &*mpv : nullptr;
}

} // namespace larkspan
