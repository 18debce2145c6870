// What instructions stand where in the binaries, and that wrong ones would be found.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "Tests/Architecture/CSourceTree.h"
#include "Tests/Architecture/MachineCodeRules.h"

namespace tarv {
namespace {

constexpr const char* kAvx2Source = "WaveAvx2.cpp";
constexpr const char* kAvx512Source = "WaveAvx512.cpp";

using CLines = std::vector<std::string>;

int32_t countOf(const std::vector<CFunctionCode>& functions, const char* part) {
    int32_t count = 0;
    for (const CFunctionCode& function : functions) {
        for (const CInstruction& instruction : function.code) {
            count += instruction.operands.find(part) != std::string::npos;
        }
    }
    return count;
}

/// One of the two libraries; their stereo faces are the same bytes (BinaryTest.cpp).
class BinaryCode : public ::testing::TestWithParam<const char*> {
protected:
    struct CLibrary {
        explicit CLibrary(const std::string& path) {
            const CMachineCode code(path, path + ".debug");
            wide = code.matching(kWideInstructions);
            sse2 = code.functionsOf("WaveSse2.cpp");
            avx2 = code.functionsOf(kAvx2Source);
            avx512 = code.functionsOf(kAvx512Source);
        }
        std::vector<CFunctionCode> wide, sse2, avx2, avx512;
    };
    /// Read once for all tests.
    static const CLibrary& library() {
        static std::map<std::string, CLibrary> libraries;
        const std::string path = std::string("build/") + GetParam();
        return libraries.try_emplace(path, path).first->second;
    }
    /// What a rule finds in the functions of the wider sets.
    template <class Rule>
    static CLines found(Rule rule, const std::vector<CFunctionCode>& functions) {
        CLines all;
        for (const CFunctionCode& function : functions) {
            const CLines lines = rule(function);
            all.insert(all.end(), lines.begin(), lines.end());
        }
        return all;
    }
};

TEST_P(BinaryCode, NeverMultipliesAndAddsWithoutRoundingInBetween) {
    EXPECT_EQ(fusedOperations(library().wide), CLines());
}

TEST_P(BinaryCode, HasWideInstructionsInTheFilesOfTheirSetsAlone) {
    EXPECT_EQ(wideOutside(library().wide, {kAvx2Source, kAvx512Source}), CLines());
    EXPECT_EQ(found(widestRegisters, library().avx2), CLines());
    EXPECT_GT(countOf(library().sse2, "%xmm"), 1000);
    EXPECT_GT(countOf(library().avx2, "%ymm"), 1000);
    EXPECT_GT(countOf(library().avx512, "%zmm"), 1000);
}

TEST_P(BinaryCode, WideFilesCallNothingOfOthersAndLeaveCleanRegisters) {
    for (const std::vector<CFunctionCode>* functions : {&library().avx2, &library().avx512}) {
        EXPECT_EQ(callsOutside(*functions), CLines());
        EXPECT_EQ(found(dirtyReturns, *functions), CLines());
    }
}

TEST_P(BinaryCode, WideVectorsLieAlignedOnTheStackAndNothingLiesBelowItOnWindows) {
    EXPECT_EQ(found(unalignedStackMoves, library().avx2), CLines());
    EXPECT_EQ(found(unalignedStackMoves, library().avx512), CLines());
    if (std::string(GetParam()).find(".dll") != std::string::npos) {
        for (const std::vector<CFunctionCode>* functions : {&library().sse2, &library().avx2, &library().avx512}) {
            EXPECT_EQ(found(placesBelowStack, *functions), CLines());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Libraries, BinaryCode, ::testing::Values("windows/BrindleXEQ.dll", "native/BrindleXEQ.so"),
                         [](const auto& info) {
                             return std::string(info.param).substr(0, 6) == "native" ? "Twin" : "Dll";
                         });

/// Objects of both systems, assembled from a text.
class MachineCode : public ::testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "code-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    /// Functions `name` with a `body`, of the source One.cpp, and those of Two.cpp behind them.
    CMachineCode assembled(const std::string& one, const std::string& two = "") {
        const std::string file = (folder_ / "x").string();
        std::string object;
        for (const auto& [source, text] : {std::pair("One.cpp", one), {"Two.cpp", two}}) {
            std::ofstream(file + ".s") << ".file \"" << source << "\"\n.text\n" << text;
            run(std::string(GetParam()) + "as " + file + ".s -o " + file + source + ".o");
            object += " " + file + source + ".o";
        }
        run(std::string(GetParam()) + "ld -r" + object + " -o " + file);
        return {file, file};
    }
    std::vector<CFunctionCode> wideOf(const std::string& one, const std::string& two = "") {
        return assembled(one, two).matching(kWideInstructions);
    }
    static std::string function(const std::string& name, const std::string& body) {
        const bool isWindows = *GetParam() != 0;
        return (isWindows ? ".def " + name + "; .scl 3; .type 32; .endef\n" : ".type " + name + ", @function\n") +
               name + ":\n" + body;
    }
    static size_t unaligned(const CMachineCode& code) {
        return unalignedStackMoves(code.functionsOf("One.cpp").at(0)).size();
    }
    static size_t dirty(const CMachineCode& code) { return dirtyReturns(code.functionsOf("One.cpp").at(0)).size(); }

private:
    static void run(const std::string& command) {
        int state = 0;
        const std::string output = runCommand(command, state);
        ASSERT_EQ(state, 0) << command << "\n" << output;
    }
    std::filesystem::path folder_;
};

TEST_P(MachineCode, WithAFusedOperationIsFound) {
    EXPECT_EQ(fusedOperations(wideOf(function("f", "vmulpd %ymm0, %ymm1, %ymm2\nvaddpd %ymm0, %ymm1, %ymm2\nret\n"))),
              CLines());
    for (const char* fused : {"vfmadd213pd %ymm0, %ymm1, %ymm2", "vfnmsub231sd %xmm0, %xmm1, %xmm2",
                              "vfmsubadd132pd %zmm0, %zmm1, %zmm2"}) {
        EXPECT_EQ(fusedOperations(wideOf(function("f", std::string(fused) + "\nret\n"))).size(), 1u) << fused;
    }
}

TEST_P(MachineCode, WithWideInstructionsInAnotherFileIsFound) {
    const std::string narrow = function("f", "addpd %xmm0, %xmm1\nsqrtpd %xmm1, %xmm1\nret\n");
    for (const char* wide :
         {"vaddpd %ymm0, %ymm1, %ymm2", "vaddsd %xmm0, %xmm1, %xmm2", "vzeroupper", "kmovw %eax, %k1",
          "andn %eax, %ebx, %ecx", "shlx %eax, %ebx, %ecx", "vaddpd %zmm0, %zmm1, %zmm2"}) {
        const std::vector<CFunctionCode> code = wideOf(narrow, function("g", std::string(wide) + "\nret\n"));
        EXPECT_EQ(wideOutside(code, {"Two.cpp"}), CLines()) << wide;
        EXPECT_EQ(wideOutside(code, {"One.cpp"}).size(), 1u) << wide;
    }
}

TEST_P(MachineCode, WithWideInstructionsInAMergedFunctionIsFound) {
    // Two names at one address, of two files.
    const std::vector<CFunctionCode> code =
        wideOf(function("f", ""), function("g", "vaddpd %ymm0, %ymm1, %ymm2\nret\n"));
    EXPECT_EQ(wideOutside(code, {"Two.cpp"}).size(), 1u);
}

TEST_P(MachineCode, WithRegistersOfTheWidestSetIsFound) {
    const auto widest = [](const CMachineCode& code) {
        return widestRegisters(code.functionsOf("One.cpp").at(0)).size();
    };
    EXPECT_EQ(widest(assembled(function("f", "vaddpd %ymm15, %ymm1, %ymm2\nret\n"))), 0u);
    for (const char* wide : {"vaddpd %ymm16, %ymm1, %ymm2", "vaddpd %zmm0, %zmm1, %zmm2",
                             "vaddpd %ymm0, %ymm1, %ymm2{%k1}", "vaddsd %xmm31, %xmm1, %xmm2"}) {
        EXPECT_EQ(widest(assembled(function("f", std::string(wide) + "\nret\n"))), 1u) << wide;
    }
}

TEST_P(MachineCode, WithUnalignedMovesToTheStackIsFound) {
    const std::string begin = "push %rbp\nmov %rsp, %rbp\npush %rbx\n";
    const std::string align = "and $-32, %rsp\nsub $0x60, %rsp\n";
    const std::string end = "vzeroupper\nmov -8(%rbp), %rbx\nleave\nret\n";
    EXPECT_EQ(unaligned(assembled(function("f", begin + align + "vmovapd %ymm0, 0x20(%rsp)\n" + end))), 0u);
    EXPECT_EQ(unaligned(assembled(function("f", begin + align + "vmovapd 0x30(%rsp), %xmm1\n" + end))), 0u);
    // Nothing aligned, aligned to less, a place between two.
    EXPECT_EQ(unaligned(assembled(function("f", begin + "sub $0x60, %rsp\nvmovapd %ymm0, 0x20(%rsp)\n" + end))), 1u);
    EXPECT_EQ(unaligned(assembled(function("f", begin + "sub $0x60, %rsp\nvmovupd -0x40(%rbp), %ymm0\n" + end))), 1u);
    EXPECT_EQ(unaligned(assembled(function("f", begin + "and $-16, %rsp\nvaddpd 0x20(%rsp), %ymm1, %ymm0\n" + end))),
              1u);
    EXPECT_EQ(unaligned(assembled(function("f", begin + align + "vmovapd %zmm0, 0x40(%rsp)\n" + end))), 1u);
    EXPECT_EQ(unaligned(assembled(function("f", begin + align + "vmovapd %ymm0, 0x10(%rsp)\n" + end))), 1u);
    EXPECT_EQ(unaligned(assembled(function("f", begin + align + "push %rax\nvmovapd %ymm0, (%rsp)\n" + end))), 1u);
}

TEST_P(MachineCode, WithAPlaceBelowTheStackIsFound) {
    const auto below = [](const CMachineCode& code) {
        return placesBelowStack(code.functionsOf("One.cpp").at(0)).size();
    };
    EXPECT_EQ(
        below(assembled(function("f", "lea -0x20(%rsp), %rsp\nmov %eax, 0x8(%rsp)\nmov %eax, -0x8(%rbp)\nret\n"))), 0u);
    EXPECT_EQ(below(assembled(function("f", "mov %eax, -0x8(%rsp)\naddpd -0x28(%rsp,%rax,8), %xmm0\nret\n"))), 2u);
}

TEST_P(MachineCode, WithAReturnThatLeavesUpperPartsIsFound) {
    const std::string wide = "vaddpd %ymm0, %ymm1, %ymm2\n";
    EXPECT_EQ(dirty(assembled(function("f", wide + "vzeroupper\nret\n"))), 0u);
    EXPECT_EQ(dirty(assembled(function("f", "test %eax, %eax\njne 1f\n" + wide + "vzeroupper\n1: ret\n"))), 0u);
    EXPECT_EQ(dirty(assembled(function("f", wide + "ret\n"))), 1u);
    EXPECT_EQ(dirty(assembled(function("f", wide + "test %eax, %eax\njne 1f\nvzeroupper\n1: ret\n"))), 1u);
    EXPECT_EQ(dirty(assembled(function("f", wide + "jmp *%rax\nnop\nvzeroupper\nret\nmov %eax, %ebx\nret\n"))), 1u);
    EXPECT_EQ(dirty(assembled(function("f", "1: vzeroupper\ntest %eax, %eax\njne 2f\n" + wide + "jmp 1b\n2: ret\n"))),
              0u);
    EXPECT_EQ(dirty(assembled(function("f", wide + "jmp f+0x100\n"))), 1u);
}

TEST_P(MachineCode, ThatCallsAnotherFileIsFound) {
    const std::string g = function("g", "ret\n");
    EXPECT_EQ(callsOutside(assembled(function("f", "call 1f\nret\n1: ret\n"), g).functionsOf("One.cpp")), CLines());
    EXPECT_EQ(callsOutside(assembled(function("f", "call *%rax\nret\n"), g).functionsOf("One.cpp")).size(), 1u);
    EXPECT_EQ(callsOutside(assembled(function("f", "call f+0x1000\nret\n"), g).functionsOf("One.cpp")).size(), 1u);
    EXPECT_EQ(callsOutside(assembled(function("f", "jmp f+0x1000\n"), g).functionsOf("One.cpp")).size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Systems, MachineCode, ::testing::Values("", "x86_64-w64-mingw32-"),
                         [](const auto& info) { return *info.param ? "Windows" : "Native"; });

}  // namespace
}  // namespace tarv
