#pragma once

#include <array>

#include <QtCore/QObject>
#include <QtCore/QString>

namespace larkspan {

Q_NAMESPACE

// The treatment of the footage at an export.
enum class FileHandling { inPlace, copy, move };
Q_ENUM_NS(FileHandling)

// The check of a copy against its source.
enum class VerifyLevel { sizeOnly, checksum };
Q_ENUM_NS(VerifyLevel)

// The classifier that looks at the frames.
enum class ModelTier { local, cloud };
Q_ENUM_NS(ModelTier)

inline constexpr std::array allFileHandlings{FileHandling::inPlace, FileHandling::copy, FileHandling::move};
inline constexpr std::array allVerifyLevels{VerifyLevel::sizeOnly, VerifyLevel::checksum};
inline constexpr std::array allModelTiers{ModelTier::local, ModelTier::cloud};

// Returns the text for people: "Leave in place", "Copy into folders", "Move into folders".
QString fileHandlingLabel(FileHandling handling);
// "On This Mac", "Cloud AI".
QString modelTierLabel(ModelTier tier);

// The stored form: the case's name. An unknown one reads as the first case.
QString fileHandlingRawValue(FileHandling handling);
FileHandling fileHandlingFromRawValue(const QString &rawValue);
QString verifyLevelRawValue(VerifyLevel level);
VerifyLevel verifyLevelFromRawValue(const QString &rawValue);
QString modelTierRawValue(ModelTier tier);
ModelTier modelTierFromRawValue(const QString &rawValue);

// The options of the sort and the export. A run takes a copy and keeps it.
struct SortOptions
{
    Q_GADGET
    Q_PROPERTY(bool showClipCounts MEMBER showClipCounts)
    Q_PROPERTY(bool sendUnsureToReview MEMBER sendUnsureToReview)
    Q_PROPERTY(bool splitRepeatedRooms MEMBER splitRepeatedRooms)
    Q_PROPERTY(bool tagOpenPlanTwice MEMBER tagOpenPlanTwice)
    Q_PROPERTY(bool keepDroneExclusive MEMBER keepDroneExclusive)
    Q_PROPERTY(bool openEditorAfterExport MEMBER openEditorAfterExport)
    Q_PROPERTY(bool writeNextToFootage MEMBER writeNextToFootage)
    Q_PROPERTY(larkspan::FileHandling fileHandling MEMBER fileHandling)
    Q_PROPERTY(larkspan::VerifyLevel verifyLevel MEMBER verifyLevel)

public:
    bool showClipCounts = true;
    bool sendUnsureToReview = true;
    bool splitRepeatedRooms = true;
    bool tagOpenPlanTwice = true;
    bool keepDroneExclusive = true;
    bool openEditorAfterExport = true;
    bool writeNextToFootage = true;
    FileHandling fileHandling = FileHandling::inPlace;
    VerifyLevel verifyLevel = VerifyLevel::sizeOnly;

    friend bool operator==(const SortOptions &, const SortOptions &) = default;
};

} // namespace larkspan
