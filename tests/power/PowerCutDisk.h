#pragma once

#include <atomic>
#include <filesystem>
#include <thread>

#include "tests/power/LossyFiles.h"
#include "tests/support/TempFolder.h"

struct fuse_lowlevel_ops;
struct fuse_req;
struct fuse_session;

namespace larkspan::test {

// A mounted disk whose power can be cut: from a chosen call on every call fails with EIO, and left() has what is on the
// disk when the power is back. Mounted through FUSE and served by a thread of this process, for as long as the object
// lives; the test itself reads it like any folder. Nothing is cached: every call of a program is one or more here.
class PowerCutDisk
{
public:
    // The ways to give a file a name only if that is free. File systems differ in which they have.
    enum class Claims { rename, link, neither };

    explicit PowerCutDisk(const DiskContent &content = {}, Claims claims = Claims::rename);
    ~PowerCutDisk();
    PowerCutDisk(const PowerCutDisk &) = delete;
    PowerCutDisk &operator=(const PowerCutDisk &) = delete;

    // Empty when it is mounted; otherwise the system's reason.
    const std::string &whyNot() const { return m_whyNot; }
    const std::filesystem::path &path() const { return m_mountPoint.path(); }

    // Lets so many more calls through. Before anything uses the disk.
    void cutAfter(long calls) { m_callsLeft = calls; }
    bool isCut() const { return m_callsLeft < 0; }
    long calls() const { return m_calls; }

    void unmount();
    // Once it is unmounted.
    DiskContent left(Survival survival, unsigned seed = 0) const { return m_files.left(survival, seed); }

private:
    struct Calls; // the answers to the kernel
    static const fuse_lowlevel_ops &operations();

    bool hasPower(fuse_req *request);
    void serve();

    LossyFiles m_files;
    const Claims m_claims;
    std::atomic<long> m_calls = 0;
    std::atomic<long> m_callsLeft = std::numeric_limits<long>::max();

    TempFolder m_mountPoint;
    std::string m_whyNot;
    fuse_session *m_session = nullptr;
    int m_stop = -1; // an event that ends the thread
    std::thread m_server;
};

} // namespace larkspan::test
