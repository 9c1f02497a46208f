#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace larkspan::test {

// All that is on a disk: by path from its root, the bytes of each file and nothing for each folder.
using DiskContent = std::map<std::string, std::optional<std::string>>;

// The part of the unsynced changes that outlives a power cut. A file system may have written any part of them.
enum class Survival {
    nothing,        // only what was synced
    names,          // every name, but no byte: a new file is empty
    namesAndSizes,  // every name and size; bytes that weren't synced are zeros
    namesAndHalves, // every name; of a file that wasn't synced, the first half
    bytes,          // every byte, but only names that were synced
    everything,
    chance // each name and each block by itself, at random
};
inline constexpr Survival everySurvival[] = {Survival::nothing,        Survival::names, Survival::namesAndSizes,
                                             Survival::namesAndHalves, Survival::bytes, Survival::everything,
                                             Survival::chance};

// Files and folders in two states: as programs see them, and as they were last synced. A file's bytes and size are
// synced with the file; a name, new, changed or gone, with the folder that it is in. Nothing else syncs anything: a
// synced file in a folder whose own name isn't synced is lost. Operations return 0 or an error number, as system calls
// do. Not for several threads.
class LossyFiles
{
public:
    using Number = std::uint64_t;
    static constexpr Number root = 1;

    struct Node
    {
        mode_t mode = 0; // with the type
        std::string bytes;
        std::string syncedBytes;
        std::map<std::string, Number> names; // of a folder
        std::map<std::string, Number> syncedNames;
        nlink_t links = 0;
        timespec modified{};
        timespec changed{};
        bool isFolder() const { return S_ISDIR(mode); }
    };

    // Begins with this content, synced.
    explicit LossyFiles(const DiskContent &content);

    // A number stays valid when the last name is gone, as for a file that is still open. Null for one never given.
    Node *node(Number number);
    struct stat status(Number number) const;
    // 0 if there is no such name.
    Number find(Number folder, const std::string &name) const;

    int make(Number folder, const std::string &name, mode_t mode, Number &made);
    int link(Number file, Number folder, const std::string &name);
    int remove(Number folder, const std::string &name, bool isFolder);
    int rename(Number folder, const std::string &name, Number newFolder, const std::string &newName, bool replaces);
    void write(Number file, std::string_view bytes, std::size_t offset);
    void resize(Number file, std::size_t size);
    void sync(Number number);

    // The remains of a power cut at this moment. seed: of chance.
    DiskContent left(Survival survival, unsigned seed) const;

private:
    class Remains;
    void touch(Node &node);

    std::vector<Node> m_nodes; // by number
    std::int64_t m_clock = 0;  // nanoseconds; a clock of its own, so that no two changes have one time
};

} // namespace larkspan::test
