#include "classify/cloud/CloudClassifier.h"

#include <gmock/gmock.h>

#include "classify/cloud/HttpClient.h"
#include "core/bins/BinRules.h"
#include "core/engine/SortSeams.h"
#include "tests/classify/cloud/CloudSamples.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

namespace {

// Says the same of every clip.
class Settled : public FrameClassifier
{
public:
    explicit Settled(FrameAnalysis analysis) : m_analysis(std::move(analysis)) {}
    FrameAnalysis analyze(std::span<const QImage> /*frames*/) const override { return m_analysis; }

private:
    FrameAnalysis m_analysis;
};

const FrameAnalysis local{.scores = {{u"Kitchen"_s, 0.5}, {u"Bedroom"_s, 0.25}},
                          .raw = {{u"oven"_s, 0.5}},
                          .featurePrint = std::make_shared<const FeaturePrint>(std::vector{1.0f}),
                          .humanFraction = 0.001,
                          .framesWithHuman = 1};

Frames frames(int count)
{
    Frames made;
    for (int i = 0; i < count; ++i) {
        made.emplace_back(448, 252 - i, QImage::Format_RGB32); // told apart by their height
        made.back().fill(Qt::darkGreen);
    }
    return made;
}

class CloudClassifierTest : public testing::Test
{
protected:
    [[nodiscard]] FrameAnalysis analyze(const CloudSettings &settings, const Frames &stills,
                                        const FrameAnalysis &analysis = local) const
    {
        return CloudClassifier(settings, std::make_shared<Settled>(analysis), client).analyze(stills);
    }

    // Returns the merged analysis when the model's text is this.
    [[nodiscard]] FrameAnalysis merged(const QString &text, const FrameAnalysis &analysis = local) const
    {
        const HttpServer server(verdict(text));
        return analyze(settingsFor(server.url()), frames(1), analysis);
    }

    // The pictures of the only request.
    static std::vector<QImage> imagesSentTo(const HttpServer &server)
    {
        std::vector<QImage> images;
        for (const auto &request : server.requests()) {
            for (const QJsonValue message : QJsonDocument::fromJson(request.body)[u"messages"_s].toArray()) {
                for (const QJsonValue block : message[u"content"_s].toArray()) {
                    if (block[u"type"_s] == u"image"_s) {
                        const auto data = block[u"source"_s][u"data"_s].toString().toLatin1();
                        images.push_back(QImage::fromData(
                            *QByteArray::fromBase64Encoding(data, QByteArray::AbortOnBase64DecodingErrors), "JPEG"));
                    }
                }
            }
        }
        return images;
    }

    const std::shared_ptr<const HttpClient> client = std::make_shared<const HttpClient>();
};

} // namespace

TEST_F(CloudClassifierTest, AnEmptyKeySendsNothingAndReturnsTheLocalAnalysisUnchanged)
{
    const HttpServer server(verdict(u"{\"primary\":\"Pool\"}"_s));
    auto settings = settingsFor(server.url());
    settings.apiKey.clear();
    EXPECT_EQ(analyze(settings, frames(4)), local);
    EXPECT_EQ(server.connections(), 0);
}

TEST_F(CloudClassifierTest, NoFramesSendNothing)
{
    const HttpServer server(verdict(u"{\"primary\":\"Pool\"}"_s));
    EXPECT_EQ(analyze(settingsFor(server.url()), {}), local);
    EXPECT_EQ(server.connections(), 0);
}

TEST_F(CloudClassifierTest, TheFirstThreeOfFourFramesAreSentInOrderAsTheyAre)
{
    const HttpServer server(verdict(u"{\"primary\":\"Pool\"}"_s));
    (void)analyze(settingsFor(server.url()), frames(4));
    const auto size = [](int height) { return testing::Property(&QImage::size, QSize(448, height)); };
    EXPECT_THAT(imagesSentTo(server), ElementsAre(size(252), size(251), size(250)));
}

TEST_F(CloudClassifierTest, AClipWithOneReadableFrameSendsOneImage)
{
    const HttpServer server(verdict(u"{\"primary\":\"Pool\"}"_s));
    (void)analyze(settingsFor(server.url()), frames(1));
    EXPECT_THAT(imagesSentTo(server), SizeIs(1));
}

TEST_F(CloudClassifierTest, AtMostNoFramesStillSendsOne)
{
    for (const int most : {0, -1, std::numeric_limits<int>::min()}) {
        const HttpServer server(verdict(u"{\"primary\":\"Pool\"}"_s));
        auto settings = settingsFor(server.url());
        settings.maxFramesPerClip = most;
        (void)analyze(settings, frames(4));
        EXPECT_THAT(imagesSentTo(server), SizeIs(1));
    }
}

TEST_F(CloudClassifierTest, AFrameThatCannotBeEncodedIsSkipped)
{
    const HttpServer server(verdict(u"{\"primary\":\"Pool\"}"_s));
    Frames stills = frames(3);
    stills[1] = QImage();
    (void)analyze(settingsFor(server.url()), stills);
    EXPECT_THAT(imagesSentTo(server), SizeIs(2));
}

TEST_F(CloudClassifierTest, WithoutAnyFrameThatCanBeEncodedNothingIsSent)
{
    const HttpServer server(verdict(u"{\"primary\":\"Pool\"}"_s));
    EXPECT_EQ(analyze(settingsFor(server.url()), {QImage(), QImage()}), local);
    EXPECT_EQ(server.connections(), 0);
}

