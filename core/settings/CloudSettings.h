#pragma once

#include <QtCore/QString>

namespace larkspan {

class SettingsStore;

// The address and the terms of a cloud model. Read once, when the engine is built; nothing in the program writes them.
struct CloudSettings
{
    QString endpoint = QStringLiteral("https://api.anthropic.com/v1/messages");
    QString model = QStringLiteral("claude-sonnet-4-5");
    QString apiKey; // a secret: never shown, logged or stored by us
    int maxFramesPerClip = 3;

    // Endpoint and model as the store has them; what is missing or empty there keeps its default. The key isn't among
    // the settings: it comes from the keyring. Main thread.
    [[nodiscard]] static CloudSettings load(const SettingsStore &store, const QString &apiKey);

    friend bool operator==(const CloudSettings &, const CloudSettings &) = default;
};

} // namespace larkspan
