#pragma once

#include <stop_token>

#include <QtCore/QString>

namespace larkspan {

// The key of the cloud model, from the desktop's keyring: the secret with service "com.ostrel.binnacle" and account
// "cloudAPIKey", without blanks and line ends around it, which provisioning by hand tends to add. Empty when there is
// none, when it is no UTF-8, when there is no keyring, or when that is locked: nobody is asked to unlock it.
// Waits for the keyring's service; any thread but one that draws. A stop ends the wait.
[[nodiscard]] QString loadCloudKey(const std::stop_token &stop = {});

} // namespace larkspan
