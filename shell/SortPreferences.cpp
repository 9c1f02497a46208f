#include "shell/SortPreferences.h"

#include <algorithm>
#include <array>
#include <optional>

namespace larkspan {

namespace {

template <typename Case, std::size_t count>
int rowOf(const std::array<Case, count> &cases, Case wanted)
{
    return static_cast<int>(std::ranges::find(cases, wanted) - cases.begin());
}

template <typename Case, std::size_t count>
std::optional<Case> atRow(const std::array<Case, count> &cases, int row)
{
    return row >= 0 && row < static_cast<int>(count) ? std::optional(cases[static_cast<std::size_t>(row)])
                                                     : std::nullopt;
}

template <typename Case, std::size_t count>
QStringList labelsOf(const std::array<Case, count> &cases, QString (*label)(Case))
{
    QStringList labels;
    std::ranges::transform(cases, std::back_inserter(labels), label);
    return labels;
}

} // namespace

void SortPreferences::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::optionsChanged, this, &SortPreferences::changed);
    connect(&engine, &SortEngine::modelTierChanged, this, &SortPreferences::changed);
    connect(&engine, &SortEngine::targetChanged, this, &SortPreferences::changed);
    connect(&engine, &SortEngine::importRootChanged, this, &SortPreferences::changed);
    connect(&engine, &SortEngine::folderChanged, this, &SortPreferences::changed);
}

QStringList SortPreferences::tierLabels()
{
    return labelsOf(allModelTiers, modelTierLabel);
}

int SortPreferences::tier() const
{
    return rowOf(allModelTiers, m_engine ? m_engine->modelTier() : ModelTier::local);
}

void SortPreferences::setTier(int row)
{
    if (const auto tier = atRow(allModelTiers, row); tier && m_engine) {
        m_engine->setModelTier(*tier);
    }
}

QStringList SortPreferences::handlingLabels()
{
    return labelsOf(allFileHandlings, fileHandlingLabel);
}

int SortPreferences::handling() const
{
    return rowOf(allFileHandlings, options().fileHandling);
}

void SortPreferences::setHandling(int row)
{
    if (const auto handling = atRow(allFileHandlings, row)) {
        setOption(&SortOptions::fileHandling, *handling);
    }
}

QStringList SortPreferences::targetLabels()
{
    QStringList labels = labelsOf(allNLEs, nleLabel);
    labels[rowOf(allNLEs, NLE::premiere)] += tr(" — soon");
    return labels;
}

int SortPreferences::target() const
{
    return rowOf(allNLEs, m_engine ? m_engine->target() : NLE::finalCut);
}

void SortPreferences::setTarget(int row)
{
    if (const auto target = atRow(allNLEs, row); target && m_engine) {
        m_engine->setTarget(*target);
    }
}

QString SortPreferences::tierDetail() const
{
    return m_engine && m_engine->modelTier() == ModelTier::cloud
               ? tr("Sends a few downscaled still frames to a vision model. Much better on hard shots — doorways, open "
                    "plan, staged vs. empty rooms. Source footage never leaves this Mac.")
               : tr("Runs entirely on this Mac with Apple's built-in vision. Works offline, costs nothing, and no "
                    "frames leave the machine.");
}

QString SortPreferences::handlingDetail() const
{
    return m_engine && m_engine->isRemovableImport()
               ? tr("Leave in place isn't available for an SD-card import — there's nowhere to leave it once the "
                    "card's ejected.")
               : tr("Copy or move physically organizes footage into per-room folders at export. Leave in place only "
                    "touches the FCPXML.");
}

QString SortPreferences::shootsFolder() const
{
    const QString path = m_engine ? m_engine->importRootPath() : QString();
    return path.isEmpty() ? tr("Not set") : path;
}

} // namespace larkspan
