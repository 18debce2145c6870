#include "Tests/Architecture/CMachineCode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "Tests/Architecture/CSourceTree.h"
#include "Tests/TestPaths.h"

namespace tarv {

namespace {

std::string outputOf(const std::string& command) {
    int state = 0;
    std::string text = runCommand(command, state);
    EXPECT_EQ(state, 0) << command << "\n" << text.substr(0, 500);
    return text;
}

std::string hex(uint64_t value) {
    char text[20];
    std::snprintf(text, sizeof text, "0x%llx", static_cast<unsigned long long>(value));
    return text;
}

/// The words of a line.
std::vector<std::string> wordsOf(const std::string& line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

}  // namespace

CMachineCode::CMachineCode(const std::string& file, const std::string& symbolFile) : file_(file) {
    char magic[4] = {};
    std::ifstream(std::filesystem::path(kSourceFolder) / file, std::ios::binary).read(magic, sizeof magic);
    isWindows_ = std::string(magic, 4) != "\177ELF";
    tool_ = isWindows_ ? "x86_64-w64-mingw32-objdump" : "objdump";
    uint64_t textAddress = 0;
    std::istringstream sections(outputOf(tool_ + " -h " + file));
    for (std::string line; std::getline(sections, line);) {
        const std::vector<std::string> words = wordsOf(line);
        if (words.size() >= 4 && words[1] == ".text") {
            textAddress = std::stoull(words[3], nullptr, 16);
            end_ = textAddress + std::stoull(words[2], nullptr, 16);
        }
    }
    EXPECT_GT(end_, textAddress) << file;
    readSymbols(outputOf(tool_ + " -t " + symbolFile), textAddress);
    EXPECT_FALSE(symbols_.empty()) << symbolFile;
}

void CMachineCode::readSymbols(const std::string& table, uint64_t textAddress) {
    std::string source;
    std::istringstream stream(table);
    for (std::string line; std::getline(stream, line);) {
        const std::vector<std::string> words = wordsOf(line);
        if (words.size() < 4) {
            continue;
        }
        const std::string& name = words.back();
        if (isWindows_) {
            // [ 12](sec  1)(fl 0x00)(ty   20)(scl   3) (nx 1) 0x0000000000074740 name
            if (line.find("(scl 103)") != std::string::npos) {
                source = name;
            } else if (line.find("(sec  1)") != std::string::npos && line.find("(ty   20)") != std::string::npos) {
                const uint64_t offset = std::stoull(words[words.size() - 2], nullptr, 16);
                symbols_.push_back({textAddress + offset, source, name});
            }
        } else if (line.find(" df *ABS*") != std::string::npos) {
            source = name;
        } else if (line.find(" F .text\t") != std::string::npos && line[words[0].size() + 1] == 'l') {
            // Exported names stand behind those of all files, without theirs.
            symbols_.push_back({std::stoull(words[0], nullptr, 16), source, name});
        }
    }
    std::stable_sort(symbols_.begin(), symbols_.end(),
                     [](const CSymbol& a, const CSymbol& b) { return a.address < b.address; });
    // A linker that merges functions leaves the code of one and the names of both.
    for (size_t i = 1; i < symbols_.size(); ++i) {
        if (symbols_[i].address == symbols_[i - 1].address && symbols_[i].file != symbols_[i - 1].file) {
            symbols_[i].file = symbols_[i - 1].file + " and " + symbols_[i].file;
        }
    }
}

void CMachineCode::addLine(const std::string& line, std::vector<CFunctionCode>& functions) const {
    // "   1f40:\tvmovapd %ymm0,0x20(%rsp)"
    const size_t colon = line.find(":\t");
    if (colon == std::string::npos) {
        return;
    }
    const uint64_t address = std::stoull(line.substr(0, colon), nullptr, 16);
    const auto behind = std::upper_bound(symbols_.begin(), symbols_.end(), address,
                                         [](uint64_t at, const CSymbol& s) { return at < s.address; });
    const CSymbol& symbol = behind == symbols_.begin() ? *behind : *(behind - 1);
    if (functions.empty() || functions.back().name != symbol.name || functions.back().file != symbol.file) {
        functions.push_back({symbol.file, symbol.name, {}});
    }
    const std::string text = line.substr(colon + 2);
    const size_t space = std::min(text.find(' '), text.size());
    const size_t operands = std::min(text.find_first_not_of(' ', space), text.size());
    functions.back().code.push_back({address, text.substr(0, space), text.substr(operands)});
}

std::vector<CFunctionCode> CMachineCode::disassembled(const std::string& options, const std::string& filter) const {
    std::vector<CFunctionCode> functions;
    std::istringstream stream(
        outputOf("LC_ALL=C " + tool_ + " -d -w --no-show-raw-insn -j .text " + options + " " + file_ + filter));
    for (std::string line; std::getline(stream, line);) {
        addLine(line, functions);
    }
    return functions;
}

std::vector<CFunctionCode> CMachineCode::matching(const std::string& expression) const {
    // No match is no error.
    return disassembled("", " | LC_ALL=C grep -P ':\\t(?:" + expression + ")' || true");
}

std::vector<CFunctionCode> CMachineCode::functionsOf(const std::string& source) const {
    uint64_t from = end_;
    uint64_t to = 0;
    for (size_t i = 0; i < symbols_.size(); ++i) {
        if (symbols_[i].file == source) {
            from = std::min(from, symbols_[i].address);
            // Two names of one address have the end of the second.
            to = i + 1 < symbols_.size() ? symbols_[i + 1].address : end_;
        }
    }
    std::vector<CFunctionCode> functions;
    if (from < to) {
        functions = disassembled("--start-address=" + hex(from) + " --stop-address=" + hex(to), "");
    }
    for (const CFunctionCode& function : functions) {
        EXPECT_EQ(function.file, source) << function.name << " lies between functions of another file";
    }
    return functions;
}

}  // namespace tarv
