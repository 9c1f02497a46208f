#include "core/engine/SortSettings.h"

#include <algorithm>
#include <array>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "core/bins/Coverage.h"
#include "core/bins/RoomLabel.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

struct Switch
{
    const char16_t *key;
    bool SortOptions::*field;
};

constexpr std::array switches{
    Switch{u"lkShowClipCounts", &SortOptions::showClipCounts},
    Switch{u"lkSendUnsure", &SortOptions::sendUnsureToReview},
    Switch{u"lkSplitRooms", &SortOptions::splitRepeatedRooms},
    Switch{u"lkOpenPlan", &SortOptions::tagOpenPlanTwice},
    Switch{u"lkDroneExclusive", &SortOptions::keepDroneExclusive},
    Switch{u"lkOpenEditor", &SortOptions::openEditorAfterExport},
    Switch{u"lkWriteNextTo", &SortOptions::writeNextToFootage},
};

const auto fileHandlingKey = u"lkFileHandling"_s;
const auto verifyLevelKey = u"lkVerifyLevel"_s;
const auto modelTierKey = u"modelTier"_s;
const auto defaultNLEKey = u"defaultNLE"_s;
const auto importRootKey = u"lkImportRootPath"_s;
const auto recentsKey = u"lkRecents"_s;
const auto neededBinsKey = u"lkNeededBins"_s;

QString textOf(const SettingsStore &store, const QString &key)
{
    return store.string(key).value_or(QString());
}

std::optional<Recent> recentOf(const QJsonValue &value)
{
    const QJsonValue name = value[u"name"_s];
    const QJsonValue path = value[u"path"_s];
    auto file = FileUrl::fromStoredPath(path.toString());
    if (!name.isString() || !file) {
        return std::nullopt;
    }
    return Recent{.name = name.toString(), .path = std::move(*file)};
}

// Takes over a value and stores it. False if it is the same already. store: may be null.
template <typename Value, typename Save>
bool change(SettingsStore *store, Value &value, Value wanted, const Save &save)
{
    if (value == wanted) {
        return false;
    }
    value = std::move(wanted);
    if (store != nullptr) {
        save(*store, value);
    }
    return true;
}

} // namespace

SortOptions loadSortOptions(const SettingsStore &store)
{
    SortOptions options;
    for (const auto &[key, field] : switches) {
        options.*field = store.boolean(QString::fromUtf16(key)).value_or(options.*field);
    }
    options.fileHandling = fileHandlingFromRawValue(textOf(store, fileHandlingKey));
    options.verifyLevel = verifyLevelFromRawValue(textOf(store, verifyLevelKey));
    return options;
}

void saveSortOptions(SettingsStore &store, const SortOptions &options)
{
    for (const auto &[key, field] : switches) {
        store.setBoolean(QString::fromUtf16(key), options.*field);
    }
    store.setString(fileHandlingKey, fileHandlingRawValue(options.fileHandling));
    store.setString(verifyLevelKey, verifyLevelRawValue(options.verifyLevel));
}

ModelTier loadModelTier(const SettingsStore &store)
{
    return modelTierFromRawValue(textOf(store, modelTierKey));
}

void saveModelTier(SettingsStore &store, ModelTier tier)
{
    store.setString(modelTierKey, modelTierRawValue(tier));
}

NLE loadDefaultNLE(const SettingsStore &store)
{
    return nleFromRawValue(textOf(store, defaultNLEKey));
}

void saveDefaultNLE(SettingsStore &store, NLE target)
{
    store.setString(defaultNLEKey, nleRawValue(target));
}

std::optional<FileUrl> loadImportRoot(const SettingsStore &store)
{
    return FileUrl::fromStoredPath(textOf(store, importRootKey));
}

void saveImportRoot(SettingsStore &store, const std::optional<FileUrl> &root)
{
    if (root) {
        store.setString(importRootKey, root->storedPath());
    } else {
        store.remove(importRootKey);
    }
}

std::set<QString> loadNeededBins(const SettingsStore &store)
{
    const auto document = QJsonDocument::fromJson(store.data(neededBinsKey).value_or(QByteArray()));
    if (!document.isArray()) {
        return defaultNeededBins();
    }
    std::set<QString> bins;
    for (const QJsonValue name : document.array()) {
        if (RoomLabel::byName().contains(name.toString())) {
            bins.insert(name.toString());
        }
    }
    return bins;
}

void saveNeededBins(SettingsStore &store, const std::set<QString> &bins)
{
    QJsonArray names;
    std::ranges::copy(bins, std::back_inserter(names));
    store.setData(neededBinsKey, QJsonDocument(names).toJson(QJsonDocument::Compact));
}

std::vector<Recent> loadRecents(const SettingsStore &store)
{
    std::vector<Recent> recents;
    for (const QJsonValue value : QJsonDocument::fromJson(store.data(recentsKey).value_or(QByteArray())).array()) {
        auto recent = recentOf(value);
        if (!recent) {
            return {};
        }
        recents.push_back(std::move(*recent));
    }
    recents.resize(std::min(recents.size(), recentsLimit));
    return recents;
}

void storeRecents(SettingsStore &store, const std::vector<Recent> &recents)
{
    QJsonArray list;
    for (const Recent &recent : recents) {
        list.append(QJsonObject{{u"name"_s, recent.name}, {u"path"_s, recent.path.storedPath()}});
    }
    store.setData(recentsKey, QJsonDocument(list).toJson(QJsonDocument::Compact));
}

SortSettings::SortSettings(SettingsStore *store) : m_store(store)
{
    if (store != nullptr) {
        m_options = loadSortOptions(*store);
        m_modelTier = loadModelTier(*store);
        m_target = loadDefaultNLE(*store);
        m_importRoot = loadImportRoot(*store);
        m_recents = loadRecents(*store);
    }
}

bool SortSettings::setOptions(const SortOptions &options)
{
    return change(m_store, m_options, options, saveSortOptions);
}

bool SortSettings::setModelTier(ModelTier tier)
{
    return change(m_store, m_modelTier, tier, saveModelTier);
}

bool SortSettings::setTarget(NLE target)
{
    return change(m_store, m_target, target, saveDefaultNLE);
}

bool SortSettings::setImportRoot(std::optional<FileUrl> root)
{
    return change(m_store, m_importRoot, std::move(root), saveImportRoot);
}

void SortSettings::rememberRecent(const FileUrl &folder)
{
    std::erase_if(m_recents, [&folder](const Recent &recent) { return recent.path == folder; });
    m_recents.insert(m_recents.begin(), {.name = folder.lastPathComponent(), .path = folder});
    m_recents.resize(std::min(m_recents.size(), recentsLimit));
    if (m_store != nullptr) {
        storeRecents(*m_store, m_recents);
    }
}

} // namespace larkspan
