#include "core/settings/CloudSettings.h"

#include "core/settings/SettingsStore.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

CloudSettings CloudSettings::load(const SettingsStore &store, const QString &apiKey)
{
    CloudSettings settings;
    settings.apiKey = apiKey;
    if (const auto endpoint = store.string(u"cloudEndpoint"_s); endpoint && !endpoint->isEmpty()) {
        settings.endpoint = *endpoint;
    }
    if (const auto model = store.string(u"cloudModel"_s); model && !model->isEmpty()) {
        settings.model = *model;
    }
    return settings;
}

} // namespace larkspan
