#pragma once

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

#include "core/engine/SortSettings.h"
#include "core/files/FileUrl.h"
#include "core/projects/Project.h"
#include "core/projects/ProjectShelf.h"
#include "core/settings/CloudSettings.h"
#include "core/settings/HandoffFormat.h"
#include "core/settings/NLE.h"
#include "core/settings/SortOptions.h"
#include "core/shoot/Shoot.h"

namespace larkspan {

class CopyHistory;
struct SortSeams;
struct UnfinishedCopy;
struct UnreadableCard;

// The current shoot: takes a folder, lists its video files, runs each through probing, sampling, classifying and the
// bin rules a handful at a time, and holds the clips for the screens.
//
// Lives on the main thread; every member is called and every signal sent there. One background task runs at a time:
// starting another stops the old one, and what the old one still hands over is dropped. The destructor waits for the
// clips in work to end.
class SortEngine : public QObject
{
    Q_OBJECT
    Q_MOC_INCLUDE("core/copies/CopyHistory.h")
    Q_PROPERTY(larkspan::SortEngine::StageKind stage READ stageKind NOTIFY stageChanged)
    Q_PROPERTY(QString stageText READ stageText NOTIFY stageChanged)
    Q_PROPERTY(int done READ done NOTIFY progressChanged)
    Q_PROPERTY(int total READ total NOTIFY progressChanged)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(bool isCopying READ isCopying NOTIFY isCopyingChanged)
    Q_PROPERTY(larkspan::CopyHistory *copyHistory READ copyHistory CONSTANT)
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

    // The screen that the tool shows.
    struct Stage
    {
        StageKind kind = StageKind::empty;
        QString text;                 // emptyFolder: the folder's name; failed: the message
        std::optional<FileUrl> event; // done: the event file

        friend bool operator==(const Stage &, const Stage &) = default;
    };

    using BinCount = larkspan::BinCount;
    using Recent = larkspan::Recent;

    // activeProcessorCount: number of CPUs; sets how many clips are processed at once.
    explicit SortEngine(SortSeams seams, int activeProcessorCount = QThread::idealThreadCount(),
                        QObject *parent = nullptr);
    ~SortEngine() override;

    // Sorts a folder in place.
    void sortFolder(const FileUrl &url);
    // Asks for a folder, then sorts it.
    Q_INVOKABLE void chooseFolder();
    // Asks for the Shoots folder.
    Q_INVOKABLE void chooseImportRoot();
    // Copies a card into a dated folder under importRoot, then sorts the copy. Does nothing without an importRoot.
    void importCard(const FileUrl &source, const QString &volumeName);
    // Restores a sorted shoot as it was saved, without sorting, and samples its thumbnails anew. One that can't be read
    // leaves the list, and nothing else changes. Footage that is gone only lacks its thumbnails.
    Q_INVOKABLE void openProject(const QString &id);
    // Blanks at the ends are cut off; a name of nothing else is none.
    Q_INVOKABLE void renameProject(const QString &id, const QString &name);
    // The clips stay on screen if it is the one on show.
    Q_INVOKABLE void deleteProject(const QString &id);
    // Puts the project that was deleted last back where it was, if there is one: see deletedProject().
    Q_INVOKABLE void restoreProject();
    // Drops everything, the running task included. A card's copy that this ends early keeps its folder's name.
    Q_INVOKABLE void reset();
    // The same before the program ends, which is no cancelling.
    Q_INVOKABLE void resetToQuit();
    // Copies or moves the footage if the options say so, writes the event and goes to done, or to failed. Does nothing
    // without a folder, or for an editor that can't read the event.
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

    // The editor's edits: see Shoot. Each that is one is saved. Undoing and redoing select a bin that shows the change,
    // and work in the results only: a running copy uses the bins as they are.
    Q_INVOKABLE void reassign(const QUuid &id, const QString &bin);
    Q_INVOKABLE void toggleExtraBin(const QUuid &id, const QString &bin);
    Q_INVOKABLE void setSecondBin(const QUuid &id, const QString &bin);
    Q_INVOKABLE void confirm(const QUuid &id);
    Q_INVOKABLE void confirmAll();
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();
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
    CopyHistory *copyHistory();
    // The imported cards of which folders couldn't be read, in the order of the imports. Stay until they are dismissed.
    const std::vector<UnreadableCard> &unreadableCards() const;
    Q_INVOKABLE void dismissUnreadableCards();
    // The copies that ended before their last file, in the order in which they became known. A card's folder is
    // then "… (unfinished)". Stay, over the end of the program too, until they are dismissed.
    std::vector<UnfinishedCopy> unfinishedCopies() const;
    Q_INVOKABLE void dismissUnfinishedCopies();
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
    // Returns the path of the written event, for people; "" before.
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
    // Returns the path of the Shoots folder, for people; "" without one.
    QString importRootPath() const { return importRoot() ? importRoot()->displayPath() : QString(); }
    bool isRemovableImport() const { return m_isRemovableImport; }
    const std::optional<QString> &importVolumeName() const { return m_importVolumeName; }

    // Returns the number of clips that are processed at once.
    int width() const { return m_width; }

Q_SIGNALS:
    void stageChanged();
    // The list or anything in it: bins, counts and lists are to be read again.
    void clipsChanged();
    void editsChanged(); // editToUndo(), editToRedo()
    void progressChanged();
    void isCopyingChanged();
    void unreadableCardsChanged();
    void unfinishedCopiesChanged();
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
    // The background work, by subject.
    class Sorting;
    class Copies;
    class CardImport;
    class Footage;
    class Exporting;
    struct Parts;

    // The properties' side of what is above.
    StageKind stageKind() const { return m_stage.kind; }
    QString stageText() const { return m_stage.text; }
    QString selectedBinText() const { return m_selectedBin.value_or(QString()); }
    void selectBin(const QString &bin) { setSelectedBin(bin.isEmpty() ? std::nullopt : std::optional(bin)); }

    void cancelTask();
    void dropShoot();
    void clearClips();
    void beginWorking(const FileUrl &folder);
    void setStage(Stage stage);
    void setProgress(int done, int total);
    void setShoot(Shoot shoot);
    // The clips, their bins and the edits have changed.
    void announceClips();
    void setFolder(std::optional<FileUrl> folder);
    std::vector<ClipPtr> clipsOnShow() const;
    // Selects a bin that has one of these clips, or had one before. A preview of another clip closes.
    void showRefiled(const Shoot::Refiled &refiled, const std::vector<ClipPtr> &shownBefore);
    // Leaves the review list if it is empty, and saves.
    void finishEdit();
    void saveEdit();
    // Makes this folder's project the current one, under the name that the editor may have given it.
    void adoptProject(const FileUrl &folder);
    void saveCurrentProject();

    const int m_width;
    ProjectShelf m_shelf;
    SortSettings m_settings;
    CloudSettings m_cloudSettings;

    Stage m_stage;
    Shoot m_shoot;
    int m_done = 0;
    int m_total = 0;
    std::optional<FileUrl> m_folder;
    std::optional<QString> m_selectedBin;
    ClipPtr m_previewClip;
    std::optional<QString> m_currentProjectID;
    QString m_projectName;
    bool m_isRemovableImport = false;
    std::optional<QString> m_importVolumeName;
    int m_copies = 0; // under way

    const std::unique_ptr<Parts> m_parts; // ends first: its tasks land in the rest
};

} // namespace larkspan
