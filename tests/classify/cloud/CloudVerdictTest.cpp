#include "classify/cloud/CloudVerdict.h"

#include <gmock/gmock.h>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tests/classify/cloud/CloudSamples.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

// A reply whose only text is this.
QByteArray replyWith(const QString &text)
{
    const QJsonObject block{{u"type"_s, u"text"_s}, {u"text"_s, text}};
    return QJsonDocument(QJsonObject{{u"content"_s, QJsonArray{block}}}).toJson();
}

// Any UTF-16 text, rich in what the reader looks for.
rc::Gen<QString> anyText()
{
    const auto unit = rc::gen::weightedOneOf<char16_t>(
        {{5, rc::gen::element<char16_t>(u'{', u'}', u'"', u':', u',', u'[', u']', u'\\', u'`', u'\n', u'0', u't')},
         {4, rc::gen::cast<char16_t>(rc::gen::inRange(0x20, 0x7F))},
         {1, rc::gen::cast<char16_t>(rc::gen::inRange(0xD800, 0xE000))},
         {1, rc::gen::cast<char16_t>(rc::gen::inRange(0, 0x10000))}});
    return rc::gen::map(rc::gen::container<std::u16string>(unit),
                        [](const std::u16string &text) { return QString::fromStdU16String(text); });
}

// Text that UTF-8 can carry.
rc::Gen<QString> properText()
{
    return rc::gen::map(anyText(), [](const QString &text) { return QString::fromUtf8(text.toUtf8()); });
}

rc::Gen<QString> textWithoutBraces()
{
    return rc::gen::map(anyText(), [](QString text) { return text.remove(u'{').remove(u'}'); });
}

bool isParserError(const Verdict &verdict)
{
    return !verdict && verdict.error().kind == CloudError::Kind::platform && !verdict.error().text.isEmpty();
}

// For RC_ASSERT, which evaluates both sides of an "or".
bool isAnswer(const Verdict &verdict)
{
    return verdict || verdict == unreadable || isParserError(verdict);
}

} // namespace

TEST(ParseVerdict, ReadsAllFourKeys)
{
    EXPECT_EQ(
        parseVerdict(
            uR"({"primary":"Kitchen","secondary":["Dining Room","Pool"],"person_visible":true,"note":"wide shot"})"_s),
        (CloudVerdict{u"Kitchen"_s, {u"Dining Room"_s, u"Pool"_s}, true, u"wide shot"_s}));
}

TEST(ParseVerdict, ProseAroundTheObjectIsForgiven)
{
    EXPECT_EQ(parseVerdict(u"Sure! {\"primary\":\"Pool\"} hope that helps"_s), CloudVerdict{u"Pool"_s});
}

TEST(ParseVerdict, ACodeFenceAroundTheObjectIsForgiven)
{
    EXPECT_EQ(parseVerdict(u"```json\n{\"primary\":\"Pool\"}\n```"_s), CloudVerdict{u"Pool"_s});
}

TEST(ParseVerdict, TextWithoutBracesIsUnreadable)
{
    for (const auto &text : {u""_s, u"Pool"_s, u"{\"primary\":\"Pool\""_s, u"\"primary\":\"Pool\"}"_s}) {
        EXPECT_EQ(parseVerdict(text), unreadable) << text.toStdString();
    }
}

TEST(ParseVerdict, BracesTheWrongWayRoundAreUnreadable)
{
    EXPECT_EQ(parseVerdict(u"}{"_s), unreadable);
    EXPECT_EQ(parseVerdict(u"} \"primary\":\"Pool\" {"_s), unreadable);
}

TEST(ParseVerdict, WhatStandsBetweenTheBracesMustBeJson)
{
    EXPECT_TRUE(isParserError(parseVerdict(u"{primary: Pool}"_s)));
    EXPECT_TRUE(isParserError(parseVerdict(u"{\"primary\":\"Pool\"} and {\"primary\":\"Garage\"}"_s)));
    EXPECT_TRUE(isParserError(parseVerdict(u"{\"primary\":\"Po\xD800ol\",}"_s)));
}

TEST(ParseVerdict, APrimaryThatIsMissingOrNoTextIsUnreadable)
{
    for (const auto &json : {u"{}"_s, u"{\"primary\":null}"_s, u"{\"primary\":7}"_s, u"{\"primary\":[\"Pool\"]}"_s,
                             u"{\"primary\":{\"name\":\"Pool\"}}"_s, u"{\"Primary\":\"Pool\"}"_s}) {
        EXPECT_EQ(parseVerdict(json), unreadable) << json.toStdString();
    }
}

TEST(ParseVerdict, PersonVisibleAsTheStringTrueCountsAsFalse)
{
    EXPECT_EQ(parseVerdict(u"{\"primary\":\"Pool\",\"person_visible\":\"true\"}"_s), CloudVerdict{u"Pool"_s});
}

