#include "Tests/Architecture/CSourceTree.h"

#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "Tests/TestPaths.h"

namespace fs = std::filesystem;

namespace tarv {

namespace {

const fs::path kTop = kSourceFolder;

std::vector<CSourceFile> readFiles() {
    std::vector<CSourceFile> files;
    for (auto it = fs::recursive_directory_iterator(kTop); it != fs::recursive_directory_iterator(); ++it) {
        const std::string path = fs::relative(it->path(), kTop).generic_string();
        if (path == "build" || path == ".git")
            it.disable_recursion_pending();
        // Regression inputs of the fuzzers are bytes, not text.
        if (!it->is_regular_file() || path == ".git" || startsWith(path, "Tests/Fuzz/Cases/"))
            continue;
        CSourceFile file{path, {}};
        std::ifstream in(it->path(), std::ios::binary);
        for (std::string line; std::getline(in, line);)
            file.lines.push_back(line);
        files.push_back(std::move(file));
    }
    std::sort(files.begin(), files.end(), [](auto& a, auto& b) { return a.path < b.path; });
    return files;
}

}  // namespace

const std::vector<CSourceFile>& projectFiles() {
    static const std::vector<CSourceFile> kFiles = readFiles();
    return kFiles;
}

std::vector<const CSourceFile*> codeFiles() {
    std::vector<const CSourceFile*> code;
    for (const CSourceFile& file : projectFiles())
        if (endsWith(file.path, ".h") || endsWith(file.path, ".cpp"))
            code.push_back(&file);
    return code;
}

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

bool endsWith(std::string_view text, std::string_view suffix) {
    return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

std::string runCommand(const std::string& command, int& state) {
    std::string output;
    FILE* pipe = popen(("cd '" + kTop.string() + "' && { " + command + "; } 2>&1").c_str(), "r");
    if (!pipe) {
        state = -1;
        return "cannot start a shell";
    }
    char buffer[4096];
    while (const size_t count = std::fread(buffer, 1, sizeof buffer, pipe))
        output.append(buffer, count);
    const int status = pclose(pipe);
    state = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return output;
}

}  // namespace tarv
