#pragma once

#include <cstddef>

#include <sys/stat.h>
#include <sys/statvfs.h>

namespace larkspan {

// The system calls through which footage passes, so that a test or a benchmark can stand in between. Each answers as
// the call it is named for does: -1 and errno on failure, nothing retried. Called from several threads at once.
class FileOperations
{
public:
    virtual ~FileOperations() = default;

    static const FileOperations &system();

    virtual int open(int folder, const char *path, int flags, mode_t mode) const;
    virtual int makeFolder(const char *path, mode_t mode) const;
    virtual ssize_t read(int fd, void *data, std::size_t size, off_t offset) const;
    virtual ssize_t write(int fd, const void *data, std::size_t size, off_t offset) const;
    // Lets the destination share the source's blocks, where the file system can.
    virtual int clone(int destination, int source) const;
    virtual int truncate(int fd, off_t size) const;
    virtual int chmod(int fd, mode_t mode) const;
    virtual int sync(int fd) const;
    virtual int close(int fd) const;
    // A link is looked at itself.
    virtual int lstat(const char *path, struct stat *status) const;
    virtual int statvfs(const char *path, struct statvfs *volume) const;
    virtual int renameWithoutClobbering(int folder, const char *from, const char *to) const;
    virtual int link(int folder, const char *from, const char *to) const;
    virtual int rename(int folder, const char *from, const char *to) const;
    virtual int remove(int folder, const char *name) const;
};

} // namespace larkspan
