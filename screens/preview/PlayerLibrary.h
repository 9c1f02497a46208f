#pragma once

#include <mpv/client.h>
#include <mpv/render_gl.h>

namespace larkspan {

// The functions of libmpv, which is loaded when the first clip is played: it brings some seventy other libraries, which
// would slow down every start and take memory even in the launcher.
struct PlayerLibrary
{
    // Returns the functions, and loads the library at the first call. Null if it isn't installed or has another major
    // version. Any thread.
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

// Returns the functions once a player exists, and the library is loaded.
inline const PlayerLibrary &libmpv()
{
    return *PlayerLibrary::loaded();
}

} // namespace larkspan
