#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarv {

/// A text file of the project: its path from the top folder, with slashes, and its lines.
struct CSourceFile {
    std::string path;
    std::vector<std::string> lines;
};

/// All text files that belong to the project and are no build product, sorted by path. Read once for the process.
const std::vector<CSourceFile>& projectFiles();

/// Those of them that are C++: `.h` and `.cpp`.
std::vector<const CSourceFile*> codeFiles();

[[nodiscard]] bool startsWith(std::string_view text, std::string_view prefix);
[[nodiscard]] bool endsWith(std::string_view text, std::string_view suffix);

/// Runs a command line in the top folder and gives what it wrote to either stream; `state` is its exit code.
std::string runCommand(const std::string& command, int& state);

}  // namespace tarv
