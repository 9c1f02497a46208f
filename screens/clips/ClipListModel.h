#pragma once

#include <QtCore/QUrl>
#include <QtQml/qqmlregistration.h>

#include "screens/engine/SyncedListModel.h"

namespace larkspan {

// Clips as a grid shows them: those of one bin in the engine's order, or all as they landed. Rows are known by the
// clip's id, so a clip that changes keeps its delegate, and its thumbnail is not uploaded again.
class ClipListModel : public larkspan::SyncedListModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Source source READ source WRITE setSource NOTIFY sourceChanged)

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
        ExtraBinsRole,    // all of them
        ReviewReasonRole, // "" when the clip isn't under review
    };

    using SyncedListModel::SyncedListModel;

    Source source() const { return m_source; }
    void setSource(Source source);

    // Act on the clip of a row. A row that isn't there changes nothing.
    Q_INVOKABLE void open(int row);
    Q_INVOKABLE void reassign(int row, const QString &bin);
    Q_INVOKABLE void toggleExtraBin(int row, const QString &bin);
    Q_INVOKABLE void confirm(int row);
    Q_INVOKABLE void reveal(int row);
    // The row of the clip in the preview, -1 if it isn't here.
    Q_INVOKABLE int previewRow() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void sourceChanged();

private:
    // A clip, and what of it may change, as it was at the last refresh: the clip itself publishes no change.
    struct Row
    {
        ClipPtr clip;
        quint64 thumbnail = 0;
        QString primaryBin;
        std::vector<QString> extraBins;
        QString reviewReason;

        const QUuid &key() const { return clip->id; }
        friend bool operator==(const Row &, const Row &) = default;
    };

    Row rowOf(const ClipPtr &clip) const;
    // Null for a row that isn't there.
    ClipPtr clipAt(int row) const;
    void follow(SortEngine &engine) override;
    void refresh() override;

    Source m_source = SelectedBin;
    std::vector<Row> m_rows;
};

} // namespace larkspan
