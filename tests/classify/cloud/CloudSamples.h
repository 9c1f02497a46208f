#pragma once

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "classify/cloud/CloudVerdict.h"
#include "core/settings/CloudSettings.h"
#include "tests/support/HttpServer.h"

namespace larkspan::test {

inline const QString secretKey = QStringLiteral("sk-test-0123456789-secret");

// Settings for a server of the test's own.
inline CloudSettings settingsFor(const QString &endpoint)
{
    return {.endpoint = endpoint, .model = QStringLiteral("model-of-the-test"), .apiKey = secretKey};
}

// The body of a reply whose text is this.
inline QByteArray bodyWith(const QString &text)
{
    const QJsonObject block{{QStringLiteral("type"), QStringLiteral("text")}, {QStringLiteral("text"), text}};
    return QJsonDocument(QJsonObject{{QStringLiteral("content"), QJsonArray{block}}}).toJson(QJsonDocument::Compact);
}

using Verdict = tl::expected<CloudVerdict, CloudError>;

inline const Verdict unreadable = tl::unexpected(CloudError{.kind = CloudError::Kind::unreadableResponse});

// A handler that gives every request the same verdict.
inline HttpServer::Handler verdict(const QString &json)
{
    return [body = bodyWith(json)](const HttpServer::Request &) { return HttpServer::respond(200, body); };
}

} // namespace larkspan::test