TEST_F(CloudClassifierTest, TheVerdictReplacesTheLocalScoresAndLeavesTheRest)
{
    FrameAnalysis expected = local;
    expected.scores = {{u"Pool"_s, 1.0}, {u"Exterior Back"_s, 0.55}};
    expected.modelNote = u"pool at dusk"_s;
    EXPECT_EQ(merged(uR"({"primary":"Pool","secondary":["Exterior Back","Moat"],"note":"pool at dusk"})"_s), expected);
}

TEST_F(CloudClassifierTest, ASecondaryEqualToThePrimaryOverwritesItsScore)
{
    EXPECT_THAT(merged(uR"({"primary":"Pool","secondary":["Pool"]})"_s).scores, ElementsAre(Pair(u"Pool"_s, 0.55)));
}

TEST_F(CloudClassifierTest, AVerdictThatNamesNoBinExactlyLeavesTheLocalScoresAndNoNote)
{
    EXPECT_EQ(merged(uR"({"primary":"Bedroom ","note":"a bed"})"_s), local);
    EXPECT_EQ(merged(uR"({"primary":"bedroom","secondary":["Moat","","Unsorted"],"note":"a bed"})"_s), local);
}

TEST_F(CloudClassifierTest, AnUnknownPrimaryWithAKnownSecondaryCountsAsThatAlone)
{
    EXPECT_THAT(merged(uR"({"primary":"Moat","secondary":["Pool"]})"_s).scores, ElementsAre(Pair(u"Pool"_s, 0.55)));
}

TEST_F(CloudClassifierTest, APersonLiftsTheHumanEvidenceToTheBar)
{
    FrameAnalysis expected = local;
    expected.humanConfirmed = true;
    expected.framesWithHuman = 2;
    expected.humanFraction = 0.006;
    EXPECT_EQ(merged(uR"({"primary":"Moat","person_visible":true})"_s), expected);

    FrameAnalysis more = local;
    more.humanConfirmed = true;
    more.framesWithHuman = 4;
    more.humanFraction = 0.2;
    EXPECT_EQ(merged(uR"({"primary":"Moat","person_visible":true})"_s, more), more);
}

TEST_F(CloudClassifierTest, NoPersonTakesNoLocalEvidenceAway)
{
    FrameAnalysis seen = local;
    seen.humanConfirmed = true;
    seen.framesWithHuman = 3;
    seen.humanFraction = 0.1;
    EXPECT_EQ(merged(uR"({"primary":"Moat","person_visible":false})"_s, seen), seen);
}

TEST_F(CloudClassifierTest, ASmallFigureMakesTheClipOneOfPeople)
{
    FrameAnalysis nobody = local;
    nobody.framesWithHuman = 0;
    nobody.humanFraction = 0.0;
    const auto analysis = merged(uR"({"primary":"Agent / Talent","person_visible":true})"_s, nobody);
    const auto decision = classification(analysis, MediaClip(FileUrl("/a.mov")), {});
    EXPECT_EQ(decision.primary, u"Agent / Talent"_s);
    EXPECT_GE(decision.score, 0.6);
}

TEST_F(CloudClassifierTest, APrimaryAloneIsSureAndASecondaryIsTheRunnerUp)
{
    const MediaClip clip(FileUrl("/a.mov"));
    const auto alone = classification(merged(uR"({"primary":"Pool"})"_s), clip, {});
    EXPECT_EQ(alone.primary, u"Pool"_s);
    EXPECT_DOUBLE_EQ(alone.score, 1.0);
    const auto both = classification(merged(uR"({"primary":"Pool","secondary":["Exterior Back"]})"_s), clip, {});
    EXPECT_EQ(both.primary, u"Pool"_s);
    EXPECT_NEAR(both.score, 0.645, 0.001);
    EXPECT_EQ(both.runnerUp, u"Exterior Back"_s);
    EXPECT_NEAR(both.runnerUpScore, 0.355, 0.001);
    EXPECT_THAT(both.secondaries, IsEmpty());
}

TEST_F(CloudClassifierTest, EveryFailureLeavesTheLocalAnalysisWithANote)
{
    const auto failed = [](const QString &note) {
        FrameAnalysis analysis = local;
        analysis.modelNote = note;
        return analysis;
    };
    const HttpServer server([](const HttpServer::Request &) { return HttpServer::respond(401, "no such key"); });
    EXPECT_EQ(analyze(settingsFor(u"no url"_s), frames(1)), failed(u"cloud: that endpoint URL isn't valid"_s));
    EXPECT_EQ(analyze(settingsFor(server.url()), frames(1)), failed(u"cloud: server said 401 — no such key"_s));
    EXPECT_EQ(merged(u"no braces"_s), failed(u"cloud: couldn't read the model's reply"_s));
    EXPECT_EQ(merged(u"{\"primary\"}"_s), failed(u"cloud: missing name separator"_s));
}

TEST_F(CloudClassifierTest, AFailureIsNotTriedAgain)
{
    const HttpServer server([](const HttpServer::Request &) { return HttpServer::respond(500, ""); });
    (void)analyze(settingsFor(server.url()), frames(1));
    EXPECT_THAT(server.requests(), SizeIs(1));
}

TEST_F(CloudClassifierTest, ANoteThatSaysTheKeyBackDoesNotKeepIt)
{
    const auto analysis = merged(uR"({"primary":"Pool","note":"%1!"})"_s.arg(secretKey));
    EXPECT_EQ(analysis.modelNote, u"[key]!"_s);
}
