// The question about a running copy when the window is closed, without a window.
#include "shell/window/CloseRequest.h"

#include "tests/core/engine/SortEngineFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using State = CloseRequest::State;
using Answer = CloseRequest::Answer;

class CloseRequestTest : public SortEngineTest
{
protected:
    CloseRequestTest() : engine(heldSeams())
    {
        request.setEngine(&engine);
        QObject::connect(&request, &CloseRequest::closeDue, [this] { ++closes; });
    }
    ~CloseRequestTest() override { copying.open(100); }

    SortSeams heldSeams()
    {
        SortSeams parts = seams();
        parts.copyFiles = [this](const auto &...) -> tl::expected<std::vector<CopyResult>, CopyFailure> {
            copying.pass();
            if (!failure.isEmpty()) {
                return tl::unexpected(CopyFailure{failure});
            }
            return std::vector<CopyResult>();
        };
        return parts;
    }

    // Begins to bring in a card; its copy is held.
    void startCopy()
    {
        (void)folder.write("CARD/pool 1.mov");
        std::filesystem::create_directories(folder / "Shoots");
        engine.setImportRoot(FileUrl(folder / "Shoots"));
        engine.importCard(FileUrl(folder / "CARD"), u"CARD"_s);
        copying.awaitArrival();
        ASSERT_TRUE(engine.isCopying());
    }

    void ask()
    {
        startCopy();
        EXPECT_FALSE(request.allowsClosing());
        ASSERT_EQ(request.state(), State::Asking);
    }

    void answer(Answer answer) { request.answer(static_cast<int>(answer)); }

    void endCopy()
    {
        copying.open();
        ASSERT_TRUE(waitUntil([this] { return !engine.isCopying(); }));
    }

    Gate copying;
    QString failure; // set before the copy begins; empty for none
    int closes = 0;
    SortEngine engine;
    CloseRequest request;
};

} // namespace

TEST_F(CloseRequestTest, AWindowMayCloseWhileNothingIsCopied)
{
    EXPECT_TRUE(request.allowsClosing());
    EXPECT_EQ(request.state(), State::Idle);
    EXPECT_FALSE(request.isShown());
}

TEST_F(CloseRequestTest, DuringACopyTheEditorIsAsked)
{
    ask();
    EXPECT_TRUE(request.isShown());
    EXPECT_EQ(request.title(), u"Footage is still being copied"_s);
    EXPECT_THAT(request.answers(), ElementsAre(u"Stop and Close"_s, u"Keep Open"_s, u"Finish, Then Close"_s));
    EXPECT_EQ(closes, 0);
}

TEST_F(CloseRequestTest, KeepingTheWindowOpenEndsTheQuestionAndNotTheCopy)
{
    ask();
    answer(Answer::KeepOpen);
    EXPECT_EQ(request.state(), State::Idle);
    EXPECT_TRUE(engine.isCopying());
    endCopy();
    EXPECT_EQ(closes, 0);
}

TEST_F(CloseRequestTest, ACopyThatEndsBeforeTheAnswerEndsTheQuestion)
{
    ask();
    endCopy();
    EXPECT_EQ(request.state(), State::Idle);
    EXPECT_EQ(closes, 0);
}

TEST_F(CloseRequestTest, FinishingClosesWhenTheCopyHasEnded)
{
    ask();
    answer(Answer::Finish);
    EXPECT_EQ(request.state(), State::Finishing);
    EXPECT_EQ(request.title(), u"Closing when the copy is done…"_s);
    EXPECT_THAT(request.answers(), IsEmpty());
    EXPECT_TRUE(engine.hasFolder()) << "the shoot stays";
    EXPECT_EQ(closes, 0);
    endCopy();
    EXPECT_EQ(request.state(), State::Idle);
    EXPECT_EQ(closes, 1);
    EXPECT_TRUE(request.allowsClosing());
}

