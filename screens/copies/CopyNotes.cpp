#include "screens/copies/CopyNotes.h"

#include <algorithm>
#include <span>

#include <QtCore/QStringList>

#include "screens/engine/Wording.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr std::size_t mostFolders = 3;
constexpr std::size_t mostFiles = 5;

QString quoted(const QString &name)
{
    return u"“%1”"_s.arg(Wording::isolated(name));
}

// "a", "a and b", "a, b and 7 more". names: at least one.
QString inOneLine(QStringList names, std::size_t more)
{
    if (more > 0) {
        names << CopyNotes::tr("%1 more").arg(more);
    }
    const QString last = names.takeLast();
    return names.isEmpty() ? last : CopyNotes::tr("%1 and %2").arg(names.join(u", "_s), last);
}

QString foldersInOneLine(const UnreadableCard &card)
{
    const auto named = std::span(card.folders).first(std::min(mostFolders, card.folders.size()));
    QStringList places;
    for (const FileUrl &folder : named) {
        const FileUrl onCard(folder.path().lexically_relative(card.place.path()));
        places << (onCard.path() == "." ? Wording::isolated(card.name) : quoted(onCard.displayPath()));
    }
    return inOneLine(std::move(places), card.folders.size() - named.size());
}

QString filesInOneLine(const UnfinishedCopy &copy)
{
    const auto named = std::span(copy.files).first(std::min(mostFiles, copy.files.size()));
    QStringList names;
    for (const ClipFiles &file : named) {
        names << quoted(file.clip.lastPathComponent());
    }
    return inOneLine(std::move(names), copy.files.size() - named.size());
}

QString noteOfExport(const UnfinishedCopy &copy, const QString &how)
{
    const bool isMove = copy.kind == CopyKind::move;
    const QString name = Wording::isolated(copy.name);
    const QString start = isMove ? CopyNotes::tr("The move of %1 into folders was %2").arg(name, how)
                                 : CopyNotes::tr("The copy of %1 into folders was %2").arg(name, how);
    if (copy.end == UnfinishedCopy::End::cutOff) {
        return CopyNotes::tr("%1, and its event wasn't written. Open it from Projects and export it again.").arg(start);
    }
    if (!copy.failure.isEmpty()) {
        return CopyNotes::tr("%1: %2").arg(start, Wording::isolated(copy.failure));
    }
    const bool isOne = copy.files.size() == 1;
    QString pattern;
    if (isMove) {
        pattern = isOne ? CopyNotes::tr("%1: %2 wasn't moved and is still where it was.")
                        : CopyNotes::tr("%1: %2 weren't moved and are still where they were.");
    } else {
        pattern = isOne ? CopyNotes::tr("%1: %2 wasn't copied. Your originals are untouched.")
                        : CopyNotes::tr("%1: %2 weren't copied. Your originals are untouched.");
    }
    return pattern.arg(start, filesInOneLine(copy));
}

template <typename Copies>
QString aLineEach(const Copies &copies)
{
    QStringList lines;
    for (const auto &copy : copies) {
        lines << CopyNotes::of(copy);
    }
    return lines.join(u'\n');
}

} // namespace

void CopyNotes::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::unreadableCardsChanged, this, &CopyNotes::changed);
    connect(&engine, &SortEngine::unfinishedCopiesChanged, this, &CopyNotes::changed);
}

QString CopyNotes::unreadable() const
{
    return m_engine ? aLineEach(m_engine->unreadableCards()) : QString();
}

QString CopyNotes::unfinished() const
{
    return m_engine ? aLineEach(m_engine->unfinishedCopies()) : QString();
}

QString CopyNotes::of(const UnreadableCard &card)
{
    const QString folders = foldersInOneLine(card);
    const bool isWholeCard = card.folders.front() == card.place;
    return tr("Clips may be missing: %1 couldn't be read. Don't erase the card.")
        .arg(isWholeCard ? folders : tr("%1 on %2").arg(folders, Wording::isolated(card.name)));
}

QString CopyNotes::of(const UnfinishedCopy &copy)
{
    using End = UnfinishedCopy::End;
    const bool wasCutOff = copy.end == End::cutOff || copy.end == End::cutOffBeforeItBegan;
    const QString name = Wording::isolated(copy.name);
    const QString how = wasCutOff ? tr("cut off") : tr("stopped");
    if (copy.end == End::notBegun || copy.end == End::cutOffBeforeItBegan) {
        return tr("The copy of %1 was %2 before its first file: nothing of it was copied. Don't erase the card.")
            .arg(name, how);
    }
    if (copy.kind != CopyKind::card) {
        return noteOfExport(copy, how);
    }
    const QString pattern = copy.files.size() == 1
                                ? tr("The copy of %1 was %2: %3 isn't in %4. Don't erase the card.")
                                : tr("The copy of %1 was %2: %3 aren't in %4. Don't erase the card.");
    return pattern.arg(name, how, filesInOneLine(copy), quoted(copy.folder.lastPathComponent()));
}

} // namespace larkspan
