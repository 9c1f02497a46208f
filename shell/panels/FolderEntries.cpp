#include "shell/panels/FolderEntries.h"

#include <algorithm>
#include <iterator>

namespace larkspan {

int FolderEntries::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_contents.folders.size() + m_contents.files.size());
}

QVariant FolderEntries::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const bool isFolder = index.row() < folderCount();
    switch (role) {
    case NameRole: {
        const auto row = static_cast<std::size_t>(index.row());
        return QString::fromUtf8(isFolder ? m_contents.folders[row]
                                          : m_contents.files[row - m_contents.folders.size()]);
    }
    case FolderRole:
        return isFolder;
    default:
        return {};
    }
}

QHash<int, QByteArray> FolderEntries::roleNames() const
{
    return {{NameRole, "name"}, {FolderRole, "isFolder"}};
}

QStringList FolderEntries::folderNames() const
{
    QStringList names;
    names.reserve(folderCount());
    for (const std::string &name : m_contents.folders) {
        names.push_back(QString::fromUtf8(name));
    }
    return names;
}

void FolderEntries::show(FolderContents contents)
{
    beginResetModel();
    m_contents = std::move(contents);
    endResetModel();
    Q_EMIT changed();
}

void FolderEntries::update(FolderContents contents)
{
    if (contents == m_contents) {
        return;
    }
    bring(m_contents.folders, 0, std::move(contents.folders));
    bring(m_contents.files, folderCount(), std::move(contents.files));
    Q_EMIT changed();
}

void FolderEntries::bring(std::vector<std::string> &names, int first, std::vector<std::string> wanted)
{
    const auto [begin, wantedBegin] = std::ranges::mismatch(names, wanted);
    auto end = names.end();
    auto wantedEnd = wanted.end();
    while (end != begin && wantedEnd != wantedBegin && *std::prev(end) == *std::prev(wantedEnd)) {
        --end;
        --wantedEnd;
    }
    const auto at = begin - names.begin();
    const int row = first + static_cast<int>(at);
    if (begin != end) {
        beginRemoveRows({}, row, row + static_cast<int>(end - begin) - 1);
        names.erase(begin, end);
        endRemoveRows();
    }
    if (wantedBegin != wantedEnd) {
        beginInsertRows({}, row, row + static_cast<int>(wantedEnd - wantedBegin) - 1);
        names.insert(names.begin() + at, std::make_move_iterator(wantedBegin), std::make_move_iterator(wantedEnd));
        endInsertRows();
    }
}

} // namespace larkspan
