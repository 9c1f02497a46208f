#include "screens/stages/ModelChoice.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

QVariantList ModelChoice::options()
{
    QVariantList options;
    for (const ModelTier tier : allModelTiers) {
        options.append(QVariantMap{{u"value"_s, modelTierRawValue(tier)}, {u"label"_s, modelTierLabel(tier)}});
    }
    return options;
}

QString ModelChoice::tier() const
{
    return modelTierRawValue(m_engine ? m_engine->modelTier() : ModelTier::local);
}

void ModelChoice::setTier(const QString &tier)
{
    if (m_engine) {
        m_engine->setModelTier(modelTierFromRawValue(tier));
    }
}

QString ModelChoice::title() const
{
    return isCloud() ? tr("Skyreader") : tr("Local: On This Mac");
}

QString ModelChoice::description() const
{
    return isCloud()
               ? tr("Sends a few downscaled still frames to a vision model. Much better on hard shots — doorways, "
                    "open plan, staged vs. empty rooms. Source footage never leaves this Mac.")
               : tr("Runs entirely on this Mac with Apple's built-in vision. Works offline, costs nothing, and "
                    "no frames leave the machine.");
}

QString ModelChoice::accuracy() const
{
    return isCloud() ? tr("95% accuracy on a typical listing shoot") : tr("70% accuracy on a typical listing shoot");
}

void ModelChoice::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::modelTierChanged, this, &ModelChoice::changed);
}

bool ModelChoice::isCloud() const
{
    return m_engine && m_engine->modelTier() == ModelTier::cloud;
}

} // namespace larkspan
