#pragma once

#include <stop_token>

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <tl/expected.hpp>

#include "classify/cloud/CloudVerdict.h"
#include "core/settings/CloudSettings.h"

namespace larkspan {

class HttpClient;

// Returns the question to the model: to choose from the names of all bins, in the table's order.
[[nodiscard]] QString buildPrompt();

// Asks the model about the stills of one clip (JPEGs as base64, in time order) and waits for the verdict. The endpoint
// may be HTTPS anywhere, plain HTTP on this machine alone, and for trials a file or a data URL that holds the reply.
// A redirect counts as an HTTP error: the key goes to the endpoint and nowhere else.
[[nodiscard]] tl::expected<CloudVerdict, CloudError> requestVerdict(const std::vector<QByteArray> &images,
                                                                    const CloudSettings &settings,
                                                                    const HttpClient &client,
                                                                    const std::stop_token &stop = {});

// The text with every occurrence of the key struck out: a server may say back what it was sent.
[[nodiscard]] QString withoutKey(QString text, const QString &key);

} // namespace larkspan
