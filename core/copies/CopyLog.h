#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <vector>

#include <QtCore/QByteArray>

#include "core/copies/CopyRecord.h"

namespace larkspan {

// Keeps the records of copies, one file per shoot, so that they can be reported when the shoot is opened again: the
// last run of a card's import and the last one into folders by bin. Failures are swallowed: what can't be read counts
// as not there, what can't be written isn't kept. Blocks until the data is on the medium. Any thread; a shoot has one
// run saved at a time.
class CopyLog
{
public:
    // Number of shoots whose records prune() keeps: years of one editor's work.
    static constexpr std::size_t mostShoots = 500;

    // folder: made when something is saved. An empty path keeps nothing.
    explicit CopyLog(std::filesystem::path folder = defaultFolder()) : m_folder(std::move(folder)) {}

    // "Larkspan/Copies" in the user's data folder; empty where there is none.
    static std::filesystem::path defaultFolder();

    // id: of the shoot's project.
    void save(const QString &id, const CopyRecord &record) const;
    // In the order in which they began.
    std::vector<CopyRecord> load(const QString &id) const;
    // Removes the records of all shoots but those that were saved last.
    void prune(std::size_t most = mostShoots) const;

private:
    std::filesystem::path fileOf(const QString &id) const;

    std::filesystem::path m_folder;
};

// Puts a record in place of the one that it supersedes, and last.
void supersede(std::vector<CopyRecord> &records, CopyRecord record);

[[nodiscard]] QByteArray encodeCopies(const std::vector<CopyRecord> &records);
// None for text that isn't whole.
[[nodiscard]] std::optional<std::vector<CopyRecord>> decodeCopies(const QByteArray &json);

} // namespace larkspan
