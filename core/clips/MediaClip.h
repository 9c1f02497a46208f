#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtCore/QUuid>

#include "core/base/Date.h"
#include "core/clips/FeaturePrint.h"
#include "core/clips/FrameAnalysis.h"
#include "core/clips/Thumbnail.h"
#include "core/clips/Timecode.h"
#include "core/files/FileUrl.h"

namespace larkspan {

// Everything known about one video file: what the file says, what the classifier said, what the editor changed.
// Shared by pointer, without a lock: one owner at a time, first the task that builds it, then the main thread.
// Its fields publish nothing; whoever changes one sends the engine's change notification.
class MediaClip
{
public:
    explicit MediaClip(FileUrl fileUrl) : url(std::move(fileUrl)) {}

    const QUuid id = QUuid::createUuid(); // identity within one run; a reopened clip gets a new one
    const FileUrl url;

    double duration = 0.0;                  // seconds
    QSizeF naturalSize{0.0, 0.0};           // pixels, before the track's transform
    QSizeF displaySize{0.0, 0.0};           // pixels, as the picture is shown
    std::int64_t frameDurationValue = 1001; // one frame lasts value / scale seconds
    std::int32_t frameDurationScale = 60000;
    Date creationDate = distantPast;
    QString cameraModel;
    std::optional<Timecode> timecode; // of the first frame; none if the file has none
    bool isTimecodeRead = false;      // a reopened clip's isn't yet

    QString primaryBin;             // a bin name, "Unsorted" or a split name such as "Kitchen 2"
    std::vector<QString> extraBins; // secondary bins in order
    double confidence = 0.0;        // share of the evidence, 0 to 1
    QString runnerUp;               // the best other bin, "" if none
    double runnerUpScore = 0.0;
    bool needsReview = false;
    QString reviewReason;
    double humanFraction = 0.0;
    FeaturePrintPtr featurePrint;
    std::vector<RawIdentifier> rawIdentifiers;

    Thumbnail thumbnail;                   // none if no frame could be read
    std::optional<FileUrl> destinationURL; // where the importer put the footage
    std::optional<FileUrl> foundURL;       // of a reopened clip that is gone from its url: where it was found

    // The primary bin, then the extras, without empty names and doubles. This decides membership of a bin everywhere.
    std::vector<QString> bins() const;
    bool isIn(const QString &bin) const;
    // Calls visit with each of them. Makes no list: all clips are counted after every edit.
    template <typename Visit>
    void forEachBin(const Visit &visit) const
    {
        if (!primaryBin.isEmpty()) {
            visit(primaryBin);
        }
        for (auto bin = extraBins.begin(); bin != extraBins.end(); ++bin) {
            if (!bin->isEmpty() && *bin != primaryBin && std::find(extraBins.begin(), bin, *bin) == bin) {
                visit(*bin);
            }
        }
    }
    // The file that an export begins with: the url, or the place where a reopened clip was found.
    const FileUrl &sourceURL() const { return foundURL ? *foundURL : url; }
    // The place of the footage now: its source, or the importer's copy if the source is gone. Asks the file system.
    FileUrl footageURL() const;
    // Nothing is at that place, or it can't be reached. Asks the file system.
    bool isFootageGone() const;
    bool isVertical() const { return displaySize.width() < displaySize.height(); }
    // The length on the clip's own frame grid, at least one frame, in ticks of 1 / frameDurationScale seconds.
    std::int64_t durationTicks() const;
    // The same in seconds: "599599/60000s".
    QString rationalDuration() const;
};

using ClipPtr = std::shared_ptr<MediaClip>;

} // namespace larkspan
