#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>

#include "Tests/Architecture/CSourceTree.h"

namespace tarv {
namespace {

// A file or a function that is longer than these says here why.
constexpr size_t kLongFile = 400;
constexpr size_t kLongFunction = 60;
const std::map<std::string, const char*> kLongFiles = {
    {"Tests/Audio/Context/CQPLEXContextTest.cpp", "the proof of all orders in which operations may complete"},
};
const std::map<std::string, const char*> kLongFunctions = {
    {"Tests/Audio/Kernels/BandChainTest.cpp: TEST_F(BandChainInContext, "
     "WhereverProcessesEndTheResultIsThatOfOneByOne) {",
     "one random programme run twice, through the context and plainly: its halves share every choice"},
};

TEST(Style, FilesAreShortOrSayWhy) {
    for (const CSourceFile* file : codeFiles())
        if (file->lines.size() > kLongFile)
            EXPECT_TRUE(kLongFiles.count(file->path)) << file->path << ": " << file->lines.size() << " lines";
    for (const auto& [path, why] : kLongFiles) {
        const auto files = codeFiles();
        const auto it =
            std::find_if(files.begin(), files.end(), [&, &name = path](auto* f) { return f->path == name; });
        ASSERT_NE(it, files.end()) << path << " is listed and not there";
        EXPECT_GT((*it)->lines.size(), kLongFile) << path << " is listed and short";
    }
}

/// Bodies of functions as the formatter lays them out: from a line that ends in `) ... {` to the brace under it.
void forEachFunction(const CSourceFile& file, const std::function<void(const std::string&, size_t)>& report) {
    static const std::regex kHead(
        R"(^(\s{0,4})(?!namespace|class|struct|enum|union|if|for|while|switch|do|else|return|\}|extern)\S.*\).*\{$)");
    std::smatch match;
    for (size_t i = 0; i < file.lines.size(); ++i) {
        if (!std::regex_match(file.lines[i], match, kHead))
            continue;
        const std::string end = match[1].str() + "}";
        for (size_t k = i + 1; k < file.lines.size(); ++k)
            if (startsWith(file.lines[k], end)) {
                report(file.path + ": " + file.lines[i], k - i - 1);
                i = k;
                break;
            }
    }
}

// What a host owns, and the pointer: a pen stands where it stands, and what is hidden may stay hidden.
TEST(Style, NothingSetsWhatBelongsToTheProcessOrMovesThePointer) {
    static const std::regex kForbidden(
        R"(\b(SetProcessDPIAware|SetProcessDpiAwareness\w*|SetThreadDpiAwarenessContext|SetPriorityClass|)"
        R"(CoInitialize\w*|OleInitialize|setlocale|_controlfp\w*|_mm_setcsr|fesetround|fesetenv|SetErrorMode|)"
        R"(timeBeginPeriod|SetCursorPos|ClipCursor|ShowCursor|xcb_warp_pointer|xcb_xfixes_hide_cursor)\s*\()");
    for (const CSourceFile* file : codeFiles())
        if (startsWith(file->path, "Sources/"))
            for (const std::string& line : file->lines)
                EXPECT_FALSE(std::regex_search(line, kForbidden)) << file->path << ": " << line;
    EXPECT_TRUE(std::regex_search(std::string("    SetCursorPos(0, 0);"), kForbidden));
}

// They follow the locale, which is the host's: "0,5" where the format says "%.1f".
TEST(Style, NoNumberBecomesATextByTheHostsLocale) {
    static const std::regex kForbidden(
        R"(\b(v?s?n?printf|strtod|strtof|stod|stof|atof|sscanf|[io]?stringstream)\s*[({])");
    for (const CSourceFile* file : codeFiles())
        if (startsWith(file->path, "Sources/"))
            for (const std::string& line : file->lines)
                EXPECT_FALSE(std::regex_search(line, kForbidden)) << file->path << ": " << line;
    EXPECT_TRUE(std::regex_search(std::string("    snprintf(text, sizeof text, format, value);"), kForbidden));
}

TEST(Style, TheTestsThatTheEditorsPageNamesAreThere) {
    static const std::regex kName(R"(`([A-Z]\w+)\.([A-Z]\w+)`)");
    static const std::regex kTest(R"(^TEST\w*\((\w+), (\w+)\))");
    std::set<std::string> tests;
    std::smatch match;
    for (const CSourceFile* file : codeFiles())
        for (const std::string& line : file->lines)
            if (std::regex_search(line, match, kTest))
                tests.insert(match[1].str() + '.' + match[2].str());
    size_t named = 0;
    for (const CSourceFile& file : projectFiles())
        if (file.path == "Docs/editor.md")
            for (const std::string& line : file.lines)
                for (std::sregex_iterator at(line.begin(), line.end(), kName), end; at != end; ++at, ++named)
                    EXPECT_TRUE(tests.count((*at)[1].str() + '.' + (*at)[2].str())) << (*at)[0];
    EXPECT_GT(named, 30u);
}

TEST(Style, FunctionsAreShortOrSayWhy) {
    for (const CSourceFile* file : codeFiles())
        forEachFunction(*file, [](const std::string& name, size_t lines) {
            EXPECT_TRUE(lines <= kLongFunction || kLongFunctions.count(name)) << name << ": " << lines << " lines";
        });
}

TEST(Style, EveryFolderOfCodeHasAMap) {
    std::set<std::string> folders, mapped;
    for (const CSourceFile& file : projectFiles()) {
        const std::string folder = file.path.substr(0, file.path.rfind('/'));
        const bool isCode = endsWith(file.path, ".h") || endsWith(file.path, ".cpp");
        const bool isSeamSide = folder == "Sources/Platform/Win32" || folder == "Sources/Platform/Posix";
        if (isCode && !isSeamSide && (startsWith(folder, "Sources/") || startsWith(folder, "Tools/")))
            folders.insert(folder);
        if (isCode && folder == "Benchmarks")
            folders.insert(folder);
        if (endsWith(file.path, "/README.md"))
            mapped.insert(folder);
    }
    for (const std::string& folder : folders)
        EXPECT_TRUE(mapped.count(folder)) << folder << " has no README.md";
}

TEST(Style, TheMapOfTheTestsNamesEachOfTheirFolders) {
    std::set<std::string> folders;
    std::string map;
    for (const CSourceFile& file : projectFiles()) {
        if (startsWith(file.path, "Tests/") && endsWith(file.path, ".cpp") &&
            file.path.find('/', 6) != std::string::npos)
            folders.insert(file.path.substr(6, file.path.find('/', 6) - 5));
        if (file.path == "Tests/README.md")
            for (const std::string& line : file.lines)
                map += line + '\n';
    }
    EXPECT_GT(folders.size(), 5u);
    for (const std::string& folder : folders)
        EXPECT_NE(map.find("| " + folder + " |"), std::string::npos) << folder;
}

TEST(Style, LinesEndInOneFeedAndHoldNoTabsOrBlanksAtTheEnd) {
    for (const CSourceFile* file : codeFiles())
        for (size_t i = 0; i < file->lines.size(); ++i) {
            const std::string& line = file->lines[i];
            EXPECT_EQ(line.find_first_of("\t\r"), std::string::npos) << file->path << ':' << i + 1;
            EXPECT_FALSE(endsWith(line, " ")) << file->path << ':' << i + 1;
        }
}

TEST(Style, TheProductTalksOfItselfOnly) {
    // No letter of a word may stand for itself, or this line would be found: [x] is x.
    const std::regex kForeign(
        R"(\b[P]arts? [0-9]+\.[0-9]|\bthe [s]pec\b|\b(per|by|in|see|from) the [s]pecification|[T]ODO|[F]IXME)"
        R"(|/[w]ork/|/[r]oot/|\.\./[s]hared|\b[a]ssistant\b|[Cc]o-[a]uthored-by)");
    // What each of the patterns above holds: a search for a text is a hundred times quicker than one for a pattern.
    const auto maybeForeign = [](const std::string& line) {
        for (const char* part : {"art", "spec", "TOD", "FIX", "/w", "/ro", "../s", "assi", "uthored"})
            if (line.find(part) != std::string::npos)
                return true;
        return false;
    };
    for (const CSourceFile& file : projectFiles()) {
        if (startsWith(file.path, "Docs/licences/"))
            continue;
        for (size_t i = 0; i < file.lines.size(); ++i)
            EXPECT_FALSE(maybeForeign(file.lines[i]) && std::regex_search(file.lines[i], kForeign))
                << file.path << ':' << i + 1 << ' ' << file.lines[i];
    }
}

// A name that is misspelt at one of several places fails only where the kernel is missing, in silence.
TEST(Style, KernelNamesAreWrittenInOneFile) {
    const std::string prefix = "com.tarvelo.qplex.";
    std::set<std::string> names;
    for (const CSourceFile* file : codeFiles()) {
        if (startsWith(file->path, "Tests/"))
            continue;
        for (const std::string& line : file->lines) {
            const size_t start = line.find(prefix);
            if (start == std::string::npos)
                continue;
            EXPECT_EQ(file->path, "Sources/Audio/Kernels/KernelNames.h") << line;
            EXPECT_TRUE(names.insert(line.substr(start)).second) << "written twice: " << line;
        }
    }
    EXPECT_GT(names.size(), 100u);
}

TEST(Style, EveryFileIsFormatted) {
    int state = 0;
    const std::string output = runCommand(
        "find Sources Tools Tests Benchmarks -name '*.h' -o -name '*.cpp' | "
        "xargs -P 2 -n 20 clang-format --dry-run --Werror",
        state);
    EXPECT_EQ(state, 0) << output.substr(0, 4000);
}

}  // namespace
}  // namespace tarv
