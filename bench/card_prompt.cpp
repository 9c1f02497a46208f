// card_prompt [FILES]: mounts cards of so many files (20,000 if not said) and times how long it takes until one is on
// offer, and until it is counted. Each is an image in a loop device, which a device tree made for it tells to be a card
// in a reader; nothing of it is in memory when it is mounted. Needs the right to mount.
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "core/files/FileDescriptor.h"
#include "output/FootageCheck.h"
#include "output/VolumeWatcher.h"
#include "tests/output/DeviceTree.h"
#include "tests/output/Mount.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t imageSize = 512UL * 1024 * 1024;
constexpr int rounds = 5;
constexpr int filesPerFolder = 1000; // as cameras have it

struct Card
{
    const char *fileSystem;
    Mount::Kind kind;
    const char *folder; // without one named DCIM the check has to look for a clip
    const char *extension;
    bool isFootage;
};

void fill(const fs::path &folder, int files, const char *extension)
{
    for (int i = 0; i < files; ++i) {
        const fs::path part = folder / std::to_string(100 + i / filesPerFolder);
        if (i % filesPerFolder == 0) {
            fs::create_directories(part);
        }
        const std::ofstream file(part / ("C" + std::to_string(i) + extension));
    }
}

void forget(const fs::path &image)
{
    const FileDescriptor fd(::open(image.c_str(), O_RDONLY | O_CLOEXEC));
    ::fsync(fd.get());
    ::posix_fadvise(fd.get(), 0, 0, POSIX_FADV_DONTNEED);
}

double millisecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

[[noreturn]] void giveUp(const std::string &why)
{
    std::cerr << "card_prompt: " << why << '\n';
    std::exit(1);
}

// The slowest of all rounds, each as a program sees it that has just been started.
QJsonObject timesOf(Mount &card, const DeviceTree &tree)
{
    double mounted = 0.0;
    double offered = 0.0;
    double counted = 0.0;
    for (int round = 0; round < rounds; ++round) {
        VolumeWatcher watcher({.deviceTree = tree.path(), .byLabel = tree.byLabel()});
        watcher.startWatching();
        forget(card.image());
        const auto start = Clock::now();
        card.mountAgain();
        mounted = std::max(mounted, millisecondsSince(start));
        const auto isMounted = Clock::now();
        if (!card.whyNot().empty() || !waitUntil([&] { return watcher.pendingCandidate().has_value(); })) {
            giveUp("the card was not offered " + card.whyNot());
        }
        offered = std::max(offered, millisecondsSince(isMounted));
        if (!waitUntil([&] { return watcher.pendingCandidate() && watcher.pendingCandidate()->clipCount; })) {
            giveUp("the card was not counted");
        }
        counted = std::max(counted, millisecondsSince(isMounted));
        if (!card.unmount()) {
            giveUp("the card was still in use");
        }
    }
    return {{u"mount"_s, mounted}, {u"offered"_s, offered}, {u"counted"_s, counted}};
}

QJsonObject measured(const Card &plan, int files)
{
    Mount card(plan.kind, imageSize);
    if (!card.whyNot().empty()) {
        return {{u"fileSystem"_s, QString::fromLatin1(plan.fileSystem)},
                {u"skipped"_s, QString::fromStdString(card.whyNot())}};
    }
    fill(card.path() / plan.folder, files, plan.extension);
    const DeviceTree tree;
    tree.addCardReader(card.deviceNumber());
    const FootageCheck check = looksLikeFootage(FileUrl(card.path()));
    if (!card.unmount()) {
        giveUp("the card was still in use");
    }
    QJsonObject report{{u"fileSystem"_s, QString::fromLatin1(plan.fileSystem)},
                       {u"folder"_s, QString::fromLatin1(plan.folder)},
                       {u"files"_s, files},
                       {u"looksLikeFootage"_s, check.looksLikeFootage},
                       {u"entriesRead"_s, check.entries}};
    if (plan.isFootage) {
        report[u"milliseconds"_s] = timesOf(card, tree);
    }
    return report;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const int files = argc > 1 ? std::atoi(argv[1]) : 20'000;
    if (argc > 2 || files < 1) {
        std::cerr << "usage: card_prompt [FILES]\n";
        return 2;
    }
    QJsonArray cards;
    for (const Card &card :
         {Card{"exfat", Mount::Kind::exfat, "DCIM", ".MP4", true},
          Card{"ext4", Mount::Kind::ext4, "DCIM", ".MP4", true}, Card{"ext4", Mount::Kind::ext4, "CLIPS", ".MP4", true},
          Card{"ext4", Mount::Kind::ext4, "ARCHIVE", ".TXT", false}}) {
        cards.append(measured(card, files));
    }
    std::cout << QJsonDocument(QJsonObject{{u"cards"_s, cards}}).toJson().toStdString();
}
