#include "core/base/ByteCount.h"

#include <limits>
#include <utility>

#include <gmock/gmock.h>

using namespace larkspan;

TEST(ByteCount, IsWrittenInDecimalUnitsWithAsManyPlacesAsTheUnitHas)
{
    const std::pair<std::int64_t, const char *> cases[] = {
        {0, "Zero KB"},
        {1, "1 byte"},
        {999, "999 bytes"},
        {1000, "1 KB"},
        {1499, "1 KB"},
        {1500, "2 KB"},
        {999'499, "999 KB"},
        {999'500, "1 MB"},
        {1'230'000, "1.2 MB"},
        {999'949'999, "999.9 MB"},
        {999'950'000, "1 GB"},
        {1'000'000'000, "1 GB"},
        {34'561'000'000, "34.56 GB"},
        {100'000'000'000, "100 GB"},
        {128'050'000'000, "128.05 GB"},
        {999'994'999'999, "999.99 GB"},
        {999'995'000'000, "1 TB"},
        {2'500'000'000'000, "2.5 TB"},
        {2'544'000'000'000, "2.54 TB"},
        {999'994'999'999'999, "999.99 TB"},
        {1'230'000'000'000'000, "1.23 PB"},
        {999'994'999'999'999'999, "999.99 PB"},
        {999'995'000'000'000'000, "1 EB"},
        {9'004'999'999'999'999'999, "9 EB"},
        {std::numeric_limits<std::int64_t>::max(), "9.22 EB"},
        {-1, "-1 byte"},
        {-1'200'000, "-1.2 MB"},
    };
    for (const auto &[bytes, text] : cases) {
        EXPECT_EQ(byteCountText(bytes).toStdString(), text) << bytes;
    }
}
