#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include <QtCore/QFile>

#include "core/copies/UnfinishedCopy.h"

namespace larkspan {

// The copies that are under way and those that ended early, kept in a folder of small files so that the next start of
// the program can tell. A copy under way holds a lock on its file: one that nobody holds any more belongs to a program
// that was killed. Failures are swallowed. Any thread; several programs may share the folder.
class CopyJournal
{
public:
    // A copy that is under way. Gone without a word it looks like one of a program that was killed.
    class Entry
    {
    public:
        // The copy is complete, or its failure is shown: there is nothing to tell at the next start. Does
        // nothing the second time.
        void close();
        // It ended early, and this is to be told until it is forgotten.
        void keep(const UnfinishedCopy &copy);

        const std::filesystem::path &file() const { return m_file; }

    private:
        friend class CopyJournal;
        std::filesystem::path m_file;  // empty where nothing could be written
        std::unique_ptr<QFile> m_lock; // of the file that begin() wrote
    };

    // A copy that ended early, and its place in the journal.
    struct Kept
    {
        std::filesystem::path file;
        UnfinishedCopy copy;
    };

    // folder: made when something is written. An empty path keeps nothing.
    explicit CopyJournal(std::filesystem::path folder) : m_folder(std::move(folder)) {}

    // "Larkspan/Unfinished" in the user's data folder; empty where there is none.
    static std::filesystem::path defaultFolder();

    bool keepsNothing() const { return m_folder.empty(); }
    // No copy is under way, ended early or was cut off, in this program or another.
    bool isEmpty() const;

    // copy: as it would be if the program were killed now.
    [[nodiscard]] Entry begin(const UnfinishedCopy &copy) const;
    // All that ended early or was cut off, in order of their files' names.
    [[nodiscard]] std::vector<Kept> leftBehind() const;
    // Replaces what is kept of a copy.
    static void replace(const Kept &kept);
    static void forget(const std::filesystem::path &file);

private:
    const std::filesystem::path m_folder;
};

} // namespace larkspan
