#pragma once

#include <gmock/gmock.h>

#include "shell/panels/FileBrowser.h"
#include "tests/shell/HomeFolder.h"
#include "tests/support/WaitUntil.h"

namespace larkspan::test {

inline QString shownPath(const std::filesystem::path &path)
{
    return QString::fromStdString(path.string());
}

// Our own file panel on real folders, and what was chosen in it.
class FileBrowserTest : public testing::Test
{
protected:
    // Opens the panel and waits until it shows the folder.
    void openAt(const std::filesystem::path &start)
    {
        browser.openForFolder({.prompt = QStringLiteral("Sort"), .message = QStringLiteral("Choose.")}, FileUrl(start),
                              remember());
        ASSERT_TRUE(shows(start));
    }

    void openToSave(const std::filesystem::path &file)
    {
        browser.openForFile({.title = QStringLiteral("Export"),
                             .suggestion = FileUrl(file),
                             .typeName = QStringLiteral("CSV files"),
                             .suffix = QStringLiteral("csv")},
                            remember());
        ASSERT_TRUE(shows(file.parent_path()));
    }

    [[nodiscard]] bool shows(const std::filesystem::path &opened)
    {
        return waitUntil([&] { return browser.folderPath() == shownPath(opened) && browser.canAccept(); });
    }
    [[nodiscard]] bool says(const QString &problem)
    {
        return waitUntil([&] { return browser.problem() == problem; });
    }
    [[nodiscard]] bool tells(const QString &status)
    {
        return waitUntil([&] { return browser.status() == status; });
    }
    [[nodiscard]] bool closes()
    {
        return waitUntil([this] { return !browser.isOpen(); });
    }

    std::function<void(FileUrl)> remember()
    {
        return [this](const FileUrl &url) { chosen.push_back(url.path()); };
    }

    const std::vector<std::string> &folders() { return browser.entries()->contents().folders; }
    const std::vector<std::string> &files() { return browser.entries()->contents().files; }
    int rowOf(const std::string &name)
    {
        return static_cast<int>(std::ranges::find(folders(), name) - folders().begin());
    }

    const HomeFolder home;
    const TempFolder folder;
    FileBrowser browser;
    std::vector<std::filesystem::path> chosen;
};

} // namespace larkspan::test
