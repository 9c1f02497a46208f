#include "output/CopyReport.h"

#include <gmock/gmock.h>
#include <libxml/HTMLparser.h>
#include <libxml/xpath.h>
#include <QtCore/QDateTime>

#include "tests/output/Footage.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

const auto safe = u"All 2 files were read back and match. Safe to erase."_s;

CopiedFile readBack(const char *name)
{
    return {.source = FileUrl(std::filesystem::path("/media/CARD/DCIM") / name),
            .destination = FileUrl(std::filesystem::path("/Shoots/CARD") / name),
            .bytes = 1'500'000,
            .state = CopyState::readBack,
            .digest = QString(64, u'a')};
}

CopiedFile inState(const char *name, CopyState state, const QString &reason = {})
{
    CopiedFile file = readBack(name);
    file.state = state;
    file.reason = reason;
    file.digest.clear();
    return file;
}

// A card of two clips, both proved.
CopyRecord provedCard()
{
    return {.kind = CopyKind::card,
            .source = FileUrl("/media/CARD"),
            .volumeName = u"EOS_DIGITAL"_s,
            .destination = FileUrl("/Shoots/CARD"),
            .level = VerifyLevel::checksum,
            .started = Date(std::chrono::seconds(1'000'000'000)),
            .ended = Date(std::chrono::seconds(1'000'000'002)),
            .files = {readBack("a.mov"), readBack("b.mov")},
            .proof = FileUrl("/Shoots/CARD/SHA256SUMS")};
}

// The page as a browser reads it.
class Page
{
public:
    explicit Page(const QString &html)
        : m_html(html)
        , m_document(htmlReadMemory(html.toUtf8().constData(), static_cast<int>(html.toUtf8().size()), nullptr, "utf-8",
                                    HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_NONET))
    {}
    ~Page() { xmlFreeDoc(m_document); }
    Page(const Page &) = delete;
    Page &operator=(const Page &) = delete;

    // Texts of the elements that an XPath expression finds.
    std::vector<QString> texts(const char *path) const
    {
        auto *const context = xmlXPathNewContext(m_document);
        auto *const found = xmlXPathEvalExpression(reinterpret_cast<const xmlChar *>(path), context);
        std::vector<QString> texts;
        for (int i = 0; found->nodesetval != nullptr && i < found->nodesetval->nodeNr; ++i) {
            auto *const content = xmlNodeGetContent(found->nodesetval->nodeTab[i]);
            texts.push_back(QString::fromUtf8(reinterpret_cast<const char *>(content)).trimmed());
            xmlFree(content);
        }
        xmlXPathFreeObject(found);
        xmlXPathFreeContext(context);
        return texts;
    }

    std::vector<QString> verdicts() const { return texts("//p[contains(@class, 'verdict')]"); }
    std::vector<QString> missing() const { return texts("//ul[@class='missing']/li"); }
    // The value beside a label.
    QString fact(const QString &label) const
    {
        const auto found = texts(u"//dt[text()='%1']/following-sibling::dd[1]"_s.arg(label).toUtf8().constData());
        return found.empty() ? QString() : found.front();
    }
    std::string html() const { return m_html.toStdString(); }

private:
    QString m_html;
    xmlDocPtr m_document;
};

// Copies real files as a card's import does, and reports.
class ReportedCopy
{
public:
    explicit ReportedCopy(VerifyLevel level = VerifyLevel::checksum) : m_level(level) {}

    QString report(
        const std::vector<FileUrl> &urls, const ProgressCallback &progress = [](int, int) {},
        const std::stop_token &stop = {})
    {
        CopyRecord record;
        [[maybe_unused]] const auto answer = MediaImporter::copyFiles(
            urls, FileUrl(folder / "shoot"),
            {m_level, progress, stop, {.ended = [&record](CopyRecord ended) { record = std::move(ended); }}});
        record.source = FileUrl(folder / "card");
        return copyReport({record}, u"shoot"_s);
    }

    std::vector<FileUrl> twoClips() const
    {
        return {FileUrl(folder.write("card/a.mov", "a")), FileUrl(folder.write("card/b.mov", "b"))};
    }

    const TempFolder folder;

private:
    VerifyLevel m_level;
};

} // namespace

TEST(CopyReport, CallsACardSafeToEraseOnceEveryFileWasReadBack)
{
    const Page page(copyReport({provedCard()}, u"CARD"_s));
    EXPECT_THAT(page.verdicts(), ElementsAre(safe));
    EXPECT_THAT(page.missing(), IsEmpty());
}

TEST(CopyReport, SaysSoOfARealCopyAndOnlyOfOneThatWasReadBack)
{
    ReportedCopy proved;
    EXPECT_THAT(Page(proved.report(proved.twoClips())).verdicts(), ElementsAre(safe));
    ReportedCopy measured(VerifyLevel::sizeOnly);
    const Page page(measured.report(measured.twoClips()));
    EXPECT_THAT(page.verdicts(),
                ElementsAre(u"Not proved: 0 of 2 files read back and match. Don't erase the folder."_s));
    EXPECT_THAT(page.missing(), ElementsAre(u"Verification was off: sizes alone were compared."_s,
                                            u"a.mov – Copied; sizes alone were compared"_s,
                                            u"b.mov – Copied; sizes alone were compared"_s));
}

TEST(CopyReport, OfAStoppedRunSaysWhatItDidNotComeTo)
{
    ReportedCopy copy;
    std::stop_source stop;
    const Page page(copy.report(
        copy.twoClips(), [&stop](int, int) { stop.request_stop(); }, stop.get_token()));
    EXPECT_THAT(page.verdicts(),
                ElementsAre(u"Not proved: 1 of 2 files read back and match. Don't erase the folder."_s));
    EXPECT_THAT(page.missing(), ElementsAre(u"The run was stopped before it came to 1 file."_s,
                                            u"b.mov – Not copied: the run ended before its turn"_s));
}

TEST(CopyReport, OfAFailedRunSaysTheReasonAndEachFileThatIsMissing)
{
    ReportedCopy copy;
    auto urls = copy.twoClips();
    urls.insert(urls.begin() + 1, FileUrl(copy.folder / "card/gone.mov"));
    const Page page(copy.report(urls));
    EXPECT_THAT(page.html(), Not(HasSubstr("Safe to erase")));
    EXPECT_THAT(page.missing(), ElementsAre(u"gone.mov is no longer where it was — the card may have been ejected."_s,
                                            u"gone.mov – Not copied: It is no longer where it was."_s,
                                            u"b.mov – Not copied: the run ended before its turn"_s));
}

TEST(CopyReport, NeverCallsItSafeWhileAnythingIsInDoubt)
{
    std::vector<CopyRecord> doubtful(7, provedCard());
    doubtful[0].files.clear();
    doubtful[1].files.push_back(inState("c.mov", CopyState::sizeEqual));
    doubtful[2].files.push_back(inState("c.mov", CopyState::failed, u"Input/output error"_s));
    doubtful[3].files.push_back(inState("c.mov", CopyState::notReached));
    doubtful[4].files.push_back(inState("c.mov", CopyState::alreadyThere));
    doubtful[5].unreadable.emplace_back("/media/CARD/DCIM/101MEDIA");
    doubtful[6].failure = u"CARD couldn't be copied — Input/output error."_s;
    for (const CopyRecord &record : doubtful) {
        const Page page(copyReport({record}, u"CARD"_s));
        EXPECT_THAT(page.html(), Not(HasSubstr("Safe to erase")));
        EXPECT_TRUE(page.verdicts().front().endsWith(u"Don't erase the card."_s));
    }
    EXPECT_THAT(Page(copyReport({doubtful[5]}, u"CARD"_s)).missing(),
                ElementsAre(u"This folder couldn't be read and may hold clips: DCIM/101MEDIA"_s));
    EXPECT_THAT(Page(copyReport({doubtful[2]}, u"CARD"_s)).missing(),
                ElementsAre(u"DCIM/c.mov – Not copied: Input/output error"_s));
}

TEST(CopyReport, GivesTheRunInFigures)
{
    const Page page(copyReport({provedCard()}, u"CARD"_s));
    EXPECT_EQ(page.fact(u"Card"_s), u"/media/CARD"_s);
    EXPECT_EQ(page.fact(u"Volume"_s), u"EOS_DIGITAL"_s);
    EXPECT_EQ(page.fact(u"Copied to"_s), u"/Shoots/CARD"_s);
    const auto local = [](qint64 seconds) {
        return QDateTime::fromSecsSinceEpoch(seconds).toString(u"yyyy-MM-dd HH:mm:ss"_s);
    };
    EXPECT_EQ(page.fact(u"Began"_s), local(1'000'000'000));
    EXPECT_EQ(page.fact(u"Ended"_s), local(1'000'000'002));
    EXPECT_EQ(page.fact(u"Files"_s), u"2"_s);
    EXPECT_EQ(page.fact(u"Copied"_s), u"3 MB (3000000 bytes)"_s);
    EXPECT_EQ(page.fact(u"Speed"_s), u"1.5 MB/s, verification included"_s);
    EXPECT_EQ(page.fact(u"Verification"_s), u"Byte for byte: each copy was read back, SHA-256"_s);
    EXPECT_EQ(page.fact(u"Proof"_s), u"/Shoots/CARD/SHA256SUMS"_s);
    EXPECT_THAT(page.texts("//tbody/tr[1]/td"),
                ElementsAre(u"DCIM/a.mov"_s, u"1.5 MB"_s, u"Read back and matches"_s, u"a.mov"_s + QString(64, u'a')));
}

TEST(CopyReport, NamesTheFilesThatStayOnTheCardAndAreNoClips)
{
    const auto noteOf = [](const CopyRecord &record) {
        return Page(copyReport({record}, u"CARD"_s)).texts("//section/p[not(@class)]");
    };
    CopyRecord record = provedCard();
    EXPECT_THAT(noteOf(record), IsEmpty());
    record.notCopied = {FileUrl("/media/CARD/DCIM/1.JPG")};
    EXPECT_THAT(noteOf(record), ElementsAre(u"Not clips, so left on the card: 1 file (DCIM/1.JPG)."_s));
    for (int i = 2; i <= 14; ++i) {
        record.notCopied.emplace_back("/media/CARD/" + std::to_string(i) + ".JPG");
    }
    const QString note = noteOf(record).front();
    EXPECT_TRUE(note.startsWith(u"Not clips, so left on the card: 14 files (DCIM/1.JPG, 2.JPG, "_s));
    EXPECT_TRUE(note.endsWith(u", 12.JPG and 2 more)."_s));
}

TEST(CopyReport, HoldsNoCardSafeToEraseThatHasPhotosOnIt)
{
    CopyRecord record = provedCard();
    record.notCopied = {FileUrl("/media/CARD/INDEX.BDM"), FileUrl("/media/CARD/index"), FileUrl("/media/CARD/A.THM")};
    EXPECT_THAT(Page(copyReport({record}, u"CARD"_s)).verdicts(), ElementsAre(safe)) << "the camera's own files";
    record.notCopied.emplace_back("/media/CARD/DCIM/1.JPG");
    const Page page(copyReport({record}, u"CARD"_s));
    EXPECT_THAT(page.verdicts(),
                ElementsAre(u"All 2 files were read back and match, but not every file was copied. Look "
                            u"at the others before you erase the card."_s));
    EXPECT_THAT(page.missing(), ElementsAre(u"Not a clip, so not copied: DCIM/1.JPG"_s));
}

TEST(CopyReport, SaysWhyThereIsNoProof)
{
    CopyRecord record = provedCard();
    record.proof.reset();
    record.proofProblem = u"Permission denied"_s;
    const Page page(copyReport({record}, u"CARD"_s));
    EXPECT_EQ(page.fact(u"Proof"_s), u"Couldn't be written: Permission denied"_s);
    EXPECT_THAT(page.verdicts(), ElementsAre(safe)); // the copies are as good without it
}

TEST(CopyReport, SaysWhichOriginalsAMoveDeleted)
{
    CopyRecord record = provedCard();
    record.kind = CopyKind::move;
    record.files[0].isSourceDeleted = true;
    EXPECT_THAT(Page(copyReport({record}, u"CARD"_s)).texts("//tbody/tr/td[3]"),
                ElementsAre(u"Read back and matches; original deleted"_s, u"Read back and matches"_s));
}

TEST(CopyReport, ANameIsNeverMarkupAndNeverAFieldOfTheTemplate)
{
    CopyRecord record = provedCard();
    const std::string name = "<script>alert(1)<!--file-->{{verdict}} & \"b\" {{digest}}\n\u202Emov.c";
    record.files[0] = readBack(name.c_str());
    record.volumeName = u"<b>{{name}}</b>"_s;
    const Page page(copyReport({record}, u"<i>A&B</i>{{written}}"_s));
    EXPECT_THAT(page.texts("//script | //b | //i"), IsEmpty());
    EXPECT_THAT(page.texts("//h1"), ElementsAre(u"<i>A&B</i>{{written}}"_s));
    EXPECT_EQ(page.fact(u"Volume"_s), u"<b>{{name}}</b>"_s);
    EXPECT_EQ(page.texts("//tbody/tr[1]/td[1]").front(),
              u"DCIM/<script>alert(1)<!--file-->{{verdict}} & \"b\" {{digest}}\\u{000a}\\u{202e}mov.c"_s);
    EXPECT_THAT(page.texts("//tbody/tr"), testing::SizeIs(2));
}

TEST(CopyReport, ShowsTheLastRunFirstAndLeavesNoFieldOpen)
{
    CopyRecord later = provedCard();
    later.kind = CopyKind::copy;
    later.volumeName.clear();
    const Page page(copyReport({provedCard(), later}, u"CARD"_s));
    EXPECT_THAT(page.texts("//h2"), ElementsAre(u"Copy into folders"_s, u"Import of a card"_s));
    EXPECT_THAT(page.html(), Not(HasSubstr("{{")));
    EXPECT_THAT(page.html(), Not(HasSubstr("<!--")));
    EXPECT_THAT(page.html(), Not(HasSubstr("<script")));
    EXPECT_THAT(page.html(), HasSubstr("@media print"));
}
