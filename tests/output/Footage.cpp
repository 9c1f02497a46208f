#include "tests/output/Footage.h"

#include <fstream>
#include <random>
#include <stdexcept>

#include <unistd.h>

#include "output/ProofFile.h"
#include "tests/support/FfmpegMedia.h"

namespace larkspan::test {

namespace fs = std::filesystem;

namespace {

void ignoreProgress(int, int) {}

bool isFootage(const fs::directory_entry &entry)
{
    return entry.is_regular_file() && entry.path().filename() != proofFileName;
}

} // namespace

std::string footage(unsigned seed, std::size_t size)
{
    std::mt19937_64 random(seed + 1);
    std::vector<std::uint64_t> words(size / sizeof(std::uint64_t) + 1);
    std::ranges::generate(words, random);
    return {reinterpret_cast<const char *>(words.data()), size};
}

void writeContent(const fs::path &file, std::string_view content)
{
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!stream.flush()) {
        throw std::runtime_error("could not write " + file.string());
    }
}

std::map<std::string, std::string> filesBeneath(const fs::path &folder)
{
    std::map<std::string, std::string> files;
    for (const auto &entry : fs::recursive_directory_iterator(folder)) {
        if (isFootage(entry)) {
            files[entry.path().lexically_relative(folder)] = bytesOf(entry.path());
        }
    }
    return files;
}

std::vector<std::string> namesBeneath(const fs::path &folder)
{
    std::vector<std::string> names;
    for (const auto &entry : fs::recursive_directory_iterator(folder)) {
        if (isFootage(entry)) {
            names.push_back(entry.path().lexically_relative(folder));
        }
    }
    std::ranges::sort(names);
    return names;
}

fs::path memoryFolder()
{
    const fs::path shared = "/dev/shm";
    return ::access(shared.c_str(), W_OK) == 0 ? shared : fs::temp_directory_path();
}

ClipToOrganize clipIn(const fs::path &file, const QString &bin)
{
    return {QUuid::createUuid(), FileUrl(file), bin};
}

ImportError notClean(std::initializer_list<fs::path> sources)
{
    return {VerificationFailed{{sources.begin(), sources.end()}}};
}

MediaImporter::Copied copyFiles(const std::vector<FileUrl> &urls, const fs::path &destination, VerifyLevel verify,
                                const FileOperations &files)
{
    return MediaImporter::copyFiles(urls, FileUrl(destination), {verify, ignoreProgress}, files);
}

MediaImporter::Organized copyByBin(const std::vector<ClipToOrganize> &clips, const fs::path &root, VerifyLevel verify,
                                   const FileOperations &files)
{
    return MediaImporter::organizeByBin(clips, FileUrl(root), false, {verify, ignoreProgress}, files);
}

MediaImporter::Organized moveByBin(const std::vector<ClipToOrganize> &clips, const fs::path &root, VerifyLevel verify,
                                   const FileOperations &files)
{
    return MediaImporter::organizeByBin(clips, FileUrl(root), true, {verify, ignoreProgress}, files);
}

} // namespace larkspan::test
