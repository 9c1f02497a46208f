#include "core/copies/CardNote.h"

#include <algorithm>

#include <QtCore/QStringList>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr std::size_t mostFolders = 3;
constexpr std::size_t mostFiles = 5;

QString quoted(const QString &name)
{
    return u"“%1”"_s.arg(name);
}

// "a", "a and b", "a, b and 7 more". names: at least one.
QString inOneLine(QStringList names, std::size_t more)
{
    if (more > 0) {
        names << u"%1 more"_s.arg(more);
    }
    const QString last = names.takeLast();
    return names.isEmpty() ? last : u"%1 and %2"_s.arg(names.join(u", "_s), last);
}

QString filesInOneLine(std::span<const ClipFiles> files)
{
    QStringList names;
    for (const ClipFiles &file : files.first(std::min(mostFiles, files.size()))) {
        names << quoted(file.clip.lastPathComponent());
    }
    return inOneLine(std::move(names), files.size() - std::min(mostFiles, files.size()));
}

} // namespace

QString unreadableNote(const FileUrl &card, const QString &name, std::span<const FileUrl> folders)
{
    QStringList places;
    for (const FileUrl &folder : folders.first(std::min(mostFolders, folders.size()))) {
        const FileUrl place(folder.path().lexically_relative(card.path()));
        places << (place.path() == "." ? name : quoted(place.displayPath()));
    }
    const QString list = inOneLine(std::move(places), folders.size() - std::min(mostFolders, folders.size()));
    const bool isWholeCard = folders.front() == card;
    return u"Clips may be missing: %1 couldn't be read. Don't erase the card."_s.arg(
        isWholeCard ? list : u"%1 on %2"_s.arg(list, name));
}

QString unfinishedNote(const UnfinishedCopy &copy)
{
    using End = UnfinishedCopy::End;
    const bool isOne = copy.files.size() == 1;
    const bool wasCutOff = copy.end == End::cutOff || copy.end == End::cutOffBeforeItBegan;
    const QString how = wasCutOff ? u"cut off"_s : u"stopped"_s;
    if (copy.end == End::notBegun || copy.end == End::cutOffBeforeItBegan) {
        return u"The copy of %1 was %2 before its first file: nothing of it was copied. Don't erase the card."_s.arg(
            copy.name, how);
    }
    if (copy.kind == CopyKind::card) {
        return u"The copy of %1 was %2: %3 %4 in %5. Don't erase the card."_s.arg(
            copy.name, how, filesInOneLine(copy.files), isOne ? u"isn't"_s : u"aren't"_s,
            quoted(copy.folder.lastPathComponent()));
    }
    const bool isMove = copy.kind == CopyKind::move;
    const QString start = u"The %1 of %2 into folders was %3"_s.arg(isMove ? u"move"_s : u"copy"_s, copy.name, how);
    if (wasCutOff) {
        return u"%1, and its event wasn't written. Open it from Projects and export it again."_s.arg(start);
    }
    if (!copy.failure.isEmpty()) {
        return u"%1: %2"_s.arg(start, copy.failure);
    }
    const QString was = isOne ? u"wasn't"_s : u"weren't"_s;
    return isMove ? u"%1: %2 %3 moved and %4 still where %5."_s.arg(start, filesInOneLine(copy.files), was,
                                                                    isOne ? u"is"_s : u"are"_s,
                                                                    isOne ? u"it was"_s : u"they were"_s)
                  : u"%1: %2 %3 copied. Your originals are untouched."_s.arg(start, filesInOneLine(copy.files), was);
}

} // namespace larkspan
