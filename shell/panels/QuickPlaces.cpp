#include "shell/panels/QuickPlaces.h"

#include <algorithm>
#include <string_view>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QStandardPaths>

#include "core/clips/FootageNames.h"
#include "core/files/FileUrl.h"
#include "output/VolumeDevice.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

namespace fs = std::filesystem;

bool isBelow(const fs::path &folder, std::string_view parent)
{
    return folder.native().starts_with(parent);
}

// People and system services mount anything under /mnt, so there only removable devices count.
bool isPluggedIn(const MountEntry &entry, const fs::path &deviceTree)
{
    const fs::path &folder = entry.mountPoint;
    if (isBelow(folder, "/media/") || isBelow(folder, "/run/media/")) {
        return true;
    }
    if (folder != "/mnt" && !isBelow(folder, "/mnt/")) {
        return false;
    }
    const auto device = VolumeDevice::of(entry, deviceTree);
    return device && device->isRemovable();
}

fs::path pathOf(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

} // namespace

fs::path homeFolder()
{
    return pathOf(QDir::homePath());
}

fs::path videosFolder()
{
    return pathOf(QStandardPaths::writableLocation(QStandardPaths::MoviesLocation));
}

std::vector<QuickPlace> quickPlaces(const fs::path &mountTable, const fs::path &deviceTree)
{
    const auto text = [](const char *english) { return QCoreApplication::translate("QuickPlaces", english); };
    std::vector<QuickPlace> places;
    const auto add = [&places](const QString &name, const fs::path &folder) {
        const bool isKnown = std::ranges::find(places, folder, &QuickPlace::folder) != places.end();
        if (!isKnown) { // without a documents folder, Qt returns home for it
            places.push_back({name, folder});
        }
    };
    const auto addOwn = [&add](const QString &name, const fs::path &folder) {
        std::error_code unreachable;
        if (fs::is_directory(folder, unreachable)) {
            add(name, folder);
        }
    };
    addOwn(text("Home"), homeFolder());
    addOwn(text("Documents"), pathOf(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)));
    addOwn(text("Videos"), videosFolder());

    for (const MountEntry &entry : MountTable(mountTable).read()) {
        if (!isHidden(entry.mountPoint.filename()) && isPluggedIn(entry, deviceTree)) {
            add(FileUrl(entry.mountPoint).lastPathComponent(), entry.mountPoint);
        }
    }
    return places;
}

} // namespace larkspan
