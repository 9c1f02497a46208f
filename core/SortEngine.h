#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <system_error>
#include <vector>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QThread>
#include <QtCore/QUuid>
#include <tl/expected.hpp>

#include "core/ClipListing.h"
#include "core/CloudSettings.h"
#include "core/CopyHistory.h"
#include "core/FileUrl.h"
#include "core/HandoffFormat.h"
#include "core/NLE.h"
#include "core/Project.h"
#include "core/ProjectShelf.h"
#include "core/Shoot.h"
#include "core/SortOptions.h"
#include "core/SortSeams.h"
#include "core/SortSettings.h"
#include "core/TaskRunner.h"
#include "core/UnfinishedCopies.h"

namespace larkspan {

// The current shoot: takes a folder, lists its video files, runs each through probing, sampling, classifying and the
// bin rules a handful at a time, and holds the clips for the screens.
//
// Lives on the main thread; every member is called and every signal sent there. One background task runs at a time:
// starting another stops the old one, and what the old one still hands over is dropped. The destructor waits for the
// clips in work to end.
class SortEngine : public QObject
{
    Q_OBJECT
    Q_PROPERTY(larkspan::SortEngine::StageKind stage READ stageKind NOTIFY stageChanged)
    Q_PROPERTY(QString stageText READ stageText NOTIFY stageChanged)
    Q_PROPERTY(int done READ done NOTIFY progressChanged)
    Q_PROPERTY(int total READ total NOTIFY progressChanged)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(bool isCopying READ isCopying NOTIFY isCopyingChanged)
    Q_PROPERTY(larkspan::CopyHistory *copyHistory READ copyHistory CONSTANT)
    Q_PROPERTY(QString cardNote READ cardNote NOTIFY cardNoteChanged)
    Q_PROPERTY(QString unfinishedNote READ unfinishedNote NOTIFY unfinishedNoteChanged)
    Q_PROPERTY(bool hasFolder READ hasFolder NOTIFY folderChanged)
    Q_PROPERTY(QString folderName READ folderName NOTIFY folderChanged)
    Q_PROPERTY(QString displayName READ displayName NOTIFY folderChanged)
    Q_PROPERTY(int clipCount READ clipCount NOTIFY clipsChanged)
    Q_PROPERTY(int verticalCount READ verticalCount NOTIFY clipsChanged)
    Q_PROPERTY(int binCount READ binCount NOTIFY clipsChanged)
    Q_PROPERTY(int reviewCount READ reviewCount NOTIFY clipsChanged)
    Q_PROPERTY(bool canExport READ canExport NOTIFY canExportChanged)
    Q_PROPERTY(QString exportSummary READ exportSummary NOTIFY clipsChanged)
    Q_PROPERTY(QString deletedProject READ deletedProject NOTIFY projectsChanged)
    Q_PROPERTY(QString eventPath READ eventPath NOTIFY stageChanged)
    Q_PROPERTY(QString targetName READ targetName NOTIFY targetChanged)
    Q_PROPERTY(larkspan::ModelTier modelTier READ modelTier WRITE setModelTier NOTIFY modelTierChanged)
    Q_PROPERTY(larkspan::SortOptions options READ options WRITE setOptions NOTIFY optionsChanged)
    Q_PROPERTY(QString importRootPath READ importRootPath NOTIFY importRootChanged)
    Q_PROPERTY(bool isRemovableImport READ isRemovableImport NOTIFY folderChanged)
    Q_PROPERTY(bool hasPreview READ hasPreview NOTIFY previewClipChanged)
    Q_PROPERTY(QString selectedBin READ selectedBinText WRITE selectBin NOTIFY selectedBinChanged)

public:
    enum class StageKind { empty, working, results, organizing, done, emptyFolder, failed };
    Q_ENUM(StageKind)

    // Which screen the tool shows.
    struct Stage
    {
        StageKind kind = StageKind::empty;
        QString text;                 // emptyFolder: the folder's name; failed: the message
        std::optional<FileUrl> event; // done: the event file

