#include "shell/FolderRequest.h"

#include <utility>

#include "screens/ShootDrop.h"

namespace larkspan {

void FolderRequest::ask(const FolderPanel &panel, std::function<void(FileUrl)> chosen)
{
    m_panel = panel;
    m_chosen = std::move(chosen);
    Q_EMIT asked();
}

void FolderRequest::choose(const QUrl &folder)
{
    const auto chosen = std::exchange(m_chosen, nullptr);
    if (const auto path = shootFolder(folder); path && chosen) {
        chosen(*path);
    }
}

} // namespace larkspan
