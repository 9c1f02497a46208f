#include <cstdarg>
#include <cstdio>
#include <ostream>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/valid.h>
#include <QtCore/QRegularExpression>
#include <QtCore/QStringDecoder>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "output/FCPXMLWriter.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;

// Prints a counterexample, unit by unit.
void showValue(const QString &text, std::ostream &out)
{
    for (const QChar unit : text) {
        out << "U+" << QString::number(unit.unicode(), 16).toStdString() << ' ';
    }
}

namespace {

// Any UTF-16, with what XML treats in its own way far more often than chance would have it.
rc::Gen<QString> anyText()
{
    const auto unit = rc::gen::weightedOneOf<char16_t>(
        {{4, rc::gen::cast<char16_t>(rc::gen::inRange(0x20, 0x7F))},
         {2, rc::gen::element<char16_t>(u'&', u'<', u'>', u'"', u'\'', u'\t', u'\n', u'\r', 0, 1, 0x1F, 0x7F, 0x85,
                                        0x2028, 0xFEFF, 0xFFFD, 0xFFFE, 0xFFFF)},
         {2, rc::gen::cast<char16_t>(rc::gen::inRange(0xD800, 0xE000))},
         {2, rc::gen::cast<char16_t>(rc::gen::inRange(0, 0x10000))}});
    return rc::gen::map(rc::gen::container<std::u16string>(unit),
                        [](const std::u16string &text) { return QString::fromStdU16String(text); });
}

// Any bytes that a folder can hold as a name.
rc::Gen<std::string> anyFileName()
{
    const auto byte = rc::gen::suchThat(rc::gen::arbitrary<char>(), [](char c) { return c != '\0' && c != '/'; });
    return rc::gen::map(rc::gen::container<std::string>(byte), [](const std::string &name) { return name + "x.mov"; });
}

rc::Gen<ClipPtr> anyClip()
{
    return rc::gen::exec([] {
        auto clip = std::make_shared<MediaClip>(FileUrl("/shoot/" + *anyFileName()));
        clip->duration = *rc::gen::map(rc::gen::inRange(0, 100'000'000), [](int ms) { return ms / 1000.0; });
        clip->displaySize = {*rc::gen::map(rc::gen::inRange(0, 9000), [](int w) { return w / 2.0; }), 2160.0};
        clip->frameDurationValue = *rc::gen::element<std::int64_t>(1, 100, 512, 1001);
        clip->frameDurationScale = *rc::gen::element(24, 2997, 15360, 24000, 60000);
        clip->creationDate = distantPast + std::chrono::seconds(*rc::gen::inRange(0, 5));
        clip->primaryBin = *anyText();
        clip->extraBins = *rc::gen::container<std::vector<QString>>(anyText());
        clip->timecode = *rc::gen::element<std::optional<Timecode>>(
            std::nullopt, Timecode::parsed(u"01:00:00;00"_s, 29.97), Timecode::parsed(u"23:59:59:23"_s, 23.976));
        return ClipPtr(clip);
    });
}

struct XmlFree
{
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
};
using XmlDocument = std::unique_ptr<xmlDoc, XmlFree>;

XmlDocument parsed(const QByteArray &text)
{
    return XmlDocument(xmlReadMemory(text.constData(), static_cast<int>(text.size()), "event.fcpxml", nullptr,
                                     XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE));
}

QString attribute(xmlNode *node, const char *name)
{
    xmlChar *const value = xmlGetProp(node, reinterpret_cast<const xmlChar *>(name));
    // A text may well begin with U+FEFF, which a plain conversion takes for a mark and drops.
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    const QString result = decode(reinterpret_cast<const char *>(value));
    xmlFree(value);
    return result;
}

std::vector<xmlNode *> elements(xmlNode *parent, const char *name)
{
    std::vector<xmlNode *> result;
    for (xmlNode *node = parent->children; node != nullptr; node = node->next) {
        if (node->type == XML_ELEMENT_NODE && xmlStrEqual(node->name, reinterpret_cast<const xmlChar *>(name)) != 0) {
            result.push_back(node);
        }
    }
    return result;
}

struct XmlRelease
{
    void operator()(xmlDtd *grammar) const { xmlFreeDtd(grammar); }
    void operator()(xmlValidCtxt *context) const { xmlFreeValidCtxt(context); }
};

void appendMessage(void *text, const char *format, ...)
{
    std::array<char, 1000> line{};
    va_list arguments;
    va_start(arguments, format);
    static_cast<void>(std::vsnprintf(line.data(), line.size(), format, arguments));
    va_end(arguments);
    *static_cast<std::string *>(text) += line.data();
}

// All breaches of the grammar; empty if there are none.
std::string breach(xmlDoc *document)
{
    static const std::unique_ptr<xmlDtd, XmlRelease> grammar(
        xmlParseDTD(nullptr, reinterpret_cast<const xmlChar *>(LARKSPAN_EVENT_GRAMMAR)));
    if (!grammar) {
        return "there is no grammar";
    }
    std::string message;
    const std::unique_ptr<xmlValidCtxt, XmlRelease> context(xmlNewValidCtxt());
    context->userData = &message;
    context->error = appendMessage;
    const bool isValid = xmlValidateDtd(context.get(), document, grammar.get()) == 1;
    return isValid ? std::string() : "breach: " + message;
}

// Attributes that hold a time and hold none: "0s" or a fraction of seconds with whole numbers above and below.
std::vector<std::string> badTimes(const QString &text)
{
    static const QRegularExpression attribute(u"\\b(start|duration|frameDuration|tcStart)=\"([^\"]*)\""_s);
    static const QRegularExpression time(u"^(0|[1-9][0-9]*/[1-9][0-9]*)s$"_s);
    std::vector<std::string> bad;
    for (const QRegularExpressionMatch &match : attribute.globalMatch(text)) {
        if (!time.match(match.captured(2)).hasMatch()) {
            bad.push_back(match.captured(0).toStdString());
        }
    }
    return bad;
}

// Returns a text as a reader must see it: U+FFFD for what XML can't hold, and a blank for each line break or tab,
// since readers fold white space in attributes (a return with its line feed counts as one break).
QString expected(const QString &text)
{
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        if (unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            result += text.mid(i++, 2);
        } else if (unit == u'\t' || unit == u'\n' || unit == u'\r') {
            i += unit == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n' ? 1 : 0;
            result += u' ';
        } else {
            result += unit < u' ' || unit.isSurrogate() || unit >= QChar(0xFFFE) ? QChar(0xFFFD) : unit;
        }
    }
    return result;
}

} // namespace

