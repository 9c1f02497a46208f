#define FUSE_USE_VERSION 34

#include "tests/power/PowerCutDisk.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <fuse_lowlevel.h>
#include <linux/fs.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace larkspan::test {

// Each function answers one kind of request. Names are those of FUSE.
struct PowerCutDisk::Calls
{
    using Number = LossyFiles::Number;

    // Runs the call if there is power, and answers with the error that it returns. A call that returns 0 has answered
    // itself.
    template <typename Call>
    static void answer(fuse_req_t request, const Call &call)
    {
        auto &disk = *static_cast<PowerCutDisk *>(fuse_req_userdata(request));
        if (disk.hasPower(request)) {
            if (const int error = call(disk)) {
                fuse_reply_err(request, error);
            }
        }
    }

    template <typename Call>
    static void answerDone(fuse_req_t request, const Call &call)
    {
        answer(request, [&](PowerCutDisk &disk) {
            const int error = call(disk);
            return error == 0 ? replied(fuse_reply_err(request, 0)) : error;
        });
    }

    // A reply that the kernel no longer waits for is no error.
    static int replied(int) { return 0; }

    static fuse_entry_param entry(const PowerCutDisk &disk, Number number)
    {
        fuse_entry_param entry{};
        entry.ino = number;
        entry.attr = disk.m_files.status(number);
        entry.attr.st_uid = ::getuid();
        entry.attr.st_gid = ::getgid();
        return entry;
    }

    static int replyAttributes(fuse_req_t request, const PowerCutDisk &disk, Number number)
    {
        const auto found = entry(disk, number);
        return replied(fuse_reply_attr(request, &found.attr, 0.0));
    }

    static void init(void *, fuse_conn_info *connection)
    {
        // Programs see what they wrote only because it was written here.
        connection->want &= ~static_cast<unsigned>(FUSE_CAP_WRITEBACK_CACHE);
    }

    static void lookup(fuse_req_t request, fuse_ino_t folder, const char *name)
    {
        answer(request, [&](PowerCutDisk &disk) {
            const Number found = disk.m_files.find(folder, name);
            const auto param = found == 0 ? fuse_entry_param{} : entry(disk, found);
            return found == 0 ? ENOENT : replied(fuse_reply_entry(request, &param));
        });
    }

    static void getattr(fuse_req_t request, fuse_ino_t number, fuse_file_info *)
    {
        answer(request, [&](PowerCutDisk &disk) { return replyAttributes(request, disk, number); });
    }

    static void setattr(fuse_req_t request, fuse_ino_t number, struct stat *wanted, int what, fuse_file_info *)
    {
        answer(request, [&](PowerCutDisk &disk) {
            LossyFiles::Node &node = *disk.m_files.node(number);
            if ((what & FUSE_SET_ATTR_SIZE) != 0) {
                disk.m_files.resize(number, static_cast<std::size_t>(wanted->st_size));
            }
            if ((what & FUSE_SET_ATTR_MODE) != 0) {
                node.mode = (node.mode & S_IFMT) | (wanted->st_mode & 07777U);
            }
            if ((what & FUSE_SET_ATTR_MTIME) != 0) {
                node.modified = wanted->st_mtim;
            }
            return replyAttributes(request, disk, number);
        });
    }

    static int makeAndReply(fuse_req_t request, PowerCutDisk &disk, Number folder, const char *name, mode_t mode,
                            const fuse_file_info *file)
    {
        Number made = 0;
        if (const int error = disk.m_files.make(folder, name, mode, made)) {
            return error;
        }
        const auto param = entry(disk, made);
        return file == nullptr ? replied(fuse_reply_entry(request, &param))
                               : replied(fuse_reply_create(request, &param, file));
    }

    static void mkdir(fuse_req_t request, fuse_ino_t folder, const char *name, mode_t mode)
    {
        answer(request,
               [&](PowerCutDisk &disk) { return makeAndReply(request, disk, folder, name, S_IFDIR | mode, nullptr); });
    }

