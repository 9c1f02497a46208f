#pragma once

#include <vector>

#include <QtCore/QString>

#include "core/base/Date.h"
#include "core/files/FileUrl.h"
#include "core/projects/ClipRecord.h"

namespace larkspan {

// A folder that was opened for sorting.
struct Recent
{
    QString name; // its last path component
    FileUrl path;

    friend bool operator==(const Recent &, const Recent &) = default;
};

// Number of them that are kept.
inline constexpr std::size_t recentsLimit = 5;

// One row of the project switcher.
struct ProjectSummary
{
    QString id;
    QString name;
    FileUrl folderPath;
    int clipCount = 0;
    int binCount = 0;    // bins with clips when it was saved
    int reviewCount = 0; // clips still to review when it was saved
    Date savedAt = distantPast;

    friend bool operator==(const ProjectSummary &, const ProjectSummary &) = default;
};

// A sorted shoot as it is kept.
struct CachedProject
{
    ProjectSummary summary;
    std::vector<ClipRecord> clips; // in the engine's order

    friend bool operator==(const CachedProject &, const CachedProject &) = default;
};

// Names a shoot's project after its folder alone, so that sorting the folder again replaces it: the djb2 hash of the
// standardized path, in lower-case hexadecimal.
QString projectID(const FileUrl &folder);

} // namespace larkspan
