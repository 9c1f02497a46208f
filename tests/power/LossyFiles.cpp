#include "tests/power/LossyFiles.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <random>
#include <set>

namespace larkspan::test {

namespace {

constexpr std::size_t blockSize = 4096;
constexpr std::int64_t aDayIn2026 = 1'780'000'000; // seconds since 1970

} // namespace

// Walks the tree as it is after a cut.
class LossyFiles::Remains
{
public:
    Remains(const std::vector<Node> &nodes, Survival survival, unsigned seed)
        : m_nodes(nodes)
        , m_survival(survival)
        , m_random(seed)
    {}

    DiskContent content()
    {
        collect(root, {});
        return std::move(m_content);
    }

private:
    void collect(Number folder, const std::filesystem::path &path)
    {
        for (const auto &[name, number] : namesIn(m_nodes[folder])) {
            const Node &node = m_nodes[number];
            const std::filesystem::path place = path / name;
            m_content[place] = node.isFolder() ? std::nullopt : std::optional(bytesOf(node));
            if (node.isFolder()) {
                collect(number, place);
            }
        }
    }

    bool byChance() { return std::uniform_int_distribution(0, 1)(m_random) == 0; }

    std::map<std::string, Number> namesIn(const Node &folder)
    {
        switch (m_survival) {
        case Survival::nothing:
        case Survival::bytes:
            return folder.syncedNames;
        case Survival::chance:
            break;
        default:
            return folder.names;
        }
        std::set<std::string> all;
        for (const auto *names : {&folder.names, &folder.syncedNames}) {
            std::ranges::transform(*names, std::inserter(all, all.end()), [](const auto &name) { return name.first; });
        }
        std::map<std::string, Number> left;
        for (const std::string &name : all) {
            const auto &names = byChance() ? folder.names : folder.syncedNames;
            if (const auto found = names.find(name); found != names.end()) {
                left.insert(*found);
            }
        }
        return left;
    }

    std::string bytesOf(const Node &file)
    {
        const std::string &synced = file.syncedBytes;
        switch (m_survival) {
        case Survival::nothing:
        case Survival::names:
            return synced;
        case Survival::namesAndSizes: {
            std::string bytes = synced;
            bytes.resize(file.bytes.size());
            return bytes;
        }
        case Survival::namesAndHalves:
            return file.bytes == synced ? synced : file.bytes.substr(0, file.bytes.size() / 2);
        case Survival::bytes:
        case Survival::everything:
            return file.bytes;
        case Survival::chance:
            break;
        }
        std::string bytes = file.bytes == synced || byChance() ? file.bytes : synced;
        for (std::size_t at = 0; at < bytes.size() && file.bytes != synced; at += blockSize) {
            std::string block =
                byChance() || at >= synced.size() ? std::string(blockSize, '\0') : synced.substr(at, blockSize);
            if (byChance() && at < file.bytes.size()) {
                block = file.bytes.substr(at, blockSize);
            }
            block.resize(std::min(blockSize, bytes.size() - at));
            bytes.replace(at, block.size(), block);
        }
        return bytes;
    }

