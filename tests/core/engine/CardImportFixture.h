#pragma once

#include "tests/core/engine/SortEngineFixture.h"

namespace larkspan::test {

// A real copy, small and plain: what the engine needs of an importer.
inline CopyAnswer copyPlainly(const std::vector<FileUrl> &urls, const FileUrl &destination,
                              const ProgressCallback &progress)
{
    std::vector<CopyResult> results;
    std::filesystem::create_directories(destination.path());
    for (const FileUrl &url : urls) {
        const FileUrl copy = destination.appending(url.lastPathComponent());
        std::filesystem::copy_file(url.path(), copy.path());
        results.push_back({url, copy});
        progress(static_cast<int>(results.size()), static_cast<int>(urls.size()));
    }
    return results;
}

// An engine that can import, a card of two clips, and a Shoots folder.
class CardImportTest : public SortEngineTest
{
protected:
    SortSeams importingSeams()
    {
        auto parts = seams();
        parts.copyFiles = [this](const auto &urls, const auto &destination, const CopyOrder &order) {
            askedLevel = order.verify;
            return copyPlainly(urls, destination, order.progress);
        };
        return parts;
    }

    void insertCard() const
    {
        (void)folder.write("card/DCIM/kitchen 1.mov", "film");
        (void)folder.write("card/DCIM/pool 2.mov", "film");
        std::filesystem::create_directory(folder / "Shoots");
    }

    FileUrl card() const { return FileUrl(folder / "card"); }
    FileUrl shoots() const { return FileUrl(folder / "Shoots"); }

    std::optional<VerifyLevel> askedLevel;
};

} // namespace larkspan::test