    static void create(fuse_req_t request, fuse_ino_t folder, const char *name, mode_t mode, fuse_file_info *file)
    {
        file->direct_io = 1;
        answer(request,
               [&](PowerCutDisk &disk) { return makeAndReply(request, disk, folder, name, S_IFREG | mode, file); });
    }

    static void open(fuse_req_t request, fuse_ino_t number, fuse_file_info *file)
    {
        file->direct_io = 1; // every read and every write is a call
        answer(request, [&](PowerCutDisk &disk) {
            if ((file->flags & O_TRUNC) != 0) {
                disk.m_files.resize(number, 0);
            }
            return replied(fuse_reply_open(request, file));
        });
    }

    static void read(fuse_req_t request, fuse_ino_t number, std::size_t size, off_t offset, fuse_file_info *)
    {
        answer(request, [&](PowerCutDisk &disk) {
            const std::string &bytes = disk.m_files.node(number)->bytes;
            const std::size_t start = std::min(static_cast<std::size_t>(offset), bytes.size());
            return replied(fuse_reply_buf(request, bytes.data() + start, std::min(size, bytes.size() - start)));
        });
    }

    static void write(fuse_req_t request, fuse_ino_t number, const char *bytes, std::size_t size, off_t offset,
                      fuse_file_info *)
    {
        answer(request, [&](PowerCutDisk &disk) {
            disk.m_files.write(number, {bytes, size}, static_cast<std::size_t>(offset));
            return replied(fuse_reply_write(request, size));
        });
    }

    static void flush(fuse_req_t request, fuse_ino_t, fuse_file_info *)
    {
        answerDone(request, [](PowerCutDisk &) { return 0; });
    }

    static void fsync(fuse_req_t request, fuse_ino_t number, int, fuse_file_info *)
    {
        answerDone(request, [&](PowerCutDisk &disk) {
            disk.m_files.sync(number);
            return 0;
        });
    }

    static void unlink(fuse_req_t request, fuse_ino_t folder, const char *name)
    {
        answerDone(request, [&](PowerCutDisk &disk) { return disk.m_files.remove(folder, name, false); });
    }

    static void rmdir(fuse_req_t request, fuse_ino_t folder, const char *name)
    {
        answerDone(request, [&](PowerCutDisk &disk) { return disk.m_files.remove(folder, name, true); });
    }

    static void rename(fuse_req_t request, fuse_ino_t folder, const char *name, fuse_ino_t newFolder,
                       const char *newName, unsigned flags)
    {
        answerDone(request, [&](PowerCutDisk &disk) {
            const unsigned known = disk.m_claims == Claims::rename ? RENAME_NOREPLACE : 0;
            return (flags & ~known) != 0 ? EINVAL : disk.m_files.rename(folder, name, newFolder, newName, flags == 0);
        });
    }

    static void link(fuse_req_t request, fuse_ino_t number, fuse_ino_t folder, const char *name)
    {
        answer(request, [&](PowerCutDisk &disk) {
            const int error = disk.m_claims == Claims::neither ? EPERM : disk.m_files.link(number, folder, name);
            const auto param = entry(disk, number);
            return error != 0 ? error : replied(fuse_reply_entry(request, &param));
        });
    }

    static void readdir(fuse_req_t request, fuse_ino_t number, std::size_t size, off_t offset, fuse_file_info *)
    {
        answer(request, [&](PowerCutDisk &disk) {
            std::string listing;
            off_t place = 0;
            for (const auto &[name, found] : disk.m_files.node(number)->names) {
                const struct stat status = disk.m_files.status(found);
                if (++place <= offset) {
                    continue;
                }
                const std::size_t length = fuse_add_direntry(request, nullptr, 0, name.c_str(), nullptr, 0);
                if (listing.size() + length > size) {
                    break;
                }
                listing.resize(listing.size() + length);
                fuse_add_direntry(request, listing.data() + listing.size() - length, length, name.c_str(), &status,
                                  place);
            }
            return replied(fuse_reply_buf(request, listing.data(), listing.size()));
        });
    }