        friend bool operator==(const Stage &, const Stage &) = default;
    };

    using BinCount = larkspan::BinCount;
    using Recent = larkspan::Recent;

    // activeProcessorCount: what the width of a sort is reckoned from.
    explicit SortEngine(SortSeams seams, int activeProcessorCount = QThread::idealThreadCount(),
                        QObject *parent = nullptr);
    ~SortEngine() override;

    // Sorts a folder in place.
    void sortFolder(const FileUrl &url);
    // Asks for a folder, then sorts it.
    Q_INVOKABLE void chooseFolder();
    // Asks for the Shoots folder.
    Q_INVOKABLE void chooseImportRoot();
    // Copies a card into a dated folder under importRoot, then sorts the copy. Does nothing without an importRoot. What
    // of the card can't be read goes into cardNote.
    void importCard(const FileUrl &source, const QString &volumeName);
    // Restores a sorted shoot as it was saved, without sorting, and samples its thumbnails anew. One that can't be read
    // leaves the list, and nothing else changes. Footage that is gone only lacks its thumbnails.
    Q_INVOKABLE void openProject(const QString &id);
    // Blanks at the ends are cut off; a name of nothing else is none.
    Q_INVOKABLE void renameProject(const QString &id, const QString &name);
    // The clips stay on screen if it is the one on show.
    Q_INVOKABLE void deleteProject(const QString &id);
    // Puts the project that was deleted last back where it was. Nothing if it couldn't be read any more, or if its
    // folder has been sorted again since.
    Q_INVOKABLE void restoreProject();
    // Drops everything, the running task included. A card's copy that this ends early keeps its folder's name: whoever
    // cancels it knows.
    Q_INVOKABLE void reset();
    // The same before the program ends, which is no cancelling.
    Q_INVOKABLE void resetToQuit();
    // Copies or moves the footage into a folder for each bin if the options say so, writes the event and goes to done,
    // or to failed. Does nothing without a folder, or for an editor that can't read the event.
    Q_INVOKABLE void exportEvent();
    // Numbered bins without a gap in their numbers, as an export leaves them.
    void closeGapsInBins();
    // The file that the shoot is written to for another program, in the event's folder. None without a folder.
    [[nodiscard]] std::optional<FileUrl> handoffFile(HandoffFormat format) const;
    // Asks how to write the shoot for another program.
    Q_INVOKABLE void chooseHandoff();
    // Writes the report of this shoot's copies and opens it; nothing where none was copied.
    Q_INVOKABLE void showCopyReport();
    // From done and failed back to the clips.
    Q_INVOKABLE void backToResults();
    // Sorts the current folder once more; nothing without one.
    Q_INVOKABLE void sortAgain();

    // What the editor settles. A clip is named by its id; one that is gone by now is no error. An empty bin is none.
    // Moves a clip to a bin and takes it off the review.
    Q_INVOKABLE void reassign(const QUuid &id, const QString &bin);
    // Tags a clip with a further bin, or takes that tag off. Its review state stays.
    Q_INVOKABLE void toggleExtraBin(const QUuid &id, const QString &bin);
    // Leaves a clip with this one further bin, or with none for an empty one, whatever it had before.
    Q_INVOKABLE void setSecondBin(const QUuid &id, const QString &bin);
    // Accepts a clip as it stands, or every clip under review.
    Q_INVOKABLE void confirm(const QUuid &id);
    Q_INVOKABLE void confirmAll();
    // Takes the last of these edits back, or makes it again, and selects a bin that shows it. Only in the results: a
    // running copy goes by the bins as they are, and elsewhere the change couldn't be seen.
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();
    // The edit that undo() or redo() is about; null for none.
    const EditHistory::Edit *editToUndo() const;
    const EditHistory::Edit *editToRedo() const;

    // Shows a clip's file in the file manager.
    Q_INVOKABLE void revealClip(const QUuid &id);

