#pragma once

// The inside of SortEngine, for its own sources alone: the background work, parted by subject. Each part changes the
// engine's state on the main thread only.

#include <atomic>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "core/base/TaskRunner.h"
#include "core/clips/ClipListing.h"
#include "core/copies/CopyHistory.h"
#include "core/copies/CopyJournal.h"
#include "core/copies/UnfinishedCopies.h"
#include "core/copies/UnreadableCard.h"
#include "core/engine/SortEngine.h"
#include "core/engine/SortSeams.h"

namespace larkspan {

// Takes the clips of a folder through the pipeline, in batches of the engine's width.
class SortEngine::Sorting
{
public:
    Sorting(SortEngine &engine, Parts &parts) : m_engine(engine), m_parts(parts) {}

    // On the task's thread.
    void run(const TaskRunner::Run &run, const FileUrl &folder);

private:
    // Settings of one sort, from its first clip to its last, whatever the editor changes meanwhile.
    struct Choices
    {
        SortOptions options;
        ModelTier modelTier = ModelTier::local;
        CloudSettings cloudSettings;
    };

    void processClips(const TaskRunner::Run &run, std::span<const FileUrl> urls, const Choices &choices);
    std::vector<ClipPtr> processBatch(const TaskRunner::Run &run, std::span<const FileUrl> urls,
                                      const FrameClassifier &classifier, const SortOptions &options);
    std::shared_ptr<const FrameClassifier> makeClassifier(const TaskRunner::Run &run, const Choices &choices) const;
    // Main thread.
    void finish(const SortOptions &options);

    SortEngine &m_engine;
    Parts &m_parts;
};

// Counts the copies under way, shows their progress, keeps their records, and holds those that lack something.
class SortEngine::Copies
{
public:
    // Footage is being copied for as long as this lives. Made on the main thread; ends on the task's.
    class Scope
    {
    public:
        explicit Scope(Copies &copies);

        // A copy that ends early leaves its folder's name unmarked: for an editor who cancels, or who sorts that very
        // folder. Called before the copy is stopped; any thread.
        void keepFolderName() { m_folderName = UnfinishedCopies::FolderName::kept; }
        UnfinishedCopies::FolderName folderName() const { return m_folderName; }

    private:
        const CountScope m_count;
        std::atomic<UnfinishedCopies::FolderName> m_folderName = UnfinishedCopies::FolderName::marked;
    };

    Copies(SortEngine &engine, Parts &parts);

    // Main thread.
    CopyHistory &history() { return m_history; }
    // Puts the records that were kept of a project in place of those on show, once a thread has read them; none for an
    // empty id.
    void showRecordsOf(const QString &projectID);
    // On a thread, writes the report, named after the shoot's folder, beside the copies of the last run, or into
    // Documents where that can't be; then opens it. Nothing without records, or while one is being written.
    void showReport(const FileUrl &shoot);
    const std::vector<UnreadableCard> &unreadable() const { return m_unreadable; }
    void addUnreadable(const UnreadableCard &card);
    void dismissUnreadable();
    std::vector<UnfinishedCopy> unfinished() const { return m_unfinished.copies(); }
    void dismissUnfinished();
    // On a thread, adds the copies that earlier runs of the program left unfinished, and prunes their log.
    void lookAtEarlierRuns();

    // On the task's thread.
    // Shows the progress of the run's copy, and puts its record into the place given, which outlives the copy.
    CopyOrder orderOf(const TaskRunner::Run &run, VerifyLevel verify, std::optional<CopyRecord> &record);
    CopyJournal::Entry enter(const UnfinishedCopy &whole) const { return m_unfinished.journal().begin(whole); }
    // shoot: the folder whose project the record belongs to.
    void keepRecord(const TaskRunner::Run &run, const FileUrl &shoot, const CopyRecord &record);
    // copy: of a card, with the clips that were listed before the stop.
    void tellOfStoppedListing(CopyJournal::Entry &entry, UnfinishedCopy copy);
    // Returns where the card's folder now is.
    [[nodiscard]] FileUrl tellOfStoppedCard(CopyJournal::Entry &entry, const UnfinishedCopy &copy,
                                            const Scope &copying);
    void tellOfStoppedExport(CopyJournal::Entry &entry, UnfinishedCopy copy, std::span<const ClipToOrganize> clips,
                             const OrganizeAnswer &organized);

private:
    void pruneLog() const;
    void count(int change);
    void add(const CopyJournal::Kept &copy);
    // Adds it on the main thread, also when its run was stopped. Any thread.
    void post(CopyJournal::Kept copy);

    SortEngine &m_engine;
    Parts &m_parts;
    CopyHistory m_history;
    bool m_isReporting = false;
    int m_shownShoots = 0; // so far; records read for an earlier one are dropped
    std::vector<UnreadableCard> m_unreadable;
    UnfinishedCopies m_unfinished;
};

// Copies a card into its folder, which is then sorted.
class SortEngine::CardImport
{
public:
    CardImport(SortEngine &engine, Parts &parts) : m_engine(engine), m_parts(parts) {}

