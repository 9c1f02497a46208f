#pragma once

#include <QtCore/QString>

#include "core/files/FileUrl.h"

namespace larkspan {

// A request for the name of a file to write.
struct FilePanel
{
    QString title;
    FileUrl suggestion; // folder and name that the panel opens with
    QString typeName;   // of the files that are listed: "CSV files"
    QString suffix;     // of the files that are listed, added to a name that has none: "csv"
};

} // namespace larkspan
