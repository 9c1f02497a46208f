#include "output/ImportError.h"

#include <algorithm>

#include <QtCore/QStringList>

#include "output/ByteCount.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

QString text(const InsufficientSpace &error)
{
    return u"Not enough space at the destination — needs %1, %2 available."_s.arg(byteCountText(error.needed),
                                                                                  byteCountText(error.available));
}

QString text(const VerificationFailed &error)
{
    constexpr std::size_t shown = 3;
    const std::size_t count = error.sources.size();
    QStringList names;
    for (std::size_t i = 0; i < std::min(count, shown); ++i) {
        names += error.sources[i].lastPathComponent();
    }
    return QString::number(count) + u" file"_s + (count == 1 ? u""_s : u"s"_s) + u" didn't copy cleanly ("_s +
           names.join(u", "_s) + (count > shown ? u", …"_s : u""_s) + u") — nothing was deleted from the source."_s;
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