RC_GTEST_PROP(FCPXMLWriterProperty, AnyClipsWithAnyNamesGiveAnEventThatKeepsTheGrammarAndReadsBackAsWritten, ())
{
    const auto clips = *rc::gen::container<std::vector<ClipPtr>>(anyClip());
    const QString name = *anyText();
    const QString text = FCPXMLWriter::event(clips, name, ProjectOrientation::automatic);
    const XmlDocument document = parsed(text.toUtf8());
    RC_ASSERT(document != nullptr);
    RC_ASSERT(breach(document.get()) == "");
    RC_ASSERT(badTimes(text) == std::vector<std::string>());

    xmlNode *const root = xmlDocGetRootElement(document.get());
    xmlNode *const event = elements(elements(root, "library").at(0), "event").at(0);
    RC_ASSERT(attribute(event, "name") == expected(name));

    const auto assets = elements(elements(root, "resources").at(0), "asset");
    RC_ASSERT(assets.size() == clips.size());
    std::map<QString, ClipPtr> clipByAsset;
    for (std::size_t i = 0; i < clips.size(); ++i) {
        RC_ASSERT(attribute(assets[i], "name") == expected(clips[i]->url.baseName()));
        clipByAsset[attribute(assets[i], "id")] = clips[i];
    }

    const auto assetClips = elements(event, "asset-clip");
    RC_ASSERT(assetClips.size() == clips.size());
    for (xmlNode *const assetClip : assetClips) {
        const ClipPtr clip = clipByAsset.at(attribute(assetClip, "ref"));
        std::vector<QString> keywords;
        for (xmlNode *const keyword : elements(assetClip, "keyword")) {
            keywords.push_back(attribute(keyword, "value"));
            RC_ASSERT(attribute(keyword, "duration") == attribute(assetClip, "duration"));
        }
        std::vector<QString> bins = clip->bins();
        std::ranges::transform(bins, bins.begin(), expected);
        RC_ASSERT(keywords == bins);
    }
}

