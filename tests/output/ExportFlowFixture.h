#pragma once

#include "output/FCPXMLWriter.h"
#include "output/MediaImporter.h"
#include "output/PlacesInBin.h"
#include "tests/core/engine/SortEngineFixture.h"
#include "tests/output/Footage.h"

namespace larkspan::test {

// A home, a Shoots folder and a shoot named "A&B" of two kitchens and a pool.
class ExportFlowTest : public SortEngineTest
{
protected:
    ExportFlowTest()
    {
        for (const char *name : {"kitchen 1.mov", "kitchen 2.mov", "pool 3.mov"}) {
            (void)folder.write(std::filesystem::path("A&B") / name, name);
        }
        std::filesystem::create_directories(shoots);
        (void)folder.write("home/.config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Papers\"\n");
    }

    SortSeams exportingSeams()
    {
        auto parts = seams();
        parts.organizeByBin = [](const auto &clips, const FileUrl &root, bool deleteSources, const CopyOrder &order) {
            return MediaImporter::organizeByBin(clips, root, deleteSources, order)
                .map_error([](const ImportError &error) { return CopyFailure{error.description()}; });
        };
        parts.placesInBin = placesInBin;
        parts.eventText = [](const std::vector<ClipPtr> &clips, const QString &name) {
            return FCPXMLWriter::event(clips, name);
        };
        return parts;
    }

    void sort(SortEngine &engine) const
    {
        engine.sortFolder(house);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }

    // Sorts with these options and exports.
    void sortAndExport(SortEngine &engine, const SortOptions &options) const
    {
        engine.setOptions(options);
        sort(engine);
        engine.exportEvent();
        ASSERT_TRUE(reaches(engine, StageKind::done)) << engine.stage().text.toStdString();
    }

    const std::filesystem::path housePath = folder / "A&B";
    const FileUrl house{housePath};
    const std::filesystem::path shoots = folder / "Shoots";
    const std::filesystem::path documents = folder / "home/Papers";

private:
    // Gives an environment variable another value for its lifetime.
    class Environment
    {
    public:
        Environment(const char *name, const std::filesystem::path &value) : m_name(name), m_old(qgetenv(name))
        {
            qputenv(name, QByteArray::fromStdString(value.native()));
        }
        ~Environment() { m_old.isNull() ? qunsetenv(m_name) : qputenv(m_name, m_old); }
        Environment(const Environment &) = delete;
        Environment &operator=(const Environment &) = delete;

    private:
        const char *const m_name;
        const QByteArray m_old;
    };

    const Environment home{"HOME", folder / "home"};
    const Environment config{"XDG_CONFIG_HOME", folder / "home/.config"};
};

} // namespace larkspan::test
