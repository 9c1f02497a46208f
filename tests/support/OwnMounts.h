#pragma once

#include <sched.h>
#include <sys/mount.h>

namespace larkspan::test {

// Gives the calling thread, and those that it starts, a mount namespace of their own: mounts of others don't disturb
// it, and none of its own outlives it. False without the right to mount, and in a root that is no mount itself (a plain
// chroot), whose mounts can't be kept in; errno says which (EPERM, EINVAL).
inline bool takeOwnMounts()
{
    return ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace larkspan::test
