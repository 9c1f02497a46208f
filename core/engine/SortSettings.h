#pragma once

#include <optional>
#include <set>
#include <vector>

#include "core/files/FileUrl.h"
#include "core/projects/Project.h"
#include "core/settings/NLE.h"
#include "core/settings/SettingsStore.h"
#include "core/settings/SortOptions.h"

namespace larkspan {

// The keys of the store that belong to sorting and exporting. What is absent or unknown reads as the default, and the
// default isn't written back.

SortOptions loadSortOptions(const SettingsStore &store);
// Writes all nine keys, whichever field changed.
void saveSortOptions(SettingsStore &store, const SortOptions &options);

ModelTier loadModelTier(const SettingsStore &store);
void saveModelTier(SettingsStore &store, ModelTier tier);

// The editor that the event is made for.
NLE loadDefaultNLE(const SettingsStore &store);
void saveDefaultNLE(SettingsStore &store, NLE target);

// The Shoots folder. Whether it exists isn't looked at.
std::optional<FileUrl> loadImportRoot(const SettingsStore &store);
void saveImportRoot(SettingsStore &store, const std::optional<FileUrl> &root);

// The bins that a listing needs. Names that aren't in the table are left out.
std::set<QString> loadNeededBins(const SettingsStore &store);
void saveNeededBins(SettingsStore &store, const std::set<QString> &bins);

// The latest first, at most recentsLimit.
std::vector<Recent> loadRecents(const SettingsStore &store);
void storeRecents(SettingsStore &store, const std::vector<Recent> &recents);

// These settings as the engine holds them, but the needed bins. Every change is stored at once.
class SortSettings
{
public:
    // store: may be null, and the settings then last as long as this; outlives it.
    explicit SortSettings(SettingsStore *store);

    const SortOptions &options() const { return m_options; }
    ModelTier modelTier() const { return m_modelTier; }
    NLE target() const { return m_target; }
    const std::optional<FileUrl> &importRoot() const { return m_importRoot; }
    const std::vector<Recent> &recents() const { return m_recents; }

    // Each returns false if the value is the same already.
    bool setOptions(const SortOptions &options);
    bool setModelTier(ModelTier tier);
    bool setTarget(NLE target);
    bool setImportRoot(std::optional<FileUrl> root);
    // Puts a folder first among the recent ones.
    void rememberRecent(const FileUrl &folder);

private:
    SettingsStore *const m_store;
    SortOptions m_options;
    ModelTier m_modelTier = ModelTier::local;
    NLE m_target = NLE::finalCut;
    std::optional<FileUrl> m_importRoot;
    std::vector<Recent> m_recents;
};

} // namespace larkspan