TEST(ParseVerdict, OptionalKeysOfOtherTypesCountAsAbsent)
{
    for (const auto &value : {u"null"_s, u"7"_s, u"{}"_s, u"[[]]"_s}) {
        const QString json = u"{\"primary\":\"Pool\",\"secondary\":%1,\"person_visible\":%1,\"note\":%1}"_s.arg(value);
        EXPECT_EQ(parseVerdict(json), CloudVerdict{u"Pool"_s}) << json.toStdString();
    }
    EXPECT_EQ(parseVerdict(u"{\"primary\":\"Pool\",\"secondary\":\"Garage\",\"note\":true}"_s),
              CloudVerdict{u"Pool"_s});
}

TEST(ParseVerdict, ASecondaryListThatHoldsAnythingButTextIsNoneAtAll)
{
    EXPECT_EQ(parseVerdict(u"{\"primary\":\"Pool\",\"secondary\":[\"Garage\",7]}"_s), CloudVerdict{u"Pool"_s});
}

TEST(ParseVerdict, NestingBeyondMeasureIsAnErrorAndNoCrash)
{
    const QString deep = u"{\"primary\":"_s + QString(400'000, u'[') + QString(400'000, u']') + u'}';
    EXPECT_TRUE(isParserError(parseVerdict(deep)));
    EXPECT_TRUE(isParserError(parseVerdict(QString(u"{\"a\":"_s).repeated(100'000) + QString(100'000, u'}'))));
}

RC_GTEST_PROP(ParseVerdict, AnyTextIsAnswered, ())
{
    const QString text = *anyText();
    const auto verdict = parseVerdict(text);
    RC_ASSERT(isAnswer(verdict));
    const bool hasRange = text.contains(u'{') && text.lastIndexOf(u'}') > text.indexOf(u'{');
    RC_ASSERT(hasRange || verdict == unreadable);
}

RC_GTEST_PROP(ParseVerdict, AVerdictIsReadBackThroughAnyProseWithoutBraces, ())
{
    const CloudVerdict verdict{*properText(), *rc::gen::container<std::vector<QString>>(properText()),
                               *rc::gen::arbitrary<bool>(), *properText()};
    QJsonArray secondary;
    for (const QString &bin : verdict.secondary) {
        secondary.append(bin);
    }
    const QJsonObject json{{u"primary"_s, verdict.primary},
                           {u"secondary"_s, secondary},
                           {u"person_visible"_s, verdict.personVisible},
                           {u"note"_s, verdict.note}};
    const QString text = *textWithoutBraces() + QString::fromUtf8(QJsonDocument(json).toJson()) + *textWithoutBraces();
    RC_ASSERT(parseVerdict(text) == verdict);
}

TEST(ParseReply, TakesTheFirstTextWhateverTheTypeOfItsBlock)
{
    EXPECT_EQ(parseReply(R"({"content":[{"type":"thinking"},{"text":7},{"type":"odd","text":"{\"primary\":\"Pool\"}"},
                             {"type":"text","text":"{\"primary\":\"Garage\"}"}],"id":"x"})"),
              CloudVerdict{u"Pool"_s});
}

TEST(ParseReply, AnotherShapeIsUnreadable)
{
    for (const char *body :
         {"[]", "{}", R"({"content":"text"})", R"({"content":{}})", R"({"content":[]})", R"({"content":[{}]})",
          R"({"content":[{"text":null}]})", R"({"content":["{\"primary\":\"Pool\"}"]})",
          R"({"content":[{"text":"{\"primary\":\"Pool\"}"},7]})", R"({"error":{"text":"{}"}})"}) {
        EXPECT_EQ(parseReply(body), unreadable) << body;
    }
}

TEST(ParseReply, WhatIsNoJsonFailsInTheParsersWords)
{
    const QByteArray whole = replyWith(u"{\"primary\":\"Pool\"}"_s);
    for (const QByteArray &body : {QByteArray(), QByteArray("<html>"), QByteArray("\xff\xfe"), whole.chopped(4),
                                   QByteArray("{\"content\":[{\"text\":\"\xc3(\"}]}"), QByteArray(900'000, '[')}) {
        EXPECT_TRUE(isParserError(parseReply(body))) << body.left(60).constData();
    }
}

RC_GTEST_PROP(ParseReply, AnyDamageToAReplyIsAnswered, ())
{
    QByteArray body = replyWith(u"{\"primary\":\"Pool\",\"secondary\":[\"Garage\"],\"person_visible\":true}"_s);
    const int changes = *rc::gen::inRange(1, 6);
    for (int i = 0; i < changes; ++i) {
        const auto at = *rc::gen::inRange<qsizetype>(0, body.size());
        body.replace(at, *rc::gen::inRange(0, 4), QByteArray(*rc::gen::inRange(0, 3), *rc::gen::arbitrary<char>()));
    }
    const auto verdict = parseReply(body);
    RC_ASSERT(isAnswer(verdict));
}
