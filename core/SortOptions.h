#pragma once

namespace larkspan {

// What export does to the footage.
enum class FileHandling { inPlace, copy, move };

// How a copy is checked against its source.
enum class VerifyLevel { sizeOnly, checksum };

// Which classifier looks at the frames.
enum class ModelTier { local, cloud };

// How the sort and the export behave. A run takes a copy and keeps it.
struct SortOptions
{
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
