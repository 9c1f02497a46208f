#include "screens/stages/ShootDrop.h"

#include "core/files/FileUrls.h"

namespace larkspan {

std::optional<FileUrl> shootFolder(const QUrl &dropped)
{
    std::optional<FileUrl> item = fileOfUrl(dropped);
    std::error_code unreadable; // taken for a file
    if (item && !std::filesystem::is_directory(item->path(), unreadable)) {
        item = FileUrl(item->path().parent_path());
    }
    return item;
}

void ShootDrop::take(const QList<QUrl> &urls)
{
    if (!m_engine || urls.isEmpty()) {
        return;
    }
    if (const auto folder = shootFolder(urls.front())) {
        m_engine->sortFolder(*folder);
    }
}

} // namespace larkspan
