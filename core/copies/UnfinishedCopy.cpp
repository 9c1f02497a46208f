#include "core/copies/UnfinishedCopy.h"

#include <algorithm>
#include <array>
#include <utility>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

using End = UnfinishedCopy::End;

constexpr std::array kinds{
    std::pair{CopyKind::card, QLatin1StringView("card")},
    std::pair{CopyKind::copy, QLatin1StringView("copy")},
    std::pair{CopyKind::move, QLatin1StringView("move")},
};

constexpr std::array ends{
    std::pair{End::none, QLatin1StringView("none")},
    std::pair{End::listing, QLatin1StringView("listing")},
    std::pair{End::notBegun, QLatin1StringView("not begun")},
    std::pair{End::stopped, QLatin1StringView("stopped")},
    std::pair{End::cutOff, QLatin1StringView("cut off")},
    std::pair{End::cutOffBeforeItBegan, QLatin1StringView("cut off before it began")},
};

QString textOf(const auto &names, auto value)
{
    return std::ranges::find(names, value, [](const auto &name) { return name.first; })->second;
}

// None for an unknown text.
auto valueOf(const auto &names, const QString &text)
{
    const auto name = std::ranges::find(names, text, [](const auto &entry) { return entry.second; });
    return name == names.end() ? std::nullopt : std::optional(name->first);
}

QJsonObject toJson(const ClipFiles &clip)
{
    QJsonArray sidecars;
    for (const Sidecar &sidecar : clip.sidecars) {
        // Parts of names, stored like whole ones.
        sidecars.append(QJsonArray{sidecar.url.storedPath(), FileUrl("/" + sidecar.lead).storedPath(),
                                   FileUrl("/" + sidecar.tail).storedPath()});
    }
    return {{u"file"_s, clip.clip.storedPath()}, {u"sidecars"_s, sidecars}};
}

ClipFiles clipFilesOf(const QJsonObject &object)
{
    const auto path = [](const QJsonValue &text) {
        return FileUrl::fromStoredPath(text.toString()).value_or(FileUrl("/"));
    };
    ClipFiles clip{path(object[u"file"]), {}};
    for (const QJsonValue entry : object[u"sidecars"].toArray()) {
        const QJsonArray parts = entry.toArray();
        clip.sidecars.push_back(
            {path(parts[0]), path(parts[1]).path().native().substr(1), path(parts[2]).path().native().substr(1)});
    }
    return clip;
}

} // namespace

QByteArray jsonOf(const UnfinishedCopy &copy)
{
    QJsonArray files;
    for (const ClipFiles &clip : copy.files) {
        files.append(toJson(clip));
    }
    return QJsonDocument(QJsonObject{{u"kind"_s, textOf(kinds, copy.kind)},
                                     {u"name"_s, copy.name},
                                     {u"folder"_s, copy.folder.storedPath()},
                                     {u"files"_s, files},
                                     {u"end"_s, textOf(ends, copy.end)},
                                     {u"failure"_s, copy.failure}})
        .toJson(QJsonDocument::Compact);
}

std::optional<UnfinishedCopy> unfinishedCopyOf(const QByteArray &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const auto kind = valueOf(kinds, object[u"kind"].toString());
    const auto end = valueOf(ends, object[u"end"].toString());
    const auto folder = FileUrl::fromStoredPath(object[u"folder"].toString());
    if (!kind || !end || !folder) {
        return std::nullopt;
    }
    UnfinishedCopy copy{.kind = *kind,
                        .name = object[u"name"].toString(),
                        .folder = *folder,
                        .end = *end,
                        .failure = object[u"failure"].toString()};
    for (const QJsonValue file : object[u"files"].toArray()) {
        copy.files.push_back(clipFilesOf(file.toObject()));
    }
    return copy;
}

} // namespace larkspan