TEST_F(CloseRequestTest, WhileItFinishesTheMessageFollowsTheProgress)
{
    ask();
    answer(Answer::Finish);
    int changes = 0;
    QObject::connect(&request, &CloseRequest::changed, [&changes] { ++changes; });
    Q_EMIT engine.progressChanged();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(request.message(),
              u"%1 of %2 files are copied. You can leave this window alone."_s.arg(engine.done()).arg(engine.total()));
}

TEST_F(CloseRequestTest, StoppingStopsTheCopyAndClosesWhenItHasEnded)
{
    ask();
    answer(Answer::Stop);
    EXPECT_EQ(request.state(), State::Stopping);
    EXPECT_EQ(request.title(), u"Stopping the copy…"_s);
    EXPECT_THAT(request.answers(), IsEmpty());
    EXPECT_FALSE(engine.hasFolder()) << "the shoot is dropped";
    EXPECT_EQ(closes, 0);
    endCopy();
    EXPECT_EQ(request.state(), State::Idle);
    EXPECT_EQ(closes, 1);
}

TEST_F(CloseRequestTest, OnceAnsweredNothingElseAnswersOrAsksAgain)
{
    for (const Answer first : {Answer::Finish, Answer::Stop}) {
        ask();
        answer(first);
        const State awaited = request.state();
        for (const Answer second : {Answer::Stop, Answer::KeepOpen, Answer::Finish}) {
            answer(second);
            EXPECT_EQ(request.state(), awaited);
        }
        request.keepOpen(); // Escape
        EXPECT_FALSE(request.allowsClosing());
        EXPECT_EQ(request.state(), awaited);
        endCopy();
        ASSERT_TRUE(waitUntil([this] { return engine.stage().kind != StageKind::working; }));
    }
    EXPECT_EQ(closes, 2);
}

TEST_F(CloseRequestTest, EscapeKeepsTheWindowOpen)
{
    ask();
    request.keepOpen();
    EXPECT_EQ(request.state(), State::Idle);
    EXPECT_TRUE(engine.isCopying());
}

TEST_F(CloseRequestTest, AnAnswerWhileTheQuestionFadesAfterKeepOpenIsDropped)
{
    ask();
    answer(Answer::KeepOpen);
    answer(Answer::Stop);
    answer(Answer::Finish);
    EXPECT_EQ(request.state(), State::Idle);
    EXPECT_TRUE(engine.hasFolder());
    endCopy();
    EXPECT_EQ(closes, 0);
}

TEST_F(CloseRequestTest, AnAnswerWhileTheQuestionFadesAfterTheCopyOnlyCloses)
{
    for (const Answer late : {Answer::Stop, Answer::Finish}) {
        closes = 0;
        ask();
        endCopy();
        ASSERT_TRUE(waitUntil([this] { return engine.stage().kind != StageKind::working; }));
        answer(Answer::KeepOpen);
        EXPECT_EQ(closes, 0);
        answer(late);
        EXPECT_EQ(closes, 1);
        EXPECT_EQ(request.state(), State::Idle);
        EXPECT_TRUE(engine.hasFolder());
    }
}

TEST_F(CloseRequestTest, AFailedCopyIsReadAboutAndNotClosedOver)
{
    failure = u"The card can't be read any more."_s;
    ask();
    answer(Answer::Finish);
    endCopy();
    EXPECT_EQ(engine.stage().kind, StageKind::failed);
    EXPECT_EQ(request.state(), State::Idle);
    EXPECT_EQ(closes, 0);
    EXPECT_EQ(request.title(), u"Closing when the copy is done…"_s) << "while it fades";
    EXPECT_TRUE(request.allowsClosing()) << "the next time";
}

TEST_F(CloseRequestTest, TheNextCopyIsAskedAboutAnew)
{
    ask();
    answer(Answer::KeepOpen);
    EXPECT_FALSE(request.allowsClosing());
    EXPECT_EQ(request.state(), State::Asking);
    EXPECT_THAT(request.answers(), testing::SizeIs(3));
}
