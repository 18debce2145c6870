#include "Tests/Architecture/MachineCodeRules.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>
#include <regex>
#include <set>

#include "Tests/Architecture/CSourceTree.h"

namespace tarv {

const char* const kWideInstructions =
    "v[a-z]|k(?:add|and|mov|not|or|shift|test|unpck|xn?or)|andn |bextr|bls(?:i|r|msk) |bzhi|mulx|pdep|pext|rorx|sarx|"
    "shlx|shrx";

namespace {

std::string lineOf(const CFunctionCode& function, const CInstruction& instruction) {
    char address[20];
    std::snprintf(address, sizeof address, "%llx", static_cast<unsigned long long>(instruction.address));
    return function.file + " " + function.name + " " + address + ": " + instruction.name + " " + instruction.operands;
}

bool has(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

bool isJump(const CInstruction& instruction) {
    return instruction.name[0] == 'j' || instruction.name == "notrack";
}
bool isAlways(const CInstruction& instruction) {
    return instruction.name == "jmp" || instruction.name == "notrack";
}
bool isReturn(const CInstruction& instruction) {
    return startsWith(instruction.name, "ret") || startsWith(instruction.operands, "ret");
}
/// That of a direct jump or call.
std::optional<uint64_t> targetOf(const CInstruction& instruction) {
    if (has(instruction.operands, "*")) {
        return std::nullopt;
    }
    return std::strtoull(instruction.operands.c_str(), nullptr, 16);
}

/// What is known of a register that points into the stack: its distance from a multiple of `alignment`.
struct CStackPlace {
    int64_t alignment = 16;
    std::optional<int64_t> distance;
};

/// The two registers that point into the stack, behind the function's beginning.
class CStackRegisters {
public:
    /// Follows what sets a frame up; the way back at a return is no concern.
    void follow(const CInstruction& instruction) {
        static const std::regex number(R"(\$(-?0x[0-9a-f]+),%rsp)");
        static const std::regex down(R"((-0x[0-9a-f]+)\(%rsp\),%rsp)");
        std::smatch match;
        if (has(instruction.operands, ",%rsp") && std::regex_search(instruction.operands, match, number)) {
            const auto value = static_cast<int64_t>(std::strtoull(match.str(1).c_str(), nullptr, 16));
            if (startsWith(instruction.name, "and")) {
                stack = {-value, 0};
            } else if (startsWith(instruction.name, "sub")) {
                move(-value);
            }
        } else if (startsWith(instruction.name, "lea") && std::regex_search(instruction.operands, match, down)) {
            move(std::strtoll(match.str(1).c_str(), nullptr, 16));
        } else if (startsWith(instruction.name, "push")) {
            move(-8);
        } else if (startsWith(instruction.name, "mov") && instruction.operands == "%rsp,%rbp") {
            frame = stack;
        }
    }

    CStackPlace stack;
    std::optional<CStackPlace> frame;

private:
    void move(int64_t by) {
        if (stack.distance) {
            stack.distance = *stack.distance + by;
        }
    }
};

bool isPadding(const CInstruction& instruction) {
    return has(instruction.name, "nop") || has(instruction.operands, "nop") || instruction.operands == "%ax,%ax";
}

bool isDirtying(const CInstruction& instruction) {
    return has(instruction.operands, "%ymm") || has(instruction.operands, "%zmm");
}

/// Which of two conditions of the registers' upper parts may reach each instruction.
class CUpperParts {
public:
    explicit CUpperParts(const CFunctionCode& function) : code_(function.code), reached_(code_.size()) {
        for (size_t i = 0; i < code_.size(); ++i) {
            places_[code_[i].address] = i;
        }
        reach(0, kClean);
        follow();
        while (indirect_ != 0 && reachBehindTable()) {
            follow();
        }
    }
    /// In an instruction's own order: before it.
    bool mayBeDirty(size_t i) const { return (reached_[i] & kDirty) != 0; }
    bool isInside(uint64_t address) const { return places_.count(address) != 0; }

private:
    static constexpr int kClean = 1;
    static constexpr int kDirty = 2;

    void reach(size_t i, int state) {
        if (i < code_.size() && (reached_[i] | state) != reached_[i]) {
            reached_[i] |= state;
            open_.push_back(i);
        }
    }
    void follow() {
        while (!open_.empty()) {
            const size_t i = open_.back();
            open_.pop_back();
            const CInstruction& instruction = code_[i];
            const int state = startsWith(instruction.name, "vzero") ? kClean
                              : isDirtying(instruction)             ? kDirty
                                                                    : reached_[i];
            if (isJump(instruction)) {
                const std::optional<uint64_t> target = targetOf(instruction);
                const auto place = target ? places_.find(*target) : places_.end();
                if (place != places_.end()) {
                    reach(place->second, state);
                } else if (!target) {
                    indirect_ |= state;
                }
            }
            if (!isAlways(instruction) && !isReturn(instruction)) {
                reach(i + 1, state);
            }
        }
    }
    bool reachBehindTable() {
        bool isBlockBegin = false;
        for (size_t i = 0; i < code_.size(); ++i) {
            const CInstruction& instruction = code_[i];
            if (reached_[i] != 0) {
                isBlockBegin = isAlways(instruction) || isReturn(instruction);
            } else if (isBlockBegin && !isPadding(instruction)) {
                reach(i, indirect_);
                return true;
            }
        }
        return false;
    }

    const std::vector<CInstruction>& code_;
    std::vector<int> reached_;
    std::map<uint64_t, size_t> places_;
    std::vector<size_t> open_;
    int indirect_ = 0;
};

}  // namespace

std::vector<std::string> wideOutside(const std::vector<CFunctionCode>& wide, const std::vector<std::string>& sources) {
    std::vector<std::string> found;
    for (const CFunctionCode& function : wide) {
        if (std::find(sources.begin(), sources.end(), function.file) == sources.end()) {
            found.push_back(lineOf(function, function.code[0]));
        }
    }
    return found;
}

std::vector<std::string> fusedOperations(const std::vector<CFunctionCode>& wide) {
    std::vector<std::string> found;
    for (const CFunctionCode& function : wide) {
        for (const CInstruction& instruction : function.code) {
            if (startsWith(instruction.name, "vfm") || startsWith(instruction.name, "vfnm")) {
                found.push_back(lineOf(function, instruction));
            }
        }
    }
    return found;
}

std::vector<std::string> widestRegisters(const CFunctionCode& function) {
    static const std::regex widest(R"(%zmm|%k[0-7]|%[xy]mm(1[6-9]|2[0-9]|3[01]))");
    std::vector<std::string> found;
    for (const CInstruction& instruction : function.code) {
        if (has(instruction.operands, "%") && std::regex_search(instruction.operands, widest)) {
            found.push_back(lineOf(function, instruction));
        }
    }
    return found;
}

std::vector<std::string> unalignedStackMoves(const CFunctionCode& function) {
    static const std::regex place(R"((-?)(?:0x([0-9a-f]+))?\(%r([sb]p)([^)]*)\))");
    std::vector<std::string> found;
    CStackRegisters registers;
    for (const CInstruction& instruction : function.code) {
        registers.follow(instruction);
        std::smatch match;
        if (!isDirtying(instruction) || !std::regex_search(instruction.operands, match, place)) {
            continue;
        }
        const bool isStack = match.str(3) == "sp";
        if (!isStack && !registers.frame) {
            continue;  // an ordinary address
        }
        const CStackPlace& at = isStack ? registers.stack : *registers.frame;
        const int64_t width = has(instruction.operands, "%zmm") ? 64 : 32;
        const auto offset = static_cast<int64_t>(std::strtoull(match.str(2).c_str(), nullptr, 16));
        const int64_t distance = at.distance.value_or(0) + (match.str(1).empty() ? offset : -offset);
        const bool isIndexed = !match.str(4).empty();
        const bool isAnywhere = startsWith(instruction.name, "vmovu") || startsWith(instruction.name, "vmovdqu");
        if (at.alignment < width || (!isAnywhere && !isIndexed && distance % width != 0)) {
            found.push_back(lineOf(function, instruction));
        }
    }
    return found;
}

std::vector<std::string> placesBelowStack(const CFunctionCode& function) {
    static const std::regex below(R"(-0x[0-9a-f]+\(%rsp[,)])");
    std::vector<std::string> found;
    for (const CInstruction& instruction : function.code) {
        // Room may be taken by this form of an addition.
        if (has(instruction.operands, "(%rsp") && !startsWith(instruction.name, "lea") &&
            std::regex_search(instruction.operands, below)) {
            found.push_back(lineOf(function, instruction));
        }
    }
    return found;
}

std::vector<std::string> dirtyReturns(const CFunctionCode& function) {
    std::vector<std::string> found;
    const CUpperParts parts(function);
    for (size_t i = 0; i < function.code.size(); ++i) {
        const CInstruction& instruction = function.code[i];
        const std::optional<uint64_t> target = targetOf(instruction);
        const bool isLeaving = isReturn(instruction) || (isJump(instruction) && target && !parts.isInside(*target));
        if (isLeaving && parts.mayBeDirty(i)) {
            found.push_back(lineOf(function, instruction));
        }
    }
    return found;
}

std::vector<std::string> callsOutside(const std::vector<CFunctionCode>& functions) {
    std::set<uint64_t> inside;
    for (const CFunctionCode& function : functions) {
        for (const CInstruction& instruction : function.code) {
            inside.insert(instruction.address);
        }
    }
    std::vector<std::string> found;
    for (const CFunctionCode& function : functions) {
        for (const CInstruction& instruction : function.code) {
            const bool isCall = startsWith(instruction.name, "call");
            const std::optional<uint64_t> target = targetOf(instruction);
            // A jump by an address in a register is one by a table.
            if ((isCall || (isJump(instruction) && target)) && (!target || inside.count(*target) == 0)) {
                found.push_back(lineOf(function, instruction));
            }
        }
    }
    return found;
}

}  // namespace tarv
