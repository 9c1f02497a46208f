#pragma once

#include <stop_token>
#include <vector>

#include "core/files/FileUrl.h"

namespace larkspan {

// The video files under a folder, at any depth, in the order in which people count them: clip2 before clip10, letters
// before case. Hidden files and folders, the inside of packages and the "._" companions of other systems are left out,
// and links to folders aren't followed. What can't be read is passed over; an unreadable folder yields nothing. A
// folder named like a clip counts as one. Polls the token between folders and then returns what it has.
std::vector<FileUrl> listClips(const FileUrl &folder, const std::stop_token &stop = {});

// The same of a card, whose clips are about to be copied and may then be wiped from it: a folder that can't be read to
// its end is listed rather than passed over, and so are files beside the clips.
struct CardListing
{
    std::vector<FileUrl> clips;
    std::vector<FileUrl> unreadable; // by path; the card itself may be among them
    std::vector<FileUrl> others;     // files that are no clips, by path; no hidden ones, and none inside packages
};
CardListing listCard(const FileUrl &card, const std::stop_token &stop);

} // namespace larkspan
