#pragma once

#include <QtCore/QUrl>
#include <QtQml/qqmlregistration.h>

#include "screens/SyncedListModel.h"

namespace larkspan {

// Clips as a grid shows them: those of one bin in the engine's order, or all as they landed. Rows are known by the
// clip's id, so a clip that changes keeps its delegate, and its thumbnail is not uploaded again.
class ClipListModel : public larkspan::SyncedListModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Source source READ source WRITE setSource NOTIFY sourceChanged)
    // Whether these are the clips under review, shown for the reason why.
    Q_PROPERTY(bool isReview READ isReview NOTIFY isReviewChanged)

public:
    enum Source {
        SelectedBin, // the clips of the engine's selected bin
        AllClips,
    };
    Q_ENUM(Source)

    enum Role {
        ClipIdRole = Qt::UserRole + 1,
        NameRole,      // the file's name without its extension
        FileNameRole,  // with it
        DurationRole,  // "0:07", "1:02:03"
        ThumbnailRole, // where the image provider has its picture
        PrimaryBinRole,
        ExtraBinRole,     // the first extra bin, "" if none
        ReviewReasonRole, // "" when the clip isn't under review
    };

    using SyncedListModel::SyncedListModel;

    Source source() const { return m_source; }
    void setSource(Source source);
    bool isReview() const { return m_isReview; }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void sourceChanged();
    void isReviewChanged();

private:
    // What a delegate shows of a clip, as it was at the last refresh: the clip itself publishes no change.
    struct Row
    {
        QUuid id;
        QString name;
        QString fileName;
        QString duration;
        QUrl thumbnail;
        QString primaryBin;
        QString extraBin;
        QString reviewReason;

        const QUuid &key() const { return id; }
        friend bool operator==(const Row &, const Row &) = default;
    };

    Row rowOf(const MediaClip &clip) const;
    void follow(SortEngine &engine) override;
    void refresh() override;

    Source m_source = SelectedBin;
    std::vector<Row> m_rows;
    bool m_isReview = false;
};

// "0:07", "12:05", "1:02:03"; seconds are rounded to whole ones, and no number of them counts as 0.
QString durationText(double seconds);

} // namespace larkspan
