#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

#include <QtCore/QUuid>
#include <QtGui/QImage>
#include <tl/expected.hpp>

#include "core/clips/FrameClassifier.h"
#include "core/clips/MediaClip.h"
#include "core/copies/CopyLog.h"
#include "core/copies/CopyRecord.h"
#include "core/projects/ProjectCache.h"
#include "core/settings/CloudSettings.h"
#include "core/settings/SettingsStore.h"
#include "core/settings/SortOptions.h"

namespace larkspan {

// Frames of one clip in time order. QImage shares its pixels, which nobody changes once a frame is made.
using Frames = std::vector<QImage>;

// Progress of a long operation, (done, total); called on the thread that does the work.
using ProgressCallback = std::function<void(int done, int total)>;

// Where one file was read from, and where its verified copy now is.
struct CopyResult
{
    FileUrl sourceURL;
    FileUrl destinationURL;

    friend bool operator==(const CopyResult &, const CopyResult &) = default;
};

// A failed copy; the text is the one people read.
struct CopyFailure
{
    QString description;
};

// Says how files are copied, and who hears of it.
struct CopyOrder
{
    VerifyLevel verify = VerifyLevel::sizeOnly;
    ProgressCallback progress = {};
    std::stop_token stop = {}; // polled between files; the copy then returns what it has
    CopyObserver observer = {};
};

// What organizing needs to know of a clip.
struct ClipToOrganize
{
    QUuid id;
    FileUrl url;
    QString primaryBin; // the name of its folder

    friend bool operator==(const ClipToOrganize &, const ClipToOrganize &) = default;
};

// The copies, in the order of the files.
using CopyAnswer = tl::expected<std::vector<CopyResult>, CopyFailure>;
// Where the footage of each clip now is, by the clip's id.
using OrganizeAnswer = tl::expected<std::map<QUuid, FileUrl>, CopyFailure>;

// What the engine asks of a folder panel.
struct FolderPanel
{
    QString prompt;  // on the button that accepts
    QString message; // above the list
};

// All that the engine needs and doesn't do itself. The composition root fills it with the real parts, tests with
// hand-made ones. What is said to run off the main thread is called from several threads at once.
struct SortSeams
{
    // Off the main thread. Never fails: an unreadable file yields a clip with its defaults.
    std::function<ClipPtr(const FileUrl &url)> probeClip;
    // Off the main thread. Never fails; fewer frames than asked for, or none, when they can't be read.
    std::function<Frames(const MediaClip &clip, int count, double maxDimension)> sampleFrames;
    // The classifier that stays on this machine. Once per sort, off the main thread: its models may not be loaded yet.
    std::function<std::shared_ptr<const FrameClassifier>()> makeLocalClassifier;
    // The key of the cloud model once the keyring has answered; empty if it has none, or hasn't answered for so long
    // that the sort goes on without it. Asked for, off the main thread, by a sort under the cloud tier that has none.
    std::function<QString(const std::stop_token &stop)> awaitCloudKey;
    // One that lays a cloud model's answer over the local one. Off the main thread, and only with a key in the
    // settings.
    std::function<std::shared_ptr<const FrameClassifier>(const CloudSettings &settings,
                                                         std::shared_ptr<const FrameClassifier> local)>
        makeCloudClassifier;
    // Off the main thread, one file at a time.
    std::function<CopyAnswer(const std::vector<FileUrl> &urls, const FileUrl &destination, const CopyOrder &order)>
        copyFiles;
    // Off the main thread. Copies each clip into a folder under root that is named after its bin, and deletes the
    // sources, if told to, once every copy was verified.
    std::function<OrganizeAnswer(const std::vector<ClipToOrganize> &clips, const FileUrl &root, bool deleteSources,
                                 const CopyOrder &order)>
        organizeByBin;
    // The files in a bin's folder under root that organizing may have made of a clip's file, judged by their names: the
    // clip's, or the same with a number. Any thread.
    std::function<std::vector<FileUrl>(const FileUrl &clip, const FileUrl &root, const QString &bin)> placesInBin;
    // The text of the event file for clips in any order.
    std::function<QString(const std::vector<ClipPtr> &clips, const QString &name)> eventText;
    // The page that reports the copies of a shoot, HTML. Off the main thread.
    std::function<QString(const std::vector<CopyRecord> &copies, const QString &name)> copyReport;
    // Hands a file to the program that is registered for it; failures are nobody's concern.
    std::function<void(const FileUrl &file)> openFile;
    // Shows a file in the file manager.
    std::function<void(const FileUrl &file)> revealFile;
    // Asks for a folder and hands it to the callback, on the main thread; not called back when nothing was chosen.
    std::function<void(const FolderPanel &panel, std::function<void(FileUrl)> chosen)> chooseFolder;
    // Asks how to write the shoot for another program, on the main thread.
    std::function<void()> chooseHandoff;
    // Where the settings are kept; outlives the engine. Without one they last as long as the engine.
    SettingsStore *settings = nullptr;
    // Where sorted shoots are kept; outlives the engine. Without one none is.
    ProjectCache *projects = nullptr;
    // Keeps the records of copies; outlives the engine. Without one they last as long as their shoot is on show.
    const CopyLog *copyLog = nullptr;
    // Folder of the journal of copies that are under way or ended early; nothing is kept if empty.
    std::filesystem::path copyJournal;
};

} // namespace larkspan
