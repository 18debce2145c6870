#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "Tests/Architecture/CSourceTree.h"

namespace tarv {
namespace {

/// For each folder below Sources with a README: the folders that its line "May include:" names, up to the period.
using CArrows = std::map<std::string, std::set<std::string>>;

constexpr const char* kMayInclude = "May include: ";

std::set<std::string> namesIn(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        if (text.empty() && !startsWith(line, kMayInclude))
            continue;
        text += (text.empty() ? line.substr(std::string_view(kMayInclude).size()) : ' ' + line);
        if (text.find('.') != std::string::npos)
            break;
    }
    std::set<std::string> names;
    std::stringstream list(text.substr(0, text.find('.')));
    for (std::string name; std::getline(list >> std::ws, name, ',');)
        if (name != "nothing")
            names.insert(name);
    return names;
}

bool saysWhatItMayInclude(const CSourceFile& file) {
    for (const std::string& line : file.lines)
        if (startsWith(line, kMayInclude))
            return true;
    return false;
}

const CArrows& arrows() {
    static const CArrows kArrows = [] {
        CArrows found;
        for (const CSourceFile& file : projectFiles())
            if (startsWith(file.path, "Sources/") && endsWith(file.path, "/README.md") && saysWhatItMayInclude(file))
                found[file.path.substr(8, file.path.size() - 18)] = namesIn(file.lines);
        return found;
    }();
    return kArrows;
}

/// The folder with a README that a path lies in; the longest wins. Empty if there is none.
std::string folderOf(std::string_view path) {
    std::string found;
    for (const auto& [folder, names] : arrows())
        if (startsWith(path, folder + '/') && folder.size() > found.size())
            found = folder;
    return found;
}

bool mayInclude(const std::string& from, const std::string& to) {
    const std::set<std::string>& names = arrows().at(from);
    return from == to || names.count(to) > 0 || names.count("everything") > 0;
}

std::vector<std::string> includesOf(const CSourceFile& file) {
    static const std::regex kInclude(R"(^\s*#\s*include\s*([<"][^>"]+)[>"].*)");
    std::vector<std::string> names;
    std::smatch match;
    for (const std::string& line : file.lines)
        if (std::regex_match(line, match, kInclude))
            names.push_back(match[1]);
    return names;
}

TEST(Architecture, AFolderIncludesOnlyWhatItsReadmeNames) {
    for (const CSourceFile* file : codeFiles()) {
        if (!startsWith(file->path, "Sources/"))
            continue;
        const std::string from = folderOf(file->path.substr(8));
        ASSERT_FALSE(from.empty()) << file->path << " lies in no folder with a README that says what it may include";
        for (const std::string& name : includesOf(*file)) {
            if (name[0] != '"')
                continue;
            const std::string to = folderOf(name.substr(1));
            EXPECT_FALSE(to.empty()) << file->path << " includes " << name << ": no path from Sources";
            EXPECT_TRUE(to.empty() || mayInclude(from, to)) << file->path << " includes " << name.substr(1);
        }
    }
}

TEST(Architecture, EveryNameInAReadmeIsAFolder) {
    for (const auto& [folder, names] : arrows())
        for (const std::string& name : names)
            EXPECT_TRUE(name == "everything" || arrows().count(name)) << folder << "/README.md names " << name;
    EXPECT_GT(arrows().size(), 15u);
}

/// Whether the arrows lead from a folder back to it.
bool reaches(const CArrows& graph, const std::string& from, const std::string& to, std::set<std::string>& seen) {
    const auto names = graph.find(from);
    for (const std::string& next : names == graph.end() ? std::set<std::string>() : names->second)
        if (next == to || (seen.insert(next).second && reaches(graph, next, to, seen)))
            return true;
    return false;
}

TEST(Architecture, ArrowsGoOneWay) {
    for (const auto& [folder, names] : arrows()) {
        std::set<std::string> seen;
        EXPECT_FALSE(reaches(arrows(), folder, folder, seen)) << folder << " leads back to itself";
    }
    std::set<std::string> seen;
    EXPECT_TRUE(reaches({{"a", {"b"}}, {"b", {"c"}}, {"c", {"a"}}}, "a", "a", seen));
}

// An editor reaches the engine by messages alone.
TEST(Architecture, TheEditorsSideKnowsNothingOfTheEngines) {
    for (const auto& [folder, names] : arrows())
        if (folder == "Audio/Client" || startsWith(folder, "UI"))
            for (const char* engine :
                 {"Audio/Engine", "Audio/Presets", "Audio/Graph", "Audio/Instance", "Audio/Modules"}) {
                std::set<std::string> seen;
                EXPECT_FALSE(reaches(arrows(), folder, engine, seen)) << folder << " leads to " << engine;
            }
}

TEST(Architecture, OnlyTheSeamIncludesHeadersOfASystem) {
    static const std::set<std::string> kSystem = {
        "<windows.h>",  "<shlobj.h>", "<pthread.h>", "<unistd.h>",   "<dlfcn.h>", "<sys/stat.h>", "<sys/types.h>",
        "<sys/time.h>", "<fcntl.h>",  "<dirent.h>",  "<sys/mman.h>", "<spawn.h>", "<poll.h>",     "<sys/shm.h>"};
    for (const CSourceFile* file : codeFiles()) {
        if (!startsWith(file->path, "Sources/"))
            continue;
        for (const std::string& name : includesOf(*file)) {
            std::string lower = name + '>';
            std::transform(lower.begin(), lower.end(), lower.begin(), ::tolower);
            if (startsWith(lower, "<xcb/") || startsWith(lower, "<xkbcommon/"))
                EXPECT_TRUE(startsWith(file->path, "Sources/Platform/X11/")) << file->path << " includes " << lower;
            if (!kSystem.count(lower))
                continue;
            const bool isWindows = lower == "<windows.h>" || lower == "<shlobj.h>";
            const bool isAtHome = isWindows ? startsWith(file->path, "Sources/Platform/Win32/")
                                            : startsWith(file->path, "Sources/Platform/Posix/") ||
                                                  startsWith(file->path, "Sources/Platform/X11/");
            EXPECT_TRUE(isAtHome) << file->path << " includes " << lower;
        }
    }
}

TEST(Architecture, TheProductKnowsNoToolAndNoTest) {
    for (const CSourceFile* file : codeFiles())
        if (startsWith(file->path, "Sources/"))
            for (const std::string& name : includesOf(*file))
                EXPECT_FALSE(startsWith(name, "\"Tools/") || startsWith(name, "\"Tests/")) << file->path << name;
}

// The host programs stand for hosts of other makers.
TEST(Architecture, RendererKnowsOfThePluginOnlyTheInterface) {
    for (const CSourceFile* file : codeFiles())
        if (startsWith(file->path, "Tools/Renderer/"))
            for (const std::string& name : includesOf(*file))
                EXPECT_TRUE(name[0] == '<' || startsWith(name, "\"Audio/VST/Vst2") || folderOf(name.substr(1)).empty())
                    << file->path << " includes " << name;
}

TEST(Architecture, EveryHeaderIsGuardedByPragmaOnce) {
    for (const CSourceFile* file : codeFiles())
        if (endsWith(file->path, ".h"))
            EXPECT_TRUE(std::count(file->lines.begin(), file->lines.end(), "#pragma once")) << file->path;
}

}  // namespace
}  // namespace tarv
