#pragma once

#include <mpv/client.h>
#include <mpv/render_gl.h>

namespace larkspan {

// The functions of libmpv. It is loaded with the first clip that is played: some seventy other libraries come with it,
// which would make every start slower and every launcher larger.
struct PlayerLibrary
{
    // The first call loads it. Null where it isn't installed, or isn't the version that we know. Any thread.
    static const PlayerLibrary *loaded();

    decltype(&mpv_create) create;
    decltype(&mpv_initialize) initialize;
    decltype(&mpv_terminate_destroy) terminateDestroy;
    decltype(&mpv_set_option_string) setOptionString;
    decltype(&mpv_set_property_string) setPropertyString;
    decltype(&mpv_set_property_async) setPropertyAsync;
    decltype(&mpv_observe_property) observeProperty;
    decltype(&mpv_command_async) commandAsync;
    decltype(&mpv_wait_event) waitEvent;
    decltype(&mpv_set_wakeup_callback) setWakeupCallback;
    decltype(&mpv_render_context_create) renderContextCreate;
    decltype(&mpv_render_context_free) renderContextFree;
    decltype(&mpv_render_context_render) renderContextRender;
    decltype(&mpv_render_context_update) renderContextUpdate;
    decltype(&mpv_render_context_set_update_callback) renderContextSetUpdateCallback;
};

// For whoever has a player already, and so the library.
inline const PlayerLibrary &libmpv()
{
    return *PlayerLibrary::loaded();
}

} // namespace larkspan
