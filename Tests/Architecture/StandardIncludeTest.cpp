// A header includes the standard headers of what it names, itself or by headers of the project. The compiler does not
// say so, because every compiler run begins with the precompiled standard headers.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>

#include "Tests/Architecture/CSourceTree.h"

namespace tarv {
namespace {

using CNames = std::set<std::string>;

/// The standard headers that declare a name; one of them is enough.
const std::map<std::string, CNames> kDeclaredIn = {
    {"abs", {"cmath", "cstdlib"}},
    {"array", {"array"}},
    {"bitset", {"bitset"}},
    {"atomic", {"atomic"}},
    {"bit_cast", {"bit"}},
    {"bit_width", {"bit"}},
    {"clamp", {"algorithm"}},
    {"copy_n", {"algorithm"}},
    {"cos", {"cmath"}},
    {"deque", {"deque"}},
    {"enable_shared_from_this", {"memory"}},
    {"endian", {"bit"}},
    {"exchange", {"utility"}},
    {"fabs", {"cmath"}},
    {"fill", {"algorithm"}},
    {"fill_n", {"algorithm"}},
    {"find", {"algorithm"}},
    {"free", {"cstdlib"}},
    {"function", {"functional"}},
    {"initializer_list", {"initializer_list"}},
    {"integer_sequence", {"utility"}},
    {"isfinite", {"cmath"}},
    {"is_same_v", {"type_traits"}},
    {"is_trivially_copyable_v", {"type_traits"}},
    {"is_trivially_default_constructible_v", {"type_traits"}},
    {"is_trivially_destructible_v", {"type_traits"}},
    {"less", {"functional", "map", "set"}},
    {"lround", {"cmath"}},
    {"make_integer_sequence", {"utility"}},
    {"make_shared", {"memory"}},
    {"make_unique", {"memory"}},
    {"map", {"map"}},
    {"max", {"algorithm"}},
    {"memcpy", {"cstring"}},
    {"memory_order_acquire", {"atomic"}},
    {"memory_order_relaxed", {"atomic"}},
    {"memory_order_release", {"atomic"}},
    {"min", {"algorithm"}},
    {"move", {"utility"}},
    {"numeric_limits", {"limits"}},
    {"pair", {"utility", "map"}},
    {"round", {"cmath"}},
    {"set", {"set"}},
    {"shared_ptr", {"memory"}},
    {"span", {"span"}},
    {"sin", {"cmath"}},
    {"sqrt", {"cmath"}},
    {"string", {"string"}},
    {"strong_ordering", {"compare"}},
    {"swap", {"utility", "algorithm"}},
    {"u16string", {"string"}},
    {"u16string_view", {"string_view", "string"}},
    {"uninitialized_copy_n", {"memory"}},
    {"unique_ptr", {"memory"}},
    {"vector", {"vector"}},
    {"weak_ptr", {"memory"}},
};

/// The code of a line, without a comment and without texts.
std::string codeOf(const std::string& line) {
    static const std::regex kNoCode(R"("(\\.|[^"\\])*"|//.*)");
    return std::regex_replace(line, kNoCode, "");
}

/// Names behind `std::`, and `intN_t` for integers of a fixed width.
CNames namesIn(const CSourceFile& file) {
    static const std::regex kName(R"(\bstd::([a-z_0-9]+)|\b(u?int(?:8|16|32|64|ptr)_t)\b)");
    CNames names;
    for (const std::string& line : file.lines) {
        const std::string code = codeOf(line);
        for (std::sregex_iterator it(code.begin(), code.end(), kName), end; it != end; ++it)
            names.insert((*it)[1].matched ? (*it)[1].str() : "intN_t");
    }
    return names;
}

class CHeaders {
public:
    CHeaders() {
        for (const CSourceFile* file : codeFiles())
            if (startsWith(file->path, "Sources/") && endsWith(file->path, ".h"))
                files_[file->path.substr(8)] = file;
    }
    const std::map<std::string, const CSourceFile*>& files() const { return files_; }

    /// Standard headers that a header of the project brings.
    const CNames& standardOf(const std::string& name) {
        const auto [entry, isNew] = known_.try_emplace(name);
        const auto file = files_.find(name);
        if (!isNew || file == files_.end())
            return entry->second;
        static const std::regex kInclude(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"].*)");
        CNames found;
        std::smatch match;
        for (const std::string& line : file->second->lines)
            if (std::regex_match(line, match, kInclude)) {
                if (match[1] == "<")
                    found.insert(match[2]);
                else
                    found.merge(CNames(standardOf(match[2])));
            }
        return known_[name] = found;
    }

private:
    std::map<std::string, const CSourceFile*> files_;
    std::map<std::string, CNames> known_;
};

bool isDeclared(const CNames& included, const CNames& headers) {
    return std::any_of(headers.begin(), headers.end(), [&](auto& header) { return included.count(header) > 0; });
}

TEST(StandardIncludes, AHeaderBringsWhatItNames) {
    CHeaders headers;
    int checked = 0;
    for (const auto& [name, file] : headers.files())
        for (const std::string& used : namesIn(*file)) {
            ++checked;
            const CNames& included = headers.standardOf(name);
            if (used == "intN_t") {
                EXPECT_TRUE(included.count("cstdint")) << name << " names integers of a fixed width without <cstdint>";
                continue;
            }
            const auto row = kDeclaredIn.find(used);
            ASSERT_NE(row, kDeclaredIn.end()) << name << " names std::" << used << ", which the table above lacks";
            EXPECT_TRUE(isDeclared(included, row->second))
                << name << " names std::" << used << " without <" << *row->second.begin() << ">";
        }
    EXPECT_GT(checked, 300);
}

TEST(StandardIncludes, NamesInCommentsAndTextsDoNotCount) {
    const CSourceFile file{"a.h",
                           {"int x;  // std::map", "f(\"std::set\\\"std::less\");", "std::pair<uint8_t, int> y;"}};
    EXPECT_EQ(namesIn(file), (CNames{"pair", "intN_t"}));
}

}  // namespace
}  // namespace tarv