    struct Card
    {
        FileUrl source;
        QString volumeName;
        FileUrl destination;
        VerifyLevel verify = VerifyLevel::sizeOnly;
    };

    // Main thread.
    void start(const Card &card);
    // The copy of the latest card leaves its folder's name unmarked if it ends early.
    void keepFolderName();

private:
    // On the task's thread.
    // Returns whether there is a copy to sort now.
    [[nodiscard]] bool copy(const TaskRunner::Run &run, const Card &card, const Copies::Scope &copying);
    void tellOfUnreadable(const TaskRunner::Run &run, const Card &card, const CardListing &listing);
    void tellOfStoppedListing(CopyJournal::Entry &entry, const Card &card, const CardListing &listing);
    // Copies the clips of the listing. Returns as copy() does. beginning: the journal's entry until there is a folder.
    [[nodiscard]] bool copyClips(const TaskRunner::Run &run, const Card &card, const CardListing &listing,
                                 CopyJournal::Entry &beginning, const Copies::Scope &copying);
    void adoptProject(const TaskRunner::Run &run, const Card &card);
    // folder: where the card's files are now.
    void keepRecord(const TaskRunner::Run &run, const Card &card, const CardListing &listing, const FileUrl &folder,
                    CopyRecord record);

    SortEngine &m_engine;
    Parts &m_parts;
    std::weak_ptr<Copies::Scope> m_copying; // of the latest card
};

// Looks for the footage of reopened clips, and samples the thumbnails that are missing.
class SortEngine::Footage
{
public:
    Footage(SortEngine &engine, Parts &parts) : m_engine(engine), m_parts(parts) {}

    // Main thread.
    // Starts a task that looks for footage that was moved and then samples thumbnails. An export that replaces it goes
    // on with it at its end.
    void load();
    // The task is gone, and a waiting export with it.
    void cancel();
    // The thumbnails go with their clips.
    void forget() { m_lacksThumbnails = false; }
    bool lacksThumbnails() const { return m_lacksThumbnails; }
    bool isLooking() const { return m_isLooking; }
    // Has the export made once the running look is over.
    void exportOnceFound() { m_exportWaits = true; }

private:
    using Clips = std::span<const ClipPtr>;

    // On the task's thread, which reads the copies: the editor may change the clips.
    void look(const TaskRunner::Run &run, Clips clips, Clips copies, std::span<const FileUrl> roots);
    void sample(const TaskRunner::Run &run, Clips clips, Clips copies);

    SortEngine &m_engine;
    Parts &m_parts;
    bool m_lacksThumbnails = false; // their loading hasn't come to its end
    bool m_isLooking = false;       // the running task is, before it samples
    bool m_exportWaits = false;     // the editor has asked for one meanwhile
};

// Copies or moves the footage into a folder for each bin, and writes the event.
class SortEngine::Exporting
{
public:
    Exporting(SortEngine &engine, Parts &parts) : m_engine(engine), m_parts(parts) {}

    // Main thread.
    void start(const FileUrl &folder);
    // The folder that the options say, for a shoot in this one.
    [[nodiscard]] FileUrl folderOfEvent(const FileUrl &folder) const;

private:
    // A shoot on its way out. The clips belong to the main thread.
    struct Work
    {
        FileUrl folder;
        std::vector<ClipPtr> clips;
        FileUrl root; // of the folders by bin
    };

    void organizeAndWrite(const Work &work);
    std::vector<ClipToOrganize> toOrganize(const Work &work) const;
    // The others.
    static std::vector<CopiedFile> notOrganized(const Work &work, std::span<const ClipToOrganize> organized);
    void finishOrganizing(const TaskRunner::Run &run, const Work &work, const OrganizeAnswer &organized);
    // directory: none for the folder that the options say.
    [[nodiscard]] tl::expected<FileUrl, std::error_code> writeEventFile(const Work &work,
                                                                        const std::optional<FileUrl> &directory) const;
    void writeEvent(const Work &work, const std::optional<FileUrl> &directory);

    SortEngine &m_engine;
    Parts &m_parts;
};

struct SortEngine::Parts
{
    Parts(SortEngine &engine, SortSeams seamsOfEngine)
        : seams(std::move(seamsOfEngine))
        , sorting(engine, *this)
        , copies(engine, *this)
        , cards(engine, *this)
        , footage(engine, *this)
        , exporting(engine, *this)
        , tasks({.items = engine.width()})
    {}

    const SortSeams seams;
    Sorting sorting;
    Copies copies;
    CardImport cards;
    Footage footage;
    Exporting exporting;
    TaskRunner tasks; // ends first: a task reads the rest
};

} // namespace larkspan
