#include "output/ImportError.h"

#include <algorithm>

#include <QtCore/QStringList>

#include "core/base/ByteCount.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

QString text(const InsufficientSpace &error)
{
    return u"Not enough space at the destination — needs %1, %2 available."_s.arg(byteCountText(error.needed),
                                                                                  byteCountText(error.available));
}

// The first three names, and dots if there are more.
QString namesOf(const std::vector<FileUrl> &files)
{
    constexpr std::size_t shown = 3;
    QStringList names;
    for (const FileUrl &file : std::span(files).first(std::min(files.size(), shown))) {
        names += file.lastPathComponent();
    }
    return names.join(u", "_s) + (files.size() > shown ? u", …"_s : u""_s);
}

QString text(const VerificationFailed &error)
{
    const std::size_t count = error.sources.size();
    return QString::number(count) + u" file"_s + (count == 1 ? u""_s : u"s"_s) + u" didn't copy cleanly ("_s +
           namesOf(error.sources) + u") — nothing was deleted from the source."_s;
}

QString text(const LinkedSources &error)
{
    const std::size_t count = error.sources.size();
    return QString::number(count) +
           (count == 1 ? u" file is a link out of this folder"_s : u" files are links out of this folder"_s) + u" ("_s +
           namesOf(error.sources) + u"), and only footage that lies in it can be moved — copy it instead."_s;
}

QString text(const SourceMissing &error)
{
    return error.source.lastPathComponent() + u" is no longer where it was — the card may have been ejected."_s;
}

QString text(const SystemFailure &error)
{
    return error.url.lastPathComponent() + u" couldn't be copied — "_s + QString::fromStdString(error.code.message()) +
           u'.';
}

} // namespace

QString ImportError::description() const
{
    return std::visit([](const auto &error) { return text(error); }, reason);
}

} // namespace larkspan
