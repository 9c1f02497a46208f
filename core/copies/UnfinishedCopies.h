#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "core/copies/CopyJournal.h"

namespace larkspan {

// The copies that ended before their last file. Finds out what each left out, marks the folder of a card's copy as
// unfinished, and keeps them, over the end of the program, until the editor dismisses them.
class UnfinishedCopies
{
public:
    // The files of a folder that a copy of this file may have become, judged by their names.
    using Places = std::function<std::vector<FileUrl>(const FileUrl &file, const FileUrl &folder)>;

    enum class FolderName { marked, kept };

    UnfinishedCopies(CopyJournal journal, Places places) : m_journal(std::move(journal)), m_places(std::move(places)) {}

    // On the copy's thread.
    const CopyJournal &journal() const { return m_journal; }
    // Called once the last file of a stopped copy has ended. None if nothing was left out.
    [[nodiscard]] std::optional<CopyJournal::Kept> stopCard(CopyJournal::Entry &entry, UnfinishedCopy copy,
                                                            FolderName name) const;
    // The same of a card of which nothing was copied, since its clips were still being listed: copy.files has those
    // found so far. None if there are none.
    [[nodiscard]] static std::optional<CopyJournal::Kept> stopListing(CopyJournal::Entry &entry, UnfinishedCopy copy);
    // The same of an export; left out is what is in copy.files.
    [[nodiscard]] static std::optional<CopyJournal::Kept> stopExport(CopyJournal::Entry &entry, UnfinishedCopy copy);
    // The copies that earlier runs of the program left behind. Any thread.
    [[nodiscard]] std::vector<CopyJournal::Kept> leftBehind() const;

    // On the main thread.
    void add(const CopyJournal::Kept &copy) { m_copies.push_back(copy); }
    // In the order in which they were added.
    [[nodiscard]] std::vector<UnfinishedCopy> copies() const;
    void dismiss();

private:
    // Looks at what a killed program has left of a copy. False while its disk isn't connected.
    [[nodiscard]] bool settleCutOff(UnfinishedCopy &copy) const;
    // Leaves those files of a card in the list that aren't in its folder.
    void keepMissing(UnfinishedCopy &card) const;

    const CopyJournal m_journal;
    const Places m_places;
    std::vector<CopyJournal::Kept> m_copies;
};

} // namespace larkspan
