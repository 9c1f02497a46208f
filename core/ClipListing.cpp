#include "core/ClipListing.h"

#include <algorithm>
#include <array>
#include <system_error>

#include <QtCore/QCollator>
#include <QtCore/QLocale>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

namespace fs = std::filesystem;

bool hasExtensionAmong(const fs::path &name, std::span<const QString> extensions)
{
    const QString extension = FileUrl(name).pathExtension().toLower();
    return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

bool isVideoFile(const fs::path &name)
{
    static const std::array types{u"mp4"_s, u"mov"_s,  u"m4v"_s,  u"mxf"_s, u"avi"_s,
                                  u"mts"_s, u"m2ts"_s, u"braw"_s, u"insv"_s};
    return hasExtensionAmong(name, types);
}

// Folders that their makers show as one document: what lies in them is no footage of this shoot.
bool isPackage(const fs::path &name)
{
    static const std::array types{u"app"_s,           u"bundle"_s,        u"fcpbundle"_s, u"fcparch"_s,
                                  u"imovielibrary"_s, u"photoslibrary"_s, u"theater"_s,   u"framework"_s};
    return hasExtensionAmong(name, types);
}

bool isHidden(const fs::path &name)
{
    return name.native().starts_with('.');
}

// Adds one folder's clips, and the folders to look into next.
void listOneFolder(const fs::path &folder, std::vector<FileUrl> &clips, std::vector<fs::path> &folders)
{
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const fs::path name = entry->path().filename();
        if (isHidden(name)) {
            continue;
        }
        if (isVideoFile(name)) {
            clips.emplace_back(entry->path());
        }
        std::error_code unknown; // a file whose kind can't be told is no folder to look into
        if (entry->symlink_status(unknown).type() == fs::file_type::directory && !isPackage(name)) {
            folders.push_back(entry->path());
        }
    }
}

QCollator naturalOrder()
{
    // The plain C locale knows no numbers in names, and a desktop without a language has that one.
    const QLocale locale = QLocale::system().language() == QLocale::C ? QLocale(QLocale::English) : QLocale::system();
    QCollator collator(locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

} // namespace

std::vector<FileUrl> listClips(const FileUrl &folder)
{
    std::vector<FileUrl> clips;
    std::vector<fs::path> folders{folder.path()};
    while (!folders.empty()) {
        const fs::path next = std::move(folders.back());
        folders.pop_back();
        listOneFolder(next, clips, folders);
    }

    struct Keyed
    {
        QCollatorSortKey key;
        FileUrl url;
    };
    const QCollator order = naturalOrder();
    std::vector<Keyed> keyed;
    keyed.reserve(clips.size());
    for (FileUrl &url : clips) {
        keyed.push_back({order.sortKey(url.displayPath()), std::move(url)});
    }
    // Names that the order takes for equal ("a.MOV", "a.mov") go by their bytes, so that the list is always the same.
    std::sort(keyed.begin(), keyed.end(), [](const Keyed &a, const Keyed &b) {
        const int byKey = a.key.compare(b.key);
        return byKey != 0 ? byKey < 0 : a.url.path().native() < b.url.path().native();
    });
    std::transform(keyed.begin(), keyed.end(), clips.begin(), [](Keyed &entry) { return std::move(entry.url); });
    return clips;
}

} // namespace larkspan
