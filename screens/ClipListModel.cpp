#include "screens/ClipListModel.h"

#include <cmath>

#include "core/RoomLabel.h"
#include "screens/ClipThumbnails.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

QString durationText(double seconds)
{
    constexpr double longest = 360000.0 * 1000; // a broken header may claim any length
    const auto whole = std::isfinite(seconds) ? std::llround(std::clamp(seconds, 0.0, longest)) : 0LL;
    const auto twoDigits = [](long long value) { return u"%1"_s.arg(value, 2, 10, QLatin1Char('0')); };
    const QString tail = twoDigits(whole % 60);
    const auto minutes = whole / 60;
    return minutes < 60 ? u"%1:%2"_s.arg(minutes).arg(tail)
                        : u"%1:%2:%3"_s.arg(QString::number(minutes / 60), twoDigits(minutes % 60), tail);
}

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
    const bool isReview = m_source == SelectedBin && m_engine && m_engine->selectedBin() == reviewKey();
    if (m_isReview != isReview) {
        m_isReview = isReview;
        Q_EMIT isReviewChanged();
    }
    sync(m_rows, std::move(wanted));
}

} // namespace larkspan
