#include "classify/cloud/CloudRequest.h"

#include <algorithm>
#include <optional>

#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QStringDecoder>
#include <QtCore/QTextBoundaryFinder>
#include <QtCore/QUrl>
#include <QtNetwork/QNetworkRequest>

#include "classify/cloud/HttpClient.h"
#include "core/bins/RoomLabel.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr int mostReplyTokens = 200;
constexpr int mostBodyCharacters = 140; // of a refusal that is kept

// A file is only read where it can't keep the reader waiting.
bool mayBeAsked(const QUrl &url)
{
    const QString scheme = url.scheme();
    if (scheme == u"https"_s) {
        return !url.host().isEmpty();
    }
    if (scheme == u"http"_s) {
        return isLoopback(url.host());
    }
    return scheme == u"data"_s || (url.isLocalFile() && QFileInfo(url.toLocalFile()).isFile());
}

// A control character in a header could add headers of its own.
bool fitsHeader(const QByteArray &value)
{
    return std::ranges::none_of(value, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

QByteArray requestBody(const std::vector<QByteArray> &images, const QString &model)
{
    QJsonArray content;
    for (const QByteArray &image : images) {
        content.append(QJsonObject{{u"type"_s, u"image"_s},
                                   {u"source"_s, QJsonObject{{u"type"_s, u"base64"_s},
                                                             {u"media_type"_s, u"image/jpeg"_s},
                                                             {u"data"_s, QString::fromLatin1(image)}}}});
    }
    content.append(QJsonObject{{u"type"_s, u"text"_s}, {u"text"_s, buildPrompt()}});
    const QJsonObject message{{u"role"_s, u"user"_s}, {u"content"_s, content}};
    const QJsonObject body{
        {u"model"_s, model}, {u"max_tokens"_s, mostReplyTokens}, {u"messages"_s, QJsonArray{message}}};
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

// Empty if it is no UTF-8. The end of a body that was cut may be half a character.
QString textOf(const HttpClient::Reply &reply)
{
    QStringDecoder decoder(QStringDecoder::Utf8,
                           reply.isWhole ? QStringDecoder::Flag::Stateless : QStringDecoder::Flag::Default);
    const QString text = decoder(reply.body);
    return decoder.hasError() ? QString() : text;
}

// As people count characters, so that none is torn apart.
QString firstCharacters(const QString &text, int count)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype end = 0;
    for (int i = 0; i < count && end < text.size() && end >= 0; ++i) {
        end = finder.toNextBoundary();
    }
    return end < 0 ? text : text.first(end);
}

CloudError platformError(const QString &description)
{
    return {.kind = CloudError::Kind::platform, .text = description};
}

} // namespace

QString buildPrompt()
{
    QString bins;
    for (const RoomLabel &label : RoomLabel::all()) {
        bins += u"- "_s + label.name + u'\n';
    }
    return u"These frames come from one clip of a real estate video shoot. Choose which bin it belongs in, from exactly this list:\n\n"_s +
           bins +
           u"\nRules:\n"
           u"- \"Agent / Talent\" if a person is a subject of the shot, even a small figure in the distance.\n"
           u"- Use a secondary bin ONLY when a second room is genuinely prominent (for example a dining table in front "
           u"with the kitchen clearly behind).\n"
           u"- A shot framed through a doorway belongs to the room it reveals, not the hallway.\n"
           u"- Close-ups of plants, fixtures or styling are Detail shots.\n"
           u"\nReply with JSON only, no prose:\n"
           u"{\"primary\":\"<bin>\",\"secondary\":[],\"person_visible\":false,\"note\":\"<3 words>\"}"_s;
}

tl::expected<CloudVerdict, CloudError> requestVerdict(const std::vector<QByteArray> &images,
                                                      const CloudSettings &settings, const HttpClient &client,
                                                      const std::stop_token &stop)
{
    const QUrl url(settings.endpoint, QUrl::StrictMode);
    if (!url.isValid() || !mayBeAsked(url)) {
        return tl::unexpected(CloudError{.kind = CloudError::Kind::badEndpoint});
    }
    const QByteArray key = settings.apiKey.toUtf8();
    if (!fitsHeader(key)) {
        return tl::unexpected(platformError(u"the key holds characters that can't be sent"_s));
    }
    QNetworkRequest request(url);
    request.setRawHeader("Content-Type", "application/json");
    request.setRawHeader("x-api-key", key);
    request.setRawHeader("anthropic-version", "2023-06-01");
    request.setRawHeader("User-Agent", "Larkspan");

    const auto reply = client.post(request, requestBody(images, settings.model), stop);
    if (!reply) {
        return tl::unexpected(platformError(withoutKey(reply.error(), settings.apiKey)));
    }
    if (reply->status && (*reply->status < 200 || *reply->status > 299)) {
        const QString text = firstCharacters(withoutKey(textOf(*reply), settings.apiKey), mostBodyCharacters);
        return tl::unexpected(CloudError{.kind = CloudError::Kind::http, .status = *reply->status, .text = text});
    }
    if (!reply->isWhole) {
        return tl::unexpected(CloudError{.kind = CloudError::Kind::unreadableResponse});
    }
    return parseReply(reply->body);
}

QString withoutKey(QString text, const QString &key)
{
    return key.isEmpty() ? text : text.replace(key, u"[key]"_s);
}

} // namespace larkspan
