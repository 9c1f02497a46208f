#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <system_error>

#include <tl/expected.hpp>

#include "core/files/FileDescriptor.h"
#include "output/FileOperations.h"

namespace larkspan {

// A file that is being written into a folder, under a temporary name. The object holds a lock on it, so that a file
// which a dead process left behind can be told from one that is being written. Deleted with the object unless it was
// given its final name.
class TemporaryFile
{
public:
    TemporaryFile(TemporaryFile &&other) noexcept = default;
    TemporaryFile &operator=(TemporaryFile &&other) = delete;
    ~TemporaryFile();

    // Open for reading and writing; holds the lock.
    int fd() const { return m_fd.get(); }
    const std::string &name() const { return m_name; }

private:
    friend class DestinationFolder;
    TemporaryFile(int folder, std::string name, FileDescriptor fd, const FileOperations &files)
        : m_folder(folder)
        , m_name(std::move(name))
        , m_fd(std::move(fd))
        , m_files(&files)
    {}

    int m_folder;
    std::string m_name; // empty once the file has its final name
    FileDescriptor m_fd;
    const FileOperations *m_files;
};

// A folder that copies arrive in. Holds the folder itself, not its name: what is mounted or moved meanwhile can't
// redirect a copy.
class DestinationFolder
{
public:
    // Makes the folder and those above it where they are missing.
    static tl::expected<DestinationFolder, std::error_code> open(const std::filesystem::path &path,
                                                                 const FileOperations &files);

    const std::filesystem::path &path() const { return m_path; }
    int fd() const { return m_fd.get(); }

    // A new empty file in this folder, which must outlive it.
    tl::expected<TemporaryFile, std::error_code> makeTemporary() const;

    // Gives a finished file its final name: the wanted one, or the first numbered one that is free. A file that has a
    // name is never replaced; only the file system knows which names it takes for the same.
    tl::expected<std::filesystem::path, std::error_code> place(TemporaryFile &file, const std::string &wanted);

    // Gives a finished file this very name, and replaces the file that has it in one step. Never for footage.
    std::error_code replace(TemporaryFile &file, const char *name) const;

    // Makes all names in the folder last, and the folder itself with those above it.
    std::error_code sync() const;

private:
    DestinationFolder(std::filesystem::path path, FileDescriptor fd, const FileOperations &files)
        : m_path(std::move(path))
        , m_fd(std::move(fd))
        , m_files(&files)
    {}

    std::error_code claim(const std::string &temporary, const std::string &name) const;

    std::filesystem::path m_path;
    FileDescriptor m_fd;
    const FileOperations *m_files;
    std::size_t m_longestName = 255;        // bytes
    std::map<std::string, int> m_nextToTry; // the next number of a name that came before
};

// Removes what interrupted runs have left in a folder and in those directly beneath it. A run's copies arrive in
// folders beneath one that is used again: a card's dated folder or a bin's.
void clearInterruptedRuns(const std::filesystem::path &folder, const FileOperations &files);

} // namespace larkspan
