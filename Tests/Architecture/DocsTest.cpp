// The pages for readers: what they lead to is there.

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>

#include "Tests/Architecture/CSourceTree.h"
#include "Tests/TestPaths.h"

namespace tarv {

namespace {

/// Links of all pages, as paths from the root.
std::set<std::string> linkedFiles() {
    static const std::regex kLink(R"(\]\(([^)#:]+)\))");
    std::set<std::string> linked;
    for (const CSourceFile& file : projectFiles()) {
        if (!endsWith(file.path, ".md")) {
            continue;
        }
        const std::filesystem::path folder = std::filesystem::path(file.path).parent_path();
        for (const std::string& line : file.lines) {
            for (std::sregex_iterator at(line.begin(), line.end(), kLink), end; at != end; ++at) {
                linked.insert((folder / (*at)[1].str()).lexically_normal().string());
            }
        }
    }
    return linked;
}

TEST(Docs, EveryLinkLeadsToAFile) {
    const std::set<std::string> linked = linkedFiles();
    EXPECT_GT(linked.size(), 20u);
    for (const std::string& path : linked) {
        EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(kSourceFolder) / path)) << path;
    }
}

TEST(Docs, EveryPictureIsShownByAPage) {
    const std::set<std::string> linked = linkedFiles();
    for (const auto& entry : std::filesystem::directory_iterator(std::string(kSourceFolder) + "/Docs/pictures")) {
        EXPECT_TRUE(linked.count("Docs/pictures/" + entry.path().filename().string())) << entry.path();
    }
}

TEST(Docs, TheSettingsAndButtonsThatTheManualExplainsHaveTheseTitles) {
    static const std::regex kRow(R"re(^\| "([^"]+)")re");
    static const std::regex kNext(R"re(", "([^"]+)" \|)re");
    std::string titles;
    std::set<std::string> named;
    for (const CSourceFile& file : projectFiles()) {
        const bool isPage = file.path == "Docs/manual/settings.md" || file.path == "Docs/manual/routing.md";
        for (const std::string& line : file.lines) {
            std::smatch match;
            if (startsWith(file.path, "Definitions/UserInterface/")) {
                titles += line + '\n';
            }
            if (isPage && std::regex_search(line, match, kRow)) {
                named.insert(match[1]);
            }
            if (isPage && std::regex_search(line, match, kNext)) {
                named.insert(match[1]);
            }
        }
    }
    EXPECT_GT(named.size(), 14u);
    for (const std::string& title : named) {
        EXPECT_NE(titles.find("title=\"" + title), std::string::npos) << title;
    }
}

}  // namespace

}  // namespace tarv
