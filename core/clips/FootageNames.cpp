#include "core/clips/FootageNames.h"

#include <algorithm>
#include <array>
#include <span>

#include "core/files/FileUrl.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

bool hasExtensionAmong(const std::filesystem::path &name, std::span<const QString> extensions)
{
    const QString extension = FileUrl(name).pathExtension().toLower();
    return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

} // namespace

bool isVideoFile(const std::filesystem::path &name)
{
    static const std::array types{u"mp4"_s, u"mov"_s,  u"m4v"_s,  u"mxf"_s, u"avi"_s,
                                  u"mts"_s, u"m2ts"_s, u"braw"_s, u"insv"_s};
    return hasExtensionAmong(name, types);
}

bool isPackage(const std::filesystem::path &name)
{
    static const std::array types{u"app"_s,           u"bundle"_s,        u"fcpbundle"_s, u"fcparch"_s,
                                  u"imovielibrary"_s, u"photoslibrary"_s, u"theater"_s,   u"framework"_s};
    return hasExtensionAmong(name, types);
}

bool isHidden(const std::filesystem::path &name)
{
    return name.native().starts_with('.');
}

} // namespace larkspan
