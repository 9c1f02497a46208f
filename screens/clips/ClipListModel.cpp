#include "screens/clips/ClipListModel.h"

#include "screens/clips/ClipThumbnails.h"
#include "screens/clips/DurationText.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

void ClipListModel::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::clipsChanged, this, &ClipListModel::refresh);
    connect(&engine, &SortEngine::selectedBinChanged, this, &ClipListModel::refresh);
}

void ClipListModel::setSource(Source source)
{
    if (m_source != source) {
        m_source = source;
        Q_EMIT sourceChanged();
        refresh();
    }
}

int ClipListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant ClipListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const Row &row = m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case ClipIdRole:
        return row.clip->id;
    case Qt::DisplayRole:
    case NameRole:
        return row.clip->url.baseName();
    case FileNameRole:
        return row.clip->url.lastPathComponent();
    case DurationRole:
        return durationText(row.clip->duration);
    case ThumbnailRole:
        return ClipThumbnails::urlOf(*row.clip);
    case PrimaryBinRole:
        return row.primaryBin;
    case ExtraBinRole:
        return row.extraBins.empty() ? QString() : row.extraBins.front();
    case ExtraBinsRole:
        return QStringList(row.extraBins.begin(), row.extraBins.end());
    case ReviewReasonRole:
        return row.reviewReason;
    default:
        return {};
    }
}

QHash<int, QByteArray> ClipListModel::roleNames() const
{
    return {
        {ClipIdRole, "clipId"},     {NameRole, "name"},           {FileNameRole, "fileName"},
        {DurationRole, "duration"}, {ThumbnailRole, "thumbnail"}, {PrimaryBinRole, "primaryBin"},
        {ExtraBinRole, "extraBin"}, {ExtraBinsRole, "extraBins"}, {ReviewReasonRole, "reviewReason"},
    };
}

void ClipListModel::open(int row)
{
    if (const ClipPtr clip = clipAt(row)) {
        m_engine->setPreviewClip(clip);
    }
}

void ClipListModel::reassign(int row, const QString &bin)
{
    if (const ClipPtr clip = clipAt(row)) {
        m_engine->reassign(clip->id, bin);
    }
}

void ClipListModel::toggleExtraBin(int row, const QString &bin)
{
    if (const ClipPtr clip = clipAt(row)) {
        m_engine->toggleExtraBin(clip->id, bin);
    }
}

void ClipListModel::confirm(int row)
{
    if (const ClipPtr clip = clipAt(row)) {
        m_engine->confirm(clip->id);
    }
}

void ClipListModel::reveal(int row)
{
    if (const ClipPtr clip = clipAt(row)) {
        m_engine->revealClip(clip->id);
    }
}

int ClipListModel::previewRow() const
{
    const ClipPtr clip = m_engine ? m_engine->previewClip() : nullptr;
    const auto row = std::ranges::find(m_rows, clip, &Row::clip);
    return row == m_rows.end() ? -1 : static_cast<int>(row - m_rows.begin());
}

ClipPtr ClipListModel::clipAt(int row) const
{
    return m_engine && row >= 0 && row < rowCount() ? m_rows[static_cast<std::size_t>(row)].clip : nullptr;
}

ClipListModel::Row ClipListModel::rowOf(const ClipPtr &clip) const
{
    return {
        .clip = clip,
        .thumbnail = clip->thumbnail.key(),
        .primaryBin = clip->primaryBin,
        .extraBins = clip->extraBins,
        .reviewReason = m_engine->isUnderReview(*clip) ? clip->reviewReason : QString(),
    };
}

void ClipListModel::refresh()
{
    std::vector<Row> wanted;
    if (m_engine) {
        const auto clips = m_source == AllClips      ? m_engine->clips()
                           : m_engine->selectedBin() ? m_engine->clipsInBin(*m_engine->selectedBin())
                                                     : std::vector<ClipPtr>();
        wanted.reserve(clips.size());
        for (const ClipPtr &clip : clips) {
            wanted.push_back(rowOf(clip));
        }
    }
    sync(m_rows, std::move(wanted));
}

} // namespace larkspan