    // Writes what the classifier saw of each clip as a CSV file, in one step.
    [[nodiscard]] tl::expected<void, std::error_code> exportDiagnostics(const FileUrl &url) const;

    // Hand the written event to its program, or show it in the file manager; nothing before there is one.
    Q_INVOKABLE void openEvent();
    Q_INVOKABLE void revealEvent();

    const Stage &stage() const { return m_stage; }
    const std::vector<ClipPtr> &clips() const { return m_shoot.clips(); }
    int done() const { return m_done; }
    int total() const { return m_total; }
    // done ÷ total, 0 before the total is known.
    double progress() const;
    // Footage is being copied or moved, for this shoot or for one that is on its way out: what was stopped still ends
    // the file that it is at.
    bool isCopying() const { return m_copies > 0; }
    // The copies of the shoot on show. Lives as long as the engine.
    CopyHistory *copyHistory() { return &m_copyHistory; }
    // The folders of imported cards that couldn't be read, a card a line; "" for none. Stays, whatever is sorted
    // next, until it is dismissed.
    const QString &cardNote() const { return m_cardNote; }
    Q_INVOKABLE void dismissCardNote();
    // The copies that ended before their last file and what each left out, a copy a line; "" for none. A card's folder
    // is then "… (unfinished)". Stays, over the end of the program too, until it is dismissed.
    QString unfinishedNote() const { return m_unfinished.note(); }
    Q_INVOKABLE void dismissUnfinishedNote();
    const std::optional<FileUrl> &folder() const { return m_folder; }
    bool hasFolder() const { return m_folder.has_value(); }
    QString folderName() const;
    // The editor's own name for the project, otherwise the folder's.
    QString displayName() const;

    // The clips and their bins: see Shoot.
    int clipCount() const { return m_shoot.clipCount(); }
    int verticalCount() const { return m_shoot.verticalCount(); }
    int binCount() const { return m_shoot.binCount(); }
    int reviewCount() const { return m_shoot.reviewCount(); }
    std::vector<BinCount> binCounts() const { return m_shoot.binCounts(); }
    std::vector<QString> usedBins() const { return m_shoot.usedBins(); }
    std::vector<QString> binChoices() const { return m_shoot.binChoices(); }
    std::vector<ClipPtr> clipsInBin(const QString &bin) const { return m_shoot.clipsInBin(bin); }
    bool isUnderReview(const MediaClip &clip) const { return m_shoot.isUnderReview(clip); }
    const std::set<QUuid> &confirmedReview() const { return m_shoot.confirmedReview(); }
    bool canExport() const { return target() != NLE::premiere && clipCount() > 0; }
    // "House.fcpxml · 12 bins · 74 clips".
    QString exportSummary() const;
    // Where the event was written, for people; "" before.
    QString eventPath() const { return m_stage.event ? m_stage.event->displayPath() : QString(); }
    QString targetName() const { return nleLabel(target()); }

    // The bin on show, the review key, or none.
    const std::optional<QString> &selectedBin() const { return m_selectedBin; }
    void setSelectedBin(std::optional<QString> bin);
    const ClipPtr &previewClip() const { return m_previewClip; }
    void setPreviewClip(ClipPtr clip);
    bool hasPreview() const { return m_previewClip != nullptr; }
    Q_INVOKABLE void closePreview() { setPreviewClip(nullptr); }

    NLE target() const { return m_settings.target(); }
    void setTarget(NLE target);
    ModelTier modelTier() const { return m_settings.modelTier(); }
    void setModelTier(ModelTier tier);
    const CloudSettings &cloudSettings() const { return m_cloudSettings; }
    void setCloudSettings(CloudSettings settings) { m_cloudSettings = std::move(settings); }
    const SortOptions &options() const { return m_settings.options(); }
    void setOptions(const SortOptions &options);
    const std::vector<Recent> &recents() const { return m_settings.recents(); }
    const std::vector<ProjectSummary> &projects() const { return m_shelf.projects(); }
    // The name of the project that restoreProject() would put back; "" if there is none.
    QString deletedProject() const { return m_shelf.deletedProject(); }
    const std::optional<QString> &currentProjectID() const { return m_currentProjectID; }
    const QString &projectName() const { return m_projectName; }
    const std::optional<FileUrl> &importRoot() const { return m_settings.importRoot(); }
    void setImportRoot(std::optional<FileUrl> root);
    // Where the Shoots folder is, for people; "" without one.
    QString importRootPath() const { return importRoot() ? importRoot()->displayPath() : QString(); }
    bool isRemovableImport() const { return m_isRemovableImport; }
    const std::optional<QString> &importVolumeName() const { return m_importVolumeName; }

