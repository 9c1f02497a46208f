#pragma once

#include <unistd.h>

namespace larkspan::test {

// Takes the rights of the superuser away for its lifetime, in all threads: permissions mean nothing to root.
class Unprivileged
{
public:
    Unprivileged() : m_wasRoot(geteuid() == 0 && seteuid(nobody) == 0) {}
    ~Unprivileged()
    {
        if (m_wasRoot) {
            // Going back to the real user always succeeds.
            [[maybe_unused]] const int result = seteuid(getuid());
        }
    }
    Unprivileged(const Unprivileged &) = delete;
    Unprivileged &operator=(const Unprivileged &) = delete;

private:
    static constexpr uid_t nobody = 65534;
    const bool m_wasRoot;
};

} // namespace larkspan::test
