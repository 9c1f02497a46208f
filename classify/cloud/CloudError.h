#pragma once

#include <QtCore/QString>

namespace larkspan {

// Why a cloud model gave no verdict. Never holds the key.
struct CloudError
{
    enum class Kind {
        http,               // the server answered with a status that is no success
        badEndpoint,        // the endpoint is no URL that may be asked
        unreadableResponse, // a reply of another shape than agreed
        platform,           // the network or a parser failed, and says so in its own words
    };

    Kind kind = Kind::unreadableResponse;
    int status = 0; // of http
    QString text;   // of http: the start of the body; of platform: the description

    // Returns the text for people.
    [[nodiscard]] QString errorDescription() const;

    friend bool operator==(const CloudError &, const CloudError &) = default;
};

} // namespace larkspan
