#include "core/CardNote.h"

#include <algorithm>

#include <QtCore/QStringList>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr std::size_t mostNames = 3;

} // namespace

QString unreadableNote(const FileUrl &card, const QString &name, std::span<const FileUrl> folders)
{
    QStringList places;
    for (const FileUrl &folder : folders.first(std::min(mostNames, folders.size()))) {
        const FileUrl place(folder.path().lexically_relative(card.path()));
        places << (place.path() == "." ? name : u"“%1”"_s.arg(place.displayPath()));
    }
    if (folders.size() > mostNames) {
        places << u"%1 more"_s.arg(folders.size() - mostNames);
    }
    const QString last = places.takeLast();
    const QString list = places.isEmpty() ? last : u"%1 and %2"_s.arg(places.join(u", "_s), last);
    const bool isWholeCard = folders.front() == card;
    return u"Clips may be missing: %1 couldn't be read. Don't erase the card."_s.arg(
        isWholeCard ? list : u"%1 on %2"_s.arg(list, name));
}

} // namespace larkspan
