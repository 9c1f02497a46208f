#pragma once

#include <QtCore/QDate>

#include "tests/core/engine/SortEngineFixture.h"

namespace larkspan::test {

// A card with two clips and a photo, and an engine whose copies leave records.
class CopyHistoryTest : public SortEngineTest
{
protected:
    CopyHistoryTest()
    {
        qputenv("HOME", QByteArray::fromStdString((folder / "home").string()));
        (void)folder.write("card/DCIM/kitchen 1.mov", "film");
        (void)folder.write("card/DCIM/pool 2.mov", "film");
        for (const char *other : {"index", "DCIM/photo.jpg", ".hidden", ".Trashes/old.jpg", "Library.fcpbundle/x"}) {
            (void)folder.write(std::filesystem::path("card") / other);
        }
        std::filesystem::create_directory(folder / "Shoots");
    }
    ~CopyHistoryTest() override { qputenv("HOME", home); }

    // A record as an importer makes it: whether by a card's import or by an export, it knows only files.
    static CopyRecord recordOf(std::span<const FileUrl> urls, const FileUrl &destination)
    {
        CopyRecord record{.destination = destination, .level = VerifyLevel::checksum};
        for (const FileUrl &url : urls) {
            record.files.push_back({.source = url,
                                    .destination = destination.appending(url.lastPathComponent()),
                                    .bytes = 4,
                                    .state = CopyState::readBack});
        }
        return record;
    }

    SortSeams copyingSeams()
    {
        auto parts = seams();
        parts.copyFiles = [this](const auto &urls, const FileUrl &destination, const CopyOrder &order) -> CopyAnswer {
            std::filesystem::create_directories(destination.path());
            for (const FileUrl &url : urls) {
                std::filesystem::copy_file(url.path(), destination.path() / url.lastPathBytes());
            }
            order.observer.progressed({.totalBytes = 8, .copiedBytes = 4});
            copying.pass();
            CopyRecord record = recordOf(urls, destination);
            record.failure = importFails ? QStringLiteral("no") : QString();
            order.observer.ended(record);
            return importFails ? CopyAnswer(tl::unexpected(CopyFailure{QStringLiteral("no")}))
                               : std::vector<CopyResult>();
        };
        parts.organizeByBin = [](const std::vector<ClipToOrganize> &clips, const FileUrl &root, bool,
                                 const CopyOrder &order) {
            std::vector<FileUrl> urls;
            std::ranges::transform(clips, std::back_inserter(urls), &ClipToOrganize::url);
            order.observer.ended(recordOf(urls, root));
            return OrganizeAnswer();
        };
        parts.copyReport = [](const std::vector<CopyRecord> &copies, const QString &name) {
            return QStringLiteral("%1: %2 copies").arg(name).arg(copies.size());
        };
        parts.copyLog = &log;
        return parts;
    }

    void import(SortEngine &engine)
    {
        engine.setImportRoot(FileUrl(folder / "Shoots"));
        engine.importCard(FileUrl(folder / "card"), QStringLiteral("CARD"));
        copying.open();
    }

    std::filesystem::path dated() const
    {
        return folder / "Shoots" / ("CARD — " + QDate::currentDate().toString(Qt::ISODate).toStdString());
    }

    const QByteArray home = qgetenv("HOME");
    const CopyLog log{cacheFolder / "Copies"};
    Gate copying;
    bool importFails = false;
};

} // namespace larkspan::test
