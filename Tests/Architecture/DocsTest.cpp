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

/// In tables and in sentences, as a path from the top folder.
TEST(Docs, EveryFileThatAPageNamesIsThere) {
    static const std::regex kPath(
        R"(\b(Sources|Tests|Tools|Benchmarks|Definitions|Docs|Gfx|CMake)/[\w/.\-]*\.(cpp|h|xml|md|txt|svg|cmake)\b)");
    size_t named = 0;
    for (const CSourceFile& file : projectFiles()) {
        if (!endsWith(file.path, ".md")) {
            continue;
        }
        for (const std::string& line : file.lines) {
            for (std::sregex_iterator at(line.begin(), line.end(), kPath), end; at != end; ++at, ++named) {
                const std::string path = (*at)[0];
                const std::filesystem::path top = kSourceFolder;
                EXPECT_TRUE(std::filesystem::exists(top / path) || std::filesystem::exists(top / "Sources" / path))
                    << file.path << ' ' << path;
            }
        }
    }
    EXPECT_GT(named, 50u);
}

/// Two rows that say different things of one matter are what a careless merge leaves. The last cell is what they say.
TEST(Docs, ATableSaysEachThingOnce) {
    size_t rows = 0;
    for (const CSourceFile& file : projectFiles()) {
        std::set<std::string> keys;
        for (const std::string& line : file.lines) {
            if (!endsWith(file.path, ".md") || !startsWith(line, "| ") || !endsWith(line, " |")) {
                keys.clear();
                continue;
            }
            const std::string key = line.substr(0, line.rfind(" | "));
            EXPECT_TRUE(key.size() < 4 || keys.insert(key).second) << file.path << ' ' << key;
            ++rows;
        }
    }
    EXPECT_GT(rows, 500u);
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
