#include "output/EventOrder.h"

#include <algorithm>

namespace larkspan {

bool codePointsLess(const QString &a, const QString &b)
{
    // UTF-16 units sort alike but for surrogates, which stand for points above all other units.
    const auto rank = [](QChar unit) { return unit.unicode() + (unit.isSurrogate() ? 0x10000 : 0); };
    return std::ranges::lexicographical_compare(a, b, {}, rank, rank);
}

std::vector<ClipPtr> inEventOrder(std::span<const ClipPtr> clips)
{
    std::vector<ClipPtr> sorted(clips.begin(), clips.end());
    std::ranges::stable_sort(sorted, [](const ClipPtr &a, const ClipPtr &b) {
        return a->primaryBin == b->primaryBin ? a->creationDate < b->creationDate
                                              : codePointsLess(a->primaryBin, b->primaryBin);
    });
    return sorted;
}

} // namespace larkspan
