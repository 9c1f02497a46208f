#pragma once

#include <gmock/gmock.h>

#include "core/copies/CopyHistory.h"
#include "core/engine/SortEngine.h"
#include "core/engine/SortSeams.h"
#include "tests/support/Gate.h"
#include "tests/support/TempFolder.h"
#include "tests/support/WaitUntil.h"

namespace larkspan::test {

// An engine on real files whose media and models are made by hand: a file's name says what it shows.
// "kitchen 3.mov" is a kitchen shot 3 hours after the epoch; a name that holds "dark" yields no frames.
class SortEngineTest : public testing::Test
{
protected:
    using StageKind = SortEngine::StageKind;

    class NamedFrames : public FrameClassifier
    {
    public:
        FrameAnalysis analyze(std::span<const QImage> frames) const override
        {
            return {.scores = {{frames.front().text(QStringLiteral("bin")), 1.0}},
                    .raw = {{frames.front().text(QStringLiteral("bin")), 1.0}},
                    .featurePrint = std::make_shared<FeaturePrint>(std::vector<float>{0.0f})};
        }
    };

    static ClipPtr probe(const FileUrl &url)
    {
        auto clip = std::make_shared<MediaClip>(url);
        const QStringList words = url.baseName().split(u' ');
        clip->creationDate = Date(std::chrono::hours(words.value(1).toInt()));
        return clip;
    }

    static Frames sample(const MediaClip &clip)
    {
        const QString name = clip.url.baseName();
        if (name.contains(QStringLiteral("dark"))) {
            return {};
        }
        QString bin = name.section(u' ', 0, 0);
        bin[0] = bin[0].toUpper();
        QImage frame(4, 4, QImage::Format_RGB888);
        frame.fill(Qt::black);
        frame.setText(QStringLiteral("bin"), bin);
        return {frame};
    }

    SortSeams seams()
    {
        return {
            .probeClip = probe,
            .sampleFrames = [](const MediaClip &clip, int, double) { return sample(clip); },
            .makeLocalClassifier = [] { return std::make_shared<NamedFrames>(); },
            .awaitCloudKey = [](const std::stop_token &) { return QString(); },
            .copyFiles = [](const auto &...) { return std::vector<CopyResult>(); },
            .placesInBin = [](const auto &...) { return std::vector<FileUrl>(); },
            .eventText = [](const std::vector<ClipPtr> &, const QString &name) { return name; },
            .openFile = [this](const FileUrl &file) { opened.push_back(file); },
            .revealFile = [this](const FileUrl &file) { revealed.push_back(file); },
            .chooseFolder =
                [this](const FolderPanel &panel, const std::function<void(FileUrl)> &chosen) {
                    panels.push_back(panel);
                    if (folderToChoose) {
                        chosen(*folderToChoose);
                    }
                },
            .projects = &cache,
        };
    }

    [[nodiscard]] static bool reaches(const SortEngine &engine, StageKind stage)
    {
        return waitUntil([&] { return engine.stage().kind == stage; });
    }

    // Everything that was handed to the main thread so far has been looked at when this returns.
    static void drain()
    {
        for (int i = 0; i < 10; ++i) {
            QCoreApplication::processEvents();
        }
    }

    static std::vector<QString> namesOf(const std::vector<ClipPtr> &clips)
    {
        std::vector<QString> names;
        names.reserve(clips.size());
        for (const ClipPtr &clip : clips) {
            names.push_back(clip->url.baseName());
        }
        return names;
    }

    // The shoot as it is on the medium.
    std::optional<CachedProject> saved() { return cache.open(projectID(shoot)); }

    void makeClips(std::initializer_list<const char *> names) const
    {
        for (const char *name : names) {
            (void)folder.write(std::string(name) + ".mov");
        }
    }

    const TempFolder folder;
    const FileUrl shoot{folder.path()};
    const TempFolder cacheFolder;
    ProjectCache cache{cacheFolder.path()};
    std::vector<FileUrl> opened;
    std::vector<FileUrl> revealed;
    std::vector<FolderPanel> panels;
    std::optional<FileUrl> folderToChoose;
};

} // namespace larkspan::test