    static void statfs(fuse_req_t request, fuse_ino_t)
    {
        answer(request, [&](PowerCutDisk &) {
            struct statvfs volume
            {};
            volume.f_bsize = 4096;
            volume.f_frsize = 4096;
            volume.f_blocks = 1 << 20;
            volume.f_bfree = 1 << 20;
            volume.f_bavail = 1 << 20;
            volume.f_namemax = 255;
            return replied(fuse_reply_statfs(request, &volume));
        });
    }
};

const fuse_lowlevel_ops &PowerCutDisk::operations()
{
    static const fuse_lowlevel_ops operations = [] {
        fuse_lowlevel_ops calls{};
        calls.init = Calls::init;
        calls.lookup = Calls::lookup;
        calls.getattr = Calls::getattr;
        calls.setattr = Calls::setattr;
        calls.mkdir = Calls::mkdir;
        calls.create = Calls::create;
        calls.open = Calls::open;
        calls.read = Calls::read;
        calls.write = Calls::write;
        calls.flush = Calls::flush;
        calls.fsync = Calls::fsync;
        calls.fsyncdir = Calls::fsync;
        calls.unlink = Calls::unlink;
        calls.rmdir = Calls::rmdir;
        calls.rename = Calls::rename;
        calls.link = Calls::link;
        calls.readdir = Calls::readdir;
        calls.statfs = Calls::statfs;
        return calls;
    }();
    return operations;
}

PowerCutDisk::PowerCutDisk(const DiskContent &content, Claims claims) : m_files(content), m_claims(claims)
{
    std::array<char *, 1> names{const_cast<char *>("power_cut_disk")}; // only read
    fuse_args arguments = FUSE_ARGS_INIT(static_cast<int>(names.size()), names.data());
    m_session = fuse_session_new(&arguments, &operations(), sizeof(fuse_lowlevel_ops), this);
    fuse_opt_free_args(&arguments);
    if (m_session == nullptr || fuse_session_mount(m_session, path().c_str()) != 0) {
        m_whyNot = "nothing may be mounted through FUSE here";
        if (::access("/dev/fuse", R_OK | W_OK) != 0) {
            m_whyNot = std::string("/dev/fuse can't be opened: ") + std::strerror(errno);
        }
        return;
    }
    m_stop = ::eventfd(0, EFD_CLOEXEC);
    m_server = std::thread([this] { serve(); });
}

PowerCutDisk::~PowerCutDisk()
{
    unmount();
    if (m_session != nullptr) {
        fuse_session_destroy(m_session);
    }
}

void PowerCutDisk::unmount()
{
    if (!m_server.joinable()) {
        return;
    }
    ::eventfd_write(m_stop, 1);
    m_server.join();
    ::close(m_stop);
    fuse_session_unmount(m_session);
}

bool PowerCutDisk::hasPower(fuse_req_t request)
{
    ++m_calls;
    if (m_callsLeft-- > 0) {
        return true;
    }
    m_callsLeft = -1;
    fuse_reply_err(request, EIO);
    return false;
}

void PowerCutDisk::serve()
{
    std::array<pollfd, 2> events{pollfd{.fd = fuse_session_fd(m_session), .events = POLLIN, .revents = 0},
                                 pollfd{.fd = m_stop, .events = POLLIN, .revents = 0}};
    fuse_buf request{};
    while (fuse_session_exited(m_session) == 0) {
        if (::poll(events.data(), events.size(), -1) < 0 && errno != EINTR) {
            break;
        }
        if (events[1].revents != 0) {
            break;
        }
        const int size = fuse_session_receive_buf(m_session, &request);
        if (size > 0) {
            fuse_session_process_buf(m_session, &request);
        } else if (size != -EINTR && size != -EAGAIN) {
            break;
        }
    }
    std::free(request.mem);
}

} // namespace larkspan::test
