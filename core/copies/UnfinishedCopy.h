#pragma once

#include <optional>
#include <vector>

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include "core/clips/Sidecars.h"
#include "core/copies/CopyRecord.h"
#include "core/files/FileUrl.h"

namespace larkspan {

// A copy of footage that ended before its last file, because something else was begun or the program ended.
struct UnfinishedCopy
{
    enum class End {
        none,     // under way, or cut off without anybody having looked yet
        listing,  // the same before the card's folder is made; of a card alone
        notBegun, // stopped while the card's clips were still being listed
        stopped,
        cutOff, // the program was killed
        cutOffBeforeItBegan
    };

    CopyKind kind = CopyKind::card;
    QString name;                 // the card's or the shoot's, as people know it
    FileUrl folder;               // where the card's files went, or the folder above those of the bins
    std::vector<ClipFiles> files; // those that were left out, a sidecar by itself as one of them; before an end all;
                                  // notBegun: those that were listed by then; listing, cutOffBeforeItBegan: none
    End end = End::none;
    QString failure; // in words, if one came after the stop

    friend bool operator==(const UnfinishedCopy &, const UnfinishedCopy &) = default;
};

// The form in which a copy is kept on disk.
[[nodiscard]] QByteArray jsonOf(const UnfinishedCopy &copy);
// None for what isn't such a text.
[[nodiscard]] std::optional<UnfinishedCopy> unfinishedCopyOf(const QByteArray &json);

} // namespace larkspan
