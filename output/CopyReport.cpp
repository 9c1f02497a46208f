#include "output/CopyReport.h"

#include <algorithm>
#include <ranges>
#include <utility>

#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QLocale>
#include <QtCore/QRegularExpression>

#include "core/base/ByteCount.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

using Values = std::vector<std::pair<QString, QString>>;

// The template: the text between <!--name--> and <!--/name--> is a part that is repeated.
QString pageTemplate()
{
    QFile file(u":/larkspan/copy_report.html"_s);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

struct Part
{
    qsizetype start = 0;  // of the opening mark
    qsizetype length = 0; // with both marks
    QString text;         // between them
};

Part partOf(const QString &text, const QString &name)
{
    const QString opening = u"<!--%1-->\n"_s.arg(name);
    const QString closing = u"<!--/%1-->\n"_s.arg(name);
    const qsizetype start = text.indexOf(opening);
    const qsizetype inside = start + opening.size();
    const qsizetype end = text.indexOf(closing, inside);
    return {start, end + closing.size() - start, text.mid(inside, end - inside)};
}

QString withPart(QString text, const QString &name, const QString &content)
{
    const Part part = partOf(text, name);
    return text.replace(part.start, part.length, content);
}

// A name may hold characters that would end a line or turn the text around; those show as what they are.
QString shownText(const QString &text)
{
    QString shown;
    for (const QChar c : text) {
        const bool isHarmless = c.isPrint() || c.isSurrogate() || c == u' ';
        shown += isHarmless ? QString(c) : u"\\u{%1}"_s.arg(static_cast<uint>(c.unicode()), 4, 16, QChar(u'0'));
    }
    return shown.toHtmlEscaped();
}

// Fills values in for their {{names}}, all in one pass, so that a value which looks like a name stays one.
QString filled(const QString &text, const Values &values)
{
    static const QRegularExpression marker(u"\\{\\{(\\w+)\\}\\}"_s);
    QString result;
    qsizetype copied = 0;
    for (auto matches = marker.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const auto value = std::ranges::find(values, match.captured(1), &Values::value_type::first);
        result += text.mid(copied, match.capturedStart() - copied);
        result += value != values.end() ? shownText(value->second) : match.captured();
        copied = match.capturedEnd();
    }
    return result + text.mid(copied);
}

QString momentText(Date date)
{
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(date.time_since_epoch()).count();
    return QDateTime::fromMSecsSinceEpoch(milliseconds).toString(u"yyyy-MM-dd HH:mm:ss"_s);
}

QString filesText(qsizetype count)
{
    return count == 1 ? u"1 file"_s : u"%1 files"_s.arg(static_cast<qlonglong>(count));
}

QString headingOf(const CopyRecord &copy)
{
    switch (copy.kind) {
    case CopyKind::card:
        return u"Import of a card"_s;
    case CopyKind::copy:
        return u"Copy into folders"_s;
    case CopyKind::move:
        return u"Move into folders"_s;
    }
    Q_UNREACHABLE();
}

// Returns a file's path, relative to the folder that the run was about if the file is in there.
QString placeBeneath(const FileUrl &folder, const FileUrl &file)
{
    const FileUrl place(file.path().lexically_relative(folder.path()));
    const bool liesBeneath = !place.path().empty() && *place.path().begin() != "..";
    return liesBeneath ? place.displayPath() : file.displayPath();
}

QString stateText(const CopiedFile &file)
{
    switch (file.state) {
    case CopyState::readBack:
        return file.isSourceDeleted ? u"Read back and matches; original deleted"_s : u"Read back and matches"_s;
    case CopyState::sizeEqual:
        return u"Copied; sizes alone were compared"_s;
    case CopyState::failed:
        return u"Not copied: %1"_s.arg(file.reason);
    case CopyState::notReached:
        return u"Not copied: the run ended before its turn"_s;
    case CopyState::alreadyThere:
        return u"Was in its folder already; not compared in this run"_s;
    }
    Q_UNREACHABLE();
}

QString verdictOf(const CopyRecord &copy)
{
    const qsizetype proved = countOf(copy, CopyState::readBack);
    if (isEachFileProved(copy) && !isSafeToErase(copy)) {
        return u"All %1 were read back and match, but not every file was copied. Look at the others before you erase the card."_s
            .arg(filesText(proved));
    }
    return isSafeToErase(copy) ? u"All %1 files were read back and match. Safe to erase."_s.arg(proved)
                               : u"Not proved: %1 of %2 read back and match. Don't erase the %3."_s.arg(
                                     QString::number(proved), filesText(static_cast<qsizetype>(copy.files.size())),
                                     copy.kind == CopyKind::card ? u"card"_s : u"folder"_s);
}

// The reasons that the source is not safe to erase, one a line.
QStringList missingFrom(const CopyRecord &copy)
{
    QStringList lines;
    if (!copy.failure.isEmpty()) {
        lines += copy.failure;
    }
    if (copy.level == VerifyLevel::sizeOnly) {
        lines += u"Verification was off: sizes alone were compared."_s;
    }
    const int notReached = countOf(copy, CopyState::notReached);
    if (copy.failure.isEmpty() && notReached > 0) {
        lines += u"The run was stopped before it came to %1."_s.arg(filesText(notReached));
    }
    for (const FileUrl &folder : copy.unreadable) {
        lines += u"This folder couldn't be read and may hold clips: %1"_s.arg(placeBeneath(copy.source, folder));
    }
    for (const FileUrl &file : copy.notCopied) {
        if (wouldBeMissed(file)) {
            lines += u"Not a clip, so not copied: %1"_s.arg(placeBeneath(copy.source, file));
        }
    }
    for (const CopiedFile &file : copy.files) {
        if (file.state != CopyState::readBack) {
            lines += placeBeneath(copy.source, file.source) + u" – "_s + stateText(file);
        }
    }
    return lines;
}

// Files that nobody asked to copy. They are lost with the source all the same.
QString leftBehindText(const CopyRecord &copy)
{
    constexpr std::size_t mostNames = 12;
    QStringList names;
    for (const FileUrl &file : std::span(copy.notCopied).first(std::min(copy.notCopied.size(), mostNames))) {
        names += placeBeneath(copy.source, file);
    }
    const std::size_t more = copy.notCopied.size() - static_cast<std::size_t>(names.size());
    return u"Not clips, so left on the card: %1 (%2%3)."_s.arg(filesText(static_cast<qsizetype>(copy.notCopied.size())),
                                                               names.join(u", "_s),
                                                               more > 0 ? u" and %1 more"_s.arg(more) : QString());
}

double secondsOf(const CopyRecord &copy)
{
    return std::chrono::duration<double>(copy.ended - copy.started).count();
}

QString proofText(const CopyRecord &copy)
{
    if (!copy.proofProblem.isEmpty()) {
        return u"Couldn't be written: %1"_s.arg(copy.proofProblem);
    }
    return copy.proof ? copy.proof->displayPath() : u"None, since no file was read back"_s;
}

Values factsOf(const CopyRecord &copy)
{
    const double seconds = secondsOf(copy);
    const std::int64_t bytes = copiedBytes(copy);
    const auto speed = static_cast<std::int64_t>(seconds > 0.0 ? static_cast<double>(bytes) / seconds : 0.0);
    Values facts{{copy.kind == CopyKind::card ? u"Card"_s : u"Folder"_s, copy.source.displayPath()}};
    if (!copy.volumeName.isEmpty()) {
        facts.emplace_back(u"Volume"_s, copy.volumeName);
    }
    facts.emplace_back(u"Copied to"_s, copy.destination.displayPath());
    facts.emplace_back(u"Began"_s, momentText(copy.started));
    facts.emplace_back(u"Ended"_s, momentText(copy.ended));
    facts.emplace_back(u"Files"_s, QString::number(copy.files.size()));
    facts.emplace_back(u"Copied"_s, u"%1 (%2 bytes)"_s.arg(byteCountText(bytes), QString::number(bytes)));
    facts.emplace_back(u"Speed"_s, u"%1/s, verification included"_s.arg(byteCountText(speed)));
    facts.emplace_back(u"Verification"_s, copy.level == VerifyLevel::checksum
                                              ? u"Byte for byte: each copy was read back, SHA-256"_s
                                              : u"Sizes alone"_s);
    facts.emplace_back(u"Proof"_s, proofText(copy));
    return facts;
}

QString filledEach(const QString &part, const Values &values, const QString &first, const QString &second)
{
    QString text;
    for (const auto &[one, other] : values) {
        text += filled(part, {{first, one}, {second, other}});
    }
    return text;
}

QString fileRows(const QString &part, const CopyRecord &copy)
{
    QString rows;
    for (const CopiedFile &file : copy.files) {
        rows += filled(
            part, {{u"source"_s, placeBeneath(copy.source, file.source)},
                   {u"size"_s, byteCountText(file.bytes)},
                   {u"stateClass"_s, file.state == CopyState::readBack ? u"good"_s : u"bad"_s},
                   {u"state"_s, stateText(file)},
                   {u"destination"_s, file.destination ? placeBeneath(copy.destination, *file.destination) : QString()},
                   {u"digest"_s, file.digest}});
    }
    return rows;
}

QString missingList(const QString &part, const CopyRecord &copy)
{
    QString lines;
    for (const QString &line : missingFrom(copy)) {
        lines += filled(partOf(part, u"line"_s).text, {{u"text"_s, line}});
    }
    return withPart(part, u"line"_s, lines);
}

QString sectionOf(const QString &part, const CopyRecord &copy)
{
    const bool isSafe = isSafeToErase(copy);
    const QString missing = isSafe ? QString() : missingList(partOf(part, u"missing"_s).text, copy);
    const QString facts = filledEach(partOf(part, u"fact"_s).text, factsOf(copy), u"label"_s, u"value"_s);
    const QString rows = fileRows(partOf(part, u"file"_s).text, copy);
    // The frame is filled before its parts are put in, whose names may look like markers.
    const QString left = copy.notCopied.empty()
                             ? QString()
                             : filled(partOf(part, u"left"_s).text, {{u"leftText"_s, leftBehindText(copy)}});
    QString frame = withPart(part, u"missing"_s, u"<!--m-->"_s);
    frame = withPart(frame, u"left"_s, u"<!--l-->"_s);
    frame = withPart(frame, u"fact"_s, u"<!--f-->"_s);
    frame = withPart(frame, u"file"_s, u"<!--r-->"_s);
    frame = filled(frame, {{u"heading"_s, headingOf(copy)},
                           {u"verdictClass"_s, isSafe ? u"safe"_s : u"unsafe"_s},
                           {u"verdict"_s, verdictOf(copy)}});
    frame.replace(u"<!--m-->"_s, missing).replace(u"<!--l-->"_s, left);
    return frame.replace(u"<!--f-->"_s, facts).replace(u"<!--r-->"_s, rows);
}

} // namespace

QString copyReport(const std::vector<CopyRecord> &copies, const QString &name)
{
    const QString page = pageTemplate();
    QString sections;
    for (const CopyRecord &copy : std::views::reverse(copies)) {
        sections += sectionOf(partOf(page, u"copy"_s).text, copy);
    }
    const QString frame =
        filled(withPart(page, u"copy"_s, u"<!--c-->"_s),
               {{u"name"_s, name}, {u"written"_s, QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH:mm:ss"_s)}});
    return QString(frame).replace(u"<!--c-->"_s, sections);
}

} // namespace larkspan