    // How many clips are in work at once.
    int width() const { return m_width; }

Q_SIGNALS:
    void stageChanged();
    // The list or anything in it: bins, counts and lists are to be read again.
    void clipsChanged();
    void editsChanged(); // editToUndo(), editToRedo()
    void progressChanged();
    void isCopyingChanged();
    void cardNoteChanged();
    void unfinishedNoteChanged();
    void folderChanged();
    void selectedBinChanged();
    void previewClipChanged();
    void targetChanged();
    void canExportChanged();
    void modelTierChanged();
    void optionsChanged();
    void importRootChanged();
    void recentsChanged();
    void projectsChanged();

private:
    using Run = TaskRunner::Run;

    // Settings of one sort, from its first clip to its last, whatever the editor changes meanwhile.
    struct SortChoices
    {
        SortOptions options;
        ModelTier modelTier = ModelTier::local;
        CloudSettings cloudSettings;
    };

    // Footage is being copied for as long as this lives. Made on the main thread; ends on the task's.
    class Copying
    {
    public:
        explicit Copying(SortEngine &engine);

        // Should it end early, its folder isn't marked: for an editor who cancels, or who sorts that very folder. To be
        // said before it is stopped; any thread.
        void keepFolderName() { m_folderName = UnfinishedCopies::FolderName::kept; }
        UnfinishedCopies::FolderName folderName() const { return m_folderName; }

    private:
        const CountScope m_count;
        std::atomic<UnfinishedCopies::FolderName> m_folderName = UnfinishedCopies::FolderName::marked;
    };

    // A card on its way into its folder.
    struct CardCopy
    {
        FileUrl source;
        QString volumeName;
        FileUrl destination;
        VerifyLevel verify = VerifyLevel::sizeOnly;
    };

    // A shoot on its way out. The clips belong to the main thread.
    struct Export
    {
        FileUrl folder;
        std::vector<ClipPtr> clips;
        FileUrl root; // of the folders by bin
    };

    StageKind stageKind() const { return m_stage.kind; }
    QString stageText() const { return m_stage.text; }
    QString selectedBinText() const { return m_selectedBin.value_or(QString()); }
    void selectBin(const QString &bin) { setSelectedBin(bin.isEmpty() ? std::nullopt : std::optional(bin)); }

