#include "output/FileOperations.h"

#include <cstdio>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace larkspan {

const FileOperations &FileOperations::system()
{
    static const FileOperations operations;
    return operations;
}

int FileOperations::open(int folder, const char *path, int flags, mode_t mode) const
{
    return ::openat(folder, path, flags, mode);
}

int FileOperations::makeFolder(const char *path, mode_t mode) const
{
    return ::mkdir(path, mode);
}

ssize_t FileOperations::read(int fd, void *data, std::size_t size, off_t offset) const
{
    return ::pread(fd, data, size, offset);
}

ssize_t FileOperations::write(int fd, const void *data, std::size_t size, off_t offset) const
{
    return ::pwrite(fd, data, size, offset);
}

int FileOperations::clone(int destination, int source) const
{
    return ::ioctl(destination, FICLONE, source);
}

int FileOperations::truncate(int fd, off_t size) const
{
    return ::ftruncate(fd, size);
}

int FileOperations::chmod(int fd, mode_t mode) const
{
    return ::fchmod(fd, mode);
}

int FileOperations::sync(int fd) const
{
    return ::fsync(fd);
}

int FileOperations::close(int fd) const
{
    return ::close(fd);
}

int FileOperations::lstat(const char *path, struct stat *status) const
{
    return ::lstat(path, status);
}

int FileOperations::statvfs(const char *path, struct statvfs *volume) const
{
    return ::statvfs(path, volume);
}

int FileOperations::renameWithoutClobbering(int folder, const char *from, const char *to) const
{
    return ::renameat2(folder, from, folder, to, RENAME_NOREPLACE);
}

int FileOperations::link(int folder, const char *from, const char *to) const
{
    return ::linkat(folder, from, folder, to, 0);
}

int FileOperations::rename(int folder, const char *from, const char *to) const
{
    return ::renameat(folder, from, folder, to);
}

int FileOperations::remove(int folder, const char *name) const
{
    return ::unlinkat(folder, name, 0);
}

} // namespace larkspan
