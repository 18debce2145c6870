#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>

#include "Tests/Architecture/CSourceTree.h"

namespace tarv {
namespace {

/// A layer: the folders under Sources whose files it owns, and the layers it may include. The longest folder wins.
struct CLayer {
    const char* folder;
    std::set<std::string> mayInclude;
};

const CLayer kLayers[] = {
    {"Platform", {}},
    {"Core", {"Platform"}},
    {"Audio", {"Platform", "Core", "Audio/Converters", "Audio/Filters", "Audio/Processes"}},
    {"Audio/Converters", {"Platform", "Core", "Audio"}},
    {"Audio/Filters", {"Platform", "Core", "Audio"}},
    {"Audio/Processes", {"Platform", "Core", "Audio", "Audio/Filters"}},
    {"Audio/VST", {"Platform", "Core", "Audio", "Audio/Converters", "Audio/Filters", "Audio/Processes", "UI"}},
    {"UI", {"Platform", "Core", "Audio", "Audio/Converters", "UI/Resources"}},
    {"UI/Resources", {"Platform", "Core"}},
    {"Product",
     {"Platform", "Core", "Audio", "Audio/Converters", "Audio/Filters", "Audio/Processes", "Audio/VST", "UI",
      "UI/Resources"}},
};

const CLayer* layerOf(std::string_view path) {
    const CLayer* found = nullptr;
    for (const CLayer& layer : kLayers)
        if (startsWith(path, std::string(layer.folder) + '/'))
            if (!found || std::string_view(layer.folder).size() > std::string_view(found->folder).size())
                found = &layer;
    return found;
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

TEST(Architecture, IncludesGoDownOrSidewaysNeverUp) {
    for (const CSourceFile* file : codeFiles()) {
        if (!startsWith(file->path, "Sources/"))
            continue;
        const CLayer* from = layerOf(file->path.substr(8));
        ASSERT_NE(from, nullptr) << file->path << " lies in no layer";
        for (const std::string& name : includesOf(*file)) {
            const CLayer* to = name[0] == '"' ? layerOf(name.substr(1)) : from;
            EXPECT_NE(to, nullptr) << file->path << " includes " << name << ": no path from Sources";
            if (to && to != from)
                EXPECT_TRUE(from->mayInclude.count(to->folder)) << file->path << " includes " << name.substr(1);
        }
    }
}

// The converters and the filter generators are pure descriptions: what runs a block is above them.
TEST(Architecture, ConvertersAndFiltersKnowNoGraph) {
    for (const CSourceFile* file : codeFiles())
        if (startsWith(file->path, "Sources/Audio/Converters/") || startsWith(file->path, "Sources/Audio/Filters/"))
            for (const std::string& name : includesOf(*file))
                EXPECT_FALSE(startsWith(name, "\"Audio/CAudioProcess") || startsWith(name, "\"Audio/CAudioWrapper"))
                    << file->path << " includes " << name;
}

TEST(Architecture, OnlyTheSeamIncludesHeadersOfASystem) {
    static const std::set<std::string> kSystem = {"<windows.h>", "<shlobj.h>",   "<pthread.h>",   "<unistd.h>",
                                                  "<dlfcn.h>",   "<sys/stat.h>", "<sys/types.h>", "<sys/time.h>",
                                                  "<fcntl.h>",   "<dirent.h>",   "<sys/mman.h>"};
    for (const CSourceFile* file : codeFiles()) {
        if (!startsWith(file->path, "Sources/"))
            continue;
        for (const std::string& name : includesOf(*file)) {
            std::string lower = name + '>';
            std::transform(lower.begin(), lower.end(), lower.begin(), ::tolower);
            if (!kSystem.count(lower))
                continue;
            const char* home =
                lower == "<windows.h>" || lower == "<shlobj.h>" ? "Sources/Platform/Win32/" : "Sources/Platform/Posix/";
            EXPECT_TRUE(startsWith(file->path, home)) << file->path << " includes " << lower;
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
                EXPECT_TRUE(name[0] == '<' || startsWith(name, "\"Audio/VST/Vst2") || !layerOf(name.substr(1)))
                    << file->path << " includes " << name;
}

TEST(Architecture, EveryHeaderIsGuardedByPragmaOnce) {
    for (const CSourceFile* file : codeFiles())
        if (endsWith(file->path, ".h"))
            EXPECT_TRUE(std::count(file->lines.begin(), file->lines.end(), "#pragma once")) << file->path;
}

}  // namespace
}  // namespace tarv
