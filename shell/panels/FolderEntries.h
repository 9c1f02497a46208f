#pragma once

#include <vector>

#include <QtCore/QAbstractListModel>
#include <QtCore/QStringList>
#include <QtQml/qqmlregistration.h>

#include "shell/panels/FolderContents.h"

namespace larkspan {

// List model of one folder in a file panel: its folders, then its files. Main thread.
class FolderEntries : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("FileBrowser has one.")
    Q_PROPERTY(int count READ rowCount NOTIFY changed)
    Q_PROPERTY(int folderCount READ folderCount NOTIFY changed) // folders are the first rows
    Q_PROPERTY(QStringList folderNames READ folderNames NOTIFY changed)

public:
    enum Role {
        NameRole = Qt::UserRole + 1,
        FolderRole, // bool
    };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] int folderCount() const { return static_cast<int>(m_contents.folders.size()); }
    [[nodiscard]] QStringList folderNames() const;
    [[nodiscard]] const FolderContents &contents() const { return m_contents; }

    // Replaces all rows: another folder was opened.
    void show(FolderContents contents);
    // Updates the rows after the same folder has changed. Unchanged rows at either end are kept.
    void update(FolderContents contents);

Q_SIGNALS:
    void changed();

private:
    // Turns one of the two lists into the wanted one. first: its first row in the model.
    void bring(std::vector<std::string> &names, int first, std::vector<std::string> wanted);

    FolderContents m_contents;
};

} // namespace larkspan