RC_GTEST_PROP(FCPXMLWriterProperty, AnyClipsWithAnyNamesGiveATimelineThatKeepsTheGrammarWithoutGapsOrOverlaps, ())
{
    const auto clips = *rc::gen::resize(20, rc::gen::container<std::vector<ClipPtr>>(anyClip()));
    const QString text = FCPXMLWriter::stringOut(clips, *anyText());
    const XmlDocument document = parsed(text.toUtf8());
    RC_ASSERT(document != nullptr);
    RC_ASSERT(breach(document.get()) == "");
    RC_ASSERT(badTimes(text) == std::vector<std::string>());

    xmlNode *const library = elements(xmlDocGetRootElement(document.get()), "library").at(0);
    xmlNode *const project = elements(elements(library, "event").at(0), "project").at(0);
    xmlNode *const sequence = elements(project, "sequence").at(0);
    const auto ticks = [](const QString &time) { return time.chopped(1).section(u'/', 0, 0).toLongLong(); };
    qint64 end = 0;
    for (xmlNode *const clip : elements(elements(sequence, "spine").at(0), "asset-clip")) {
        RC_ASSERT(ticks(attribute(clip, "offset")) == end);
        RC_ASSERT(ticks(attribute(clip, "duration")) > 0);
        end += ticks(attribute(clip, "duration"));
    }
    RC_ASSERT(ticks(attribute(sequence, "duration")) == end);
}

RC_GTEST_PROP(FCPXMLWriterProperty, AnyTimecodeGivesAnEventThatKeepsTheGrammar, ())
{
    const auto clips = *rc::gen::resize(20, rc::gen::container<std::vector<ClipPtr>>(anyClip()));
    const QString text = FCPXMLWriter::eventWithTimecode(clips, *anyText());
    const XmlDocument document = parsed(text.toUtf8());
    RC_ASSERT(document != nullptr);
    RC_ASSERT(breach(document.get()) == "");
    RC_ASSERT(badTimes(text) == std::vector<std::string>());
}

TEST(EventGrammar, AnEventWithAProjectKeepsIt)
{
    const ClipPtr clip = std::make_shared<MediaClip>(FileUrl("/a.mov"));
    const QString text = FCPXMLWriter::event(std::vector{clip}, u"E"_s, ProjectOrientation::horizontal);
    ASSERT_TRUE(text.contains(u"<project "_s));
    EXPECT_EQ(breach(parsed(text.toUtf8()).get()), "");
    EXPECT_EQ(badTimes(text), std::vector<std::string>());
}

TEST(EventGrammar, ABreachIsSeen)
{
    const ClipPtr clip = std::make_shared<MediaClip>(FileUrl("/a.mov"));
    const QString text = FCPXMLWriter::event(std::vector{clip}, u"E"_s);
    EXPECT_EQ(breach(parsed(text.toUtf8()).get()), "");
    const std::pair<const char *, const char *> breaches[] = {{"ref=\"r2\"", "ref=\"r9\""},
                                                              {"id=\"r2\"", "id=\"r1\""},
                                                              {"  <library>", "  <libraries>"},
                                                              {"hasVideo=\"1\" ", ""}};
    for (const auto &[right, wrong] : breaches) {
        QByteArray bad = text.toUtf8();
        ASSERT_TRUE(bad.contains(right)) << right;
        bad.replace(right, wrong);
        bad.replace("</library>", QByteArray(wrong).contains("libraries") ? "</libraries>" : "</library>");
        EXPECT_NE(breach(parsed(bad).get()), "") << wrong;
    }
    EXPECT_EQ(badTimes(u"<a start=\"0s\" duration=\"1/0s\" frameDuration=\"1001/60000s\" tcStart=\"1.5s\"/>"_s),
              (std::vector<std::string>{"duration=\"1/0s\"", "tcStart=\"1.5s\""}));
}

RC_GTEST_PROP(FCPXMLWriterProperty, EveryDurationLiesOnTheFrameGridWithinHalfAFrameOfTheClip, ())
{
    const ClipPtr clip = *anyClip();
    const XmlDocument document = parsed(FCPXMLWriter::event(std::vector{clip}, u"E"_s).toUtf8());
    RC_ASSERT(document != nullptr);
    xmlNode *const resources = elements(xmlDocGetRootElement(document.get()), "resources").at(0);
    const QString duration = attribute(elements(resources, "asset").at(0), "duration");
    RC_ASSERT(duration.endsWith(u'/' + QString::number(clip->frameDurationScale) + u's'));
    const qint64 numerator = duration.section(u'/', 0, 0).toLongLong();
    RC_ASSERT(numerator >= clip->frameDurationValue);
    RC_ASSERT(numerator % clip->frameDurationValue == 0);
    const double frame = static_cast<double>(clip->frameDurationValue) / clip->frameDurationScale;
    const double written = static_cast<double>(numerator) / clip->frameDurationScale;
    RC_ASSERT(std::abs(written - std::max(clip->duration, frame)) <= frame * 0.5000001);
}
