#include "screens/preview/PlayerLibrary.h"

#include <optional>

#include <QtCore/QLibrary>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

template <typename Function>
bool find(QLibrary &library, const char *name, Function *&function)
{
    function = reinterpret_cast<Function *>(library.resolve(name));
    return function != nullptr;
}

std::optional<PlayerLibrary> load()
{
    constexpr int majorVersion = MPV_CLIENT_API_VERSION >> 16; // of the headers, and in the library's name
    QLibrary library(u"mpv"_s, majorVersion);
    PlayerLibrary mpv{};
    const bool complete = find(library, "mpv_create", mpv.create) && find(library, "mpv_initialize", mpv.initialize) &&
                          find(library, "mpv_terminate_destroy", mpv.terminateDestroy) &&
                          find(library, "mpv_set_option_string", mpv.setOptionString) &&
                          find(library, "mpv_set_property_string", mpv.setPropertyString) &&
                          find(library, "mpv_set_property_async", mpv.setPropertyAsync) &&
                          find(library, "mpv_observe_property", mpv.observeProperty) &&
                          find(library, "mpv_command_async", mpv.commandAsync) &&
                          find(library, "mpv_wait_event", mpv.waitEvent) &&
                          find(library, "mpv_set_wakeup_callback", mpv.setWakeupCallback) &&
                          find(library, "mpv_render_context_create", mpv.renderContextCreate) &&
                          find(library, "mpv_render_context_free", mpv.renderContextFree) &&
                          find(library, "mpv_render_context_render", mpv.renderContextRender) &&
                          find(library, "mpv_render_context_update", mpv.renderContextUpdate) &&
                          find(library, "mpv_render_context_set_update_callback", mpv.renderContextSetUpdateCallback);
    return complete ? std::optional(mpv) : std::nullopt;
}

} // namespace

const PlayerLibrary *PlayerLibrary::loaded()
{
    static const std::optional<PlayerLibrary> mpv = load();
    return mpv ? &*mpv : nullptr;
}

} // namespace larkspan
