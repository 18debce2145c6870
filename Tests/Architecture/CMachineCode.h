#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarv {

struct CInstruction {
    uint64_t address;
    std::string name;      ///< as the GNU assembler writes it
    std::string operands;  ///< the same; empty without any
};

/// A function and those of its instructions that were asked for, in the order of their addresses.
struct CFunctionCode {
    std::string file;  ///< the source without its folder; several, with "and", where functions were merged
    std::string name;  ///< mangled
    std::vector<CInstruction> code;
};

/// Machine code of an object or a linked file of this system or of Windows, as objdump shows it.
class CMachineCode {
public:
    /// Paths from the top folder. `symbolFile` has the symbols of `file`: what was split off from it, or itself. A file
    /// that cannot be read is a failure of the test.
    CMachineCode(const std::string& file, const std::string& symbolFile);

    /// Functions with an instruction whose line, name and operands, matches a Perl expression; only those instructions.
    [[nodiscard]] std::vector<CFunctionCode> matching(const std::string& expression) const;
    /// All functions of a source, whole.
    [[nodiscard]] std::vector<CFunctionCode> functionsOf(const std::string& source) const;

private:
    struct CSymbol {
        uint64_t address;
        std::string file;
        std::string name;
    };
    void readSymbols(const std::string& table, uint64_t textAddress);
    void addLine(const std::string& line, std::vector<CFunctionCode>& functions) const;
    [[nodiscard]] std::vector<CFunctionCode> disassembled(const std::string& options, const std::string& filter) const;

    std::string tool_;
    std::string file_;
    bool isWindows_;
    std::vector<CSymbol> symbols_;  ///< by address
    uint64_t end_ = 0;              ///< of the code
};

}  // namespace tarv
