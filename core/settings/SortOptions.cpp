#include "core/settings/SortOptions.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

template <typename Case, std::size_t count>
Case caseOf(const QString &rawValue, const std::array<Case, count> &cases, QString (*rawValueOf)(Case))
{
    const auto found = std::ranges::find_if(cases, [&](Case candidate) { return rawValueOf(candidate) == rawValue; });
    return found == cases.end() ? cases.front() : *found;
}

} // namespace

QString fileHandlingLabel(FileHandling handling)
{
    switch (handling) {
    case FileHandling::inPlace:
        return u"Leave in place"_s;
    case FileHandling::copy:
        return u"Copy into folders"_s;
    case FileHandling::move:
        return u"Move into folders"_s;
    }
    Q_UNREACHABLE();
}

QString modelTierLabel(ModelTier tier)
{
    return tier == ModelTier::local ? u"On This Mac"_s : u"Cloud AI"_s;
}

QString fileHandlingRawValue(FileHandling handling)
{
    switch (handling) {
    case FileHandling::inPlace:
        return u"inPlace"_s;
    case FileHandling::copy:
        return u"copy"_s;
    case FileHandling::move:
        return u"move"_s;
    }
    Q_UNREACHABLE();
}

FileHandling fileHandlingFromRawValue(const QString &rawValue)
{
    return caseOf(rawValue, allFileHandlings, fileHandlingRawValue);
}

QString verifyLevelRawValue(VerifyLevel level)
{
    return level == VerifyLevel::sizeOnly ? u"sizeOnly"_s : u"checksum"_s;
}

VerifyLevel verifyLevelFromRawValue(const QString &rawValue)
{
    return caseOf(rawValue, allVerifyLevels, verifyLevelRawValue);
}

QString modelTierRawValue(ModelTier tier)
{
    return tier == ModelTier::local ? u"local"_s : u"cloud"_s;
}

ModelTier modelTierFromRawValue(const QString &rawValue)
{
    return caseOf(rawValue, allModelTiers, modelTierRawValue);
}

} // namespace larkspan
