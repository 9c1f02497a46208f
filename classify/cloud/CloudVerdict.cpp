#include "classify/cloud/CloudVerdict.h"

#include <algorithm>
#include <optional>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

const CloudError unreadable{.kind = CloudError::Kind::unreadableResponse};

// Nesting that would exhaust the stack is refused by the parser as an error like any other.
tl::expected<QJsonObject, CloudError> parseObject(const QByteArray &json)
{
    QJsonParseError error{};
    const auto document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        return tl::unexpected(CloudError{.kind = CloudError::Kind::platform, .text = error.errorString()});
    }
    if (!document.isObject()) {
        return tl::unexpected(unreadable);
    }
    return document.object();
}

// None if anything in it is of another type: half a list isn't what was meant.
std::vector<QString> textsOf(const QJsonValue &value)
{
    const QJsonArray array = value.toArray();
    if (!std::ranges::all_of(array, [](const QJsonValue &entry) { return entry.isString(); })) {
        return {};
    }
    std::vector<QString> texts;
    std::ranges::transform(array, std::back_inserter(texts), [](const QJsonValue &entry) { return entry.toString(); });
    return texts;
}

std::optional<QString> firstText(const QJsonArray &content)
{
    const bool holdsObjects = std::ranges::all_of(content, [](const QJsonValue &entry) { return entry.isObject(); });
    const auto hasText = [](const QJsonValue &entry) { return entry[u"text"_s].isString(); };
    const auto block = std::ranges::find_if(content, hasText);
    if (!holdsObjects || block == content.end()) {
        return std::nullopt;
    }
    return (*block)[u"text"_s].toString();
}

} // namespace

tl::expected<CloudVerdict, CloudError> parseVerdict(const QString &text)
{
    const qsizetype first = text.indexOf(u'{');
    const qsizetype last = text.lastIndexOf(u'}');
    if (first < 0 || last < first) {
        return tl::unexpected(unreadable);
    }
    const auto object = parseObject(text.sliced(first, last - first + 1).toUtf8());
    if (!object) {
        return tl::unexpected(object.error());
    }
    const QJsonValue primary = object->value(u"primary"_s);
    if (!primary.isString()) {
        return tl::unexpected(unreadable);
    }
    return CloudVerdict{.primary = primary.toString(),
                        .secondary = textsOf(object->value(u"secondary"_s)),
                        .personVisible = object->value(u"person_visible"_s).toBool(),
                        .note = object->value(u"note"_s).toString()};
}

tl::expected<CloudVerdict, CloudError> parseReply(const QByteArray &body)
{
    const auto reply = parseObject(body);
    if (!reply) {
        return tl::unexpected(reply.error());
    }
    const auto text = firstText(reply->value(u"content"_s).toArray());
    return text ? parseVerdict(*text) : tl::unexpected(unreadable);
}

} // namespace larkspan
