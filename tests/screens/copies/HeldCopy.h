#pragma once

#include "tests/core/engine/SortEngineFixture.h"

namespace larkspan::test {

// An engine with a Shoots folder, whose copies of cards are held back until the end of the test.
class HeldCopy : public SortEngineTest
{
protected:
    HeldCopy() : engine(heldSeams()) { engine.setImportRoot(FileUrl(folder / "Shoots")); }
    ~HeldCopy() override { copying.open(); }

    // Brings in another card than the one on offer.
    void startCopy()
    {
        (void)folder.write("OTHER/pool 1.mov");
        std::filesystem::create_directories(folder / "Shoots");
        engine.importCard(FileUrl(folder / "OTHER"), QStringLiteral("OTHER"));
        copying.awaitArrival();
    }

    Gate copying;
    SortEngine engine;

private:
    SortSeams heldSeams()
    {
        SortSeams parts = seams();
        parts.copyFiles = [this](const auto &...) {
            copying.pass();
            return std::vector<CopyResult>();
        };
        return parts;
    }
};

} // namespace larkspan::test