    // Main thread.
    void cancelTask();
    void countCopies(int change);
    void addCardNote(const QString &note);
    void keepNameOfCardCopy();
    void addUnfinished(const CopyJournal::Kept &copy);
    void tellOfEarlierRuns();
    void dropShoot();
    void clearClips();
    void beginWorking(const FileUrl &folder);
    void setStage(Stage stage);
    void setProgress(int done, int total);
    void setShoot(Shoot shoot);
    // The clips, their bins and the edits have changed.
    void announceClips();
    void setFolder(std::optional<FileUrl> folder);
    void finishSort(const SortOptions &options);
    std::vector<ClipPtr> clipsOnShow() const;
    // Selects a bin that has one of these clips, or had one before. A preview of another clip closes.
    void showRefiled(const Shoot::Refiled &refiled, const std::vector<ClipPtr> &shownBefore);
    // Leaves the review list if it is empty, and saves.
    void finishEdit();
    void saveEdit();
    // Makes this folder's project the current one, under the name that the editor may have given it.
    void adoptProject(const FileUrl &folder);
    void saveCurrentProject();
    // Samples the thumbnails that are missing, after a look for footage that was moved. An export that replaces this
    // task goes on with it at its end.
    void loadThumbnails();
    void organizeAndWrite(const Export &work);
    std::vector<ClipToOrganize> toOrganize(const Export &work) const;
    // The others.
    static std::vector<CopiedFile> notOrganized(const Export &work, std::span<const ClipToOrganize> organized);
    void finishOrganizing(const Run &run, const Export &work, const OrganizeAnswer &organized);
    // Returns where the card's folder now is.
    [[nodiscard]] FileUrl tellOfStoppedCard(CopyJournal::Entry &entry, const UnfinishedCopy &copy,
                                            const Copying &copying);
    void tellOfStoppedExport(CopyJournal::Entry &entry, UnfinishedCopy copy, std::span<const ClipToOrganize> clips,
                             const OrganizeAnswer &organized);
    // The folder that the options say, for a shoot that lies in this one.
    [[nodiscard]] FileUrl folderOfEvent(const FileUrl &folder) const;
    // directory: none for the folder that the options say.
    [[nodiscard]] tl::expected<FileUrl, std::error_code> writeEventFile(const Export &work,
                                                                        const std::optional<FileUrl> &directory) const;
    void writeEvent(const Export &work, const std::optional<FileUrl> &directory);

    // On the task's thread; they reach the engine through the task runner alone.
    void runSort(const Run &run, const FileUrl &folder);
    void processClips(const Run &run, std::span<const FileUrl> urls, const SortChoices &choices);
    std::shared_ptr<const FrameClassifier> makeClassifier(const Run &run, const SortChoices &choices) const;
    void lookForFootage(const Run &run, std::span<const ClipPtr> clips, std::span<const ClipPtr> copies,
                        std::span<const FileUrl> roots);
    void sampleThumbnails(const Run &run, std::span<const ClipPtr> clips, std::span<const ClipPtr> copies);
    // The first half of a card import. Returns whether there is a copy to sort now.
    [[nodiscard]] bool copyCard(const Run &run, const CardCopy &card, const Copying &copying);
    // Shows the progress of the run's copy, and puts its record into the place given, which outlives the copy.
    CopyOrder orderOf(const Run &run, VerifyLevel verify, std::optional<CopyRecord> &record);
    // folder: where the card's files are now.
    void keepCardRecord(const Run &run, const CardCopy &card, const CardListing &listing, const FileUrl &folder,
                        CopyRecord record);
    // shoot: the folder whose project the record belongs to.
    void keepRecord(const Run &run, const FileUrl &shoot, const CopyRecord &record);
    std::vector<ClipPtr> processBatch(const Run &run, std::span<const FileUrl> urls, const FrameClassifier &classifier,
                                      const SortOptions &options);

    const SortSeams m_seams;
    const int m_width;

    ProjectShelf m_shelf;
    SortSettings m_settings;

    Stage m_stage;
    Shoot m_shoot;
    int m_done = 0;
    int m_total = 0;
    std::optional<FileUrl> m_folder;
    std::optional<QString> m_selectedBin;
    ClipPtr m_previewClip;
    CloudSettings m_cloudSettings;
    std::optional<QString> m_currentProjectID;
    QString m_projectName;
    bool m_isRemovableImport = false;
    std::optional<QString> m_importVolumeName;

    int m_copies = 0;                  // the living objects of class Copying
    std::weak_ptr<Copying> m_cardCopy; // the latest one
    CopyHistory m_copyHistory{m_seams};
    QString m_cardNote;
    UnfinishedCopies m_unfinished;
    bool m_lacksThumbnails = false;  // their loading hasn't come to its end
    bool m_looksForFootage = false;  // the running task does, before it loads thumbnails
    bool m_exportsOnceFound = false; // the editor has asked for an export meanwhile
    TaskRunner m_tasks;              // ends first: a task reads the rest
};

} // namespace larkspan