    const std::vector<Node> &m_nodes;
    Survival m_survival;
    std::mt19937 m_random;
    DiskContent m_content;
};

LossyFiles::LossyFiles(const DiskContent &content) : m_nodes(root + 1)
{
    m_nodes[root] = {.mode = S_IFDIR | 0755, .links = 2};
    touch(m_nodes[root]);
    for (const auto &[path, bytes] : content) {
        const std::filesystem::path place = path;
        Number folder = root;
        for (const auto &part : place.parent_path()) {
            Number found = find(folder, part);
            if (found == 0) {
                make(folder, part, S_IFDIR | 0755, found);
            }
            folder = found;
        }
        Number made = 0;
        make(folder, place.filename(), bytes ? S_IFREG | 0644 : S_IFDIR | 0755, made);
        m_nodes[made].bytes = bytes.value_or(std::string());
    }
    for (Number number = root; number < m_nodes.size(); ++number) {
        sync(number);
    }
}

LossyFiles::Node *LossyFiles::node(Number number)
{
    return number >= root && number < m_nodes.size() ? &m_nodes[number] : nullptr;
}

struct stat LossyFiles::status(Number number) const
{
    const Node &node = m_nodes[number];
    struct stat status
    {};
    status.st_ino = number;
    status.st_mode = node.mode;
    status.st_nlink = node.links;
    status.st_size = static_cast<off_t>(node.bytes.size());
    status.st_blksize = blockSize;
    status.st_blocks = static_cast<blkcnt_t>((node.bytes.size() + 511) / 512);
    status.st_atim = node.modified;
    status.st_mtim = node.modified;
    status.st_ctim = node.changed;
    return status;
}

LossyFiles::Number LossyFiles::find(Number folder, const std::string &name) const
{
    const auto found = m_nodes[folder].names.find(name);
    return found == m_nodes[folder].names.end() ? 0 : found->second;
}

int LossyFiles::make(Number folder, const std::string &name, mode_t mode, Number &made)
{
    if (find(folder, name) != 0) {
        return EEXIST;
    }
    made = m_nodes.size();
    m_nodes.push_back({.mode = mode, .links = S_ISDIR(mode) ? nlink_t(2) : nlink_t(1)});
    m_nodes[folder].names[name] = made;
    touch(m_nodes[made]);
    touch(m_nodes[folder]);
    return 0;
}

int LossyFiles::link(Number file, Number folder, const std::string &name)
{
    if (find(folder, name) != 0) {
        return EEXIST;
    }
    m_nodes[folder].names[name] = file;
    ++m_nodes[file].links;
    touch(m_nodes[folder]);
    return 0;
}

int LossyFiles::remove(Number folder, const std::string &name, bool isFolder)
{
    const Number number = find(folder, name);
    if (number == 0) {
        return ENOENT;
    }
    Node &node = m_nodes[number];
    if (node.isFolder() != isFolder) {
        return isFolder ? ENOTDIR : EISDIR;
    }
    if (!node.names.empty()) {
        return ENOTEMPTY;
    }
    m_nodes[folder].names.erase(name);
    node.links = isFolder ? 0 : node.links - 1;
    touch(m_nodes[folder]);
    return 0;
}

int LossyFiles::rename(Number folder, const std::string &name, Number newFolder, const std::string &newName,
                       bool replaces)
{
    const Number number = find(folder, name);
    const Number other = find(newFolder, newName);
    if (number == 0) {
        return ENOENT;
    }
    if (other != 0 && !replaces) {
        return EEXIST;
    }
    if (other == number) {
        return 0;
    }
    if (other != 0) {
        if (const int error = remove(newFolder, newName, m_nodes[number].isFolder())) {
            return error;
        }
    }
    m_nodes[folder].names.erase(name);
    m_nodes[newFolder].names[newName] = number;
    touch(m_nodes[folder]);
    touch(m_nodes[newFolder]);
    return 0;
}

void LossyFiles::write(Number file, std::string_view bytes, std::size_t offset)
{
    Node &node = m_nodes[file];
    node.bytes.resize(std::max(node.bytes.size(), offset + bytes.size()));
    node.bytes.replace(offset, bytes.size(), bytes);
    touch(node);
}

void LossyFiles::resize(Number file, std::size_t size)
{
    m_nodes[file].bytes.resize(size);
    touch(m_nodes[file]);
}

void LossyFiles::sync(Number number)
{
    m_nodes[number].syncedBytes = m_nodes[number].bytes;
    m_nodes[number].syncedNames = m_nodes[number].names;
}

DiskContent LossyFiles::left(Survival survival, unsigned seed) const
{
    return Remains(m_nodes, survival, seed).content();
}

void LossyFiles::touch(Node &node)
{
    ++m_clock;
    node.modified = {.tv_sec = aDayIn2026 + m_clock / 1'000'000'000, .tv_nsec = m_clock % 1'000'000'000};
    node.changed = node.modified;
}

} // namespace larkspan::test
