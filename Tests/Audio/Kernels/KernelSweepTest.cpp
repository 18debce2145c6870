#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <optional>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/MidSideKernels.h"
#include "Audio/Kernels/NoiseKernels.h"
#include "Audio/Kernels/ResampleKernels.h"
#include "Audio/Kernels/StandardKernels.h"
#include "Audio/Kernels/TubeKernels.h"
#include "Tests/Audio/Kernels/KernelCases.h"

namespace tarv {
namespace {

constexpr int32_t kMargin = 8;  // samples before and behind each operand that no kernel may write

/// Where the operands of one operation lie.
struct CArrangement {
    int32_t offset = 0;               ///< samples by which every operand is moved
    int32_t destination = 0;          ///< which written operand shares a source's memory
    std::optional<int32_t> source{};  ///< that source
    int32_t shift = 0;                ///< samples from the source's start to the destination's
};

/// One operation with separate memory, filled with noise; copies share nothing.
class CTestOperation {
public:
    CTestOperation(const CKernelCase& c, int32_t count, const CArrangement& arrangement) : case_(&c) {
        operation_.count = count;
        operation_.immediate = nextNoise();
        for (const COperandRole& role : c.operands) {
            const int32_t scale = role.kind == COperandKind::DoubledSignal ? 2 : 1;
            const int32_t size = role.kind == COperandKind::Block ? role.size : count * scale;
            std::vector<double> memory(static_cast<size_t>(2 * size + 2 * kMargin + 8));
            for (double& value : memory) {
                value = nextNoise();
            }
            starts_.push_back(kMargin + arrangement.offset);
            if (role.fill) {
                role.fill(memory.data() + starts_.back());
            }
            memories_.push_back(std::move(memory));
            homes_.push_back(homes_.size());
        }
        if (arrangement.source) {
            const auto d = static_cast<size_t>(arrangement.destination);
            homes_[d] = static_cast<size_t>(*arrangement.source);
            starts_[d] = starts_[homes_[d]] + arrangement.shift;
        }
    }

    COperation& resolved() {
        for (size_t j = 0; j < memories_.size(); ++j) {
            operation_.pointers[j] = memories_[homes_[j]].data() + starts_[j];
        }
        return operation_;
    }

    /// Bits of all memory, margins included, without the parts of a block that are not compared.
    std::vector<uint64_t> bits() const {
        std::vector<uint64_t> all;
        for (size_t j = 0; j < memories_.size(); ++j) {
            const COperandRole& role = case_->operands[j];
            std::vector<double> memory = memories_[j];
            if (role.compared >= 0) {
                std::fill(memory.begin() + starts_[j] + role.compared, memory.begin() + starts_[j] + role.size, 0.0);
            }
            const size_t at = all.size();
            all.resize(at + memory.size());
            std::memcpy(all.data() + at, memory.data(), memory.size() * sizeof(double));
        }
        return all;
    }

private:
    const CKernelCase* case_;
    COperation operation_{};
    std::vector<std::vector<double>> memories_;
    std::vector<int32_t> starts_;
    std::vector<size_t> homes_;
};

class KernelSweep : public testing::Test {
protected:
    KernelSweep() : context(makeStandardContext()) {
        registerTubeKernels(*context);
        registerResampleKernels(*context);
        registerMidSideKernels(*context);
        registerNoiseKernels(*context);
    }
    const CKernel& kernelOf(const CKernelCase& c) const {
        return context->kernel(context->findKernel(("com.tarvelo.qplex." + c.name).c_str()));
    }
    static std::vector<int32_t> counts() {
        std::vector<int32_t> all;
        for (int32_t count = 0; count <= 70; ++count) {
            all.push_back(count);
        }
        all.push_back(512);
        return all;
    }
    /// Apart, and each destination in the place of each source of its size; shifted too where that is defined.
    static std::vector<CArrangement> arrangements(const CKernelCase& c) {
        std::vector<CArrangement> all = {{0}, {1}, {3}};
        const auto operandCount = static_cast<int32_t>(c.operands.size());
        for (int32_t d = 0; d < c.destinations; ++d) {
            for (int32_t s = c.destinations; s < operandCount; ++s) {
                if (c.operands[static_cast<size_t>(s)].kind == COperandKind::Block) {
                    continue;
                }
                if (c.operands[static_cast<size_t>(d)].kind == COperandKind::DoubledSignal) {
                    continue;  // tested by its own case: the destination is the longer one
                }
                all.push_back({0, d, s, 0});
                if (c.canOverlap) {
                    for (const int32_t shift : {-3, -1, 1, 2, 5}) {
                        all.push_back({0, d, s, shift});
                    }
                }
            }
        }
        return all;
    }

    std::unique_ptr<CQPLEXContext> context;
};

TEST_F(KernelSweep, EveryKernelOfTheContextHasACase) {
    const std::vector<CKernelCase> cases = allKernelCases();
    for (int32_t number = 0; number < context->kernelCount(); ++number) {
        const std::string name = context->kernel(number).name;
        if (name.find(".rdft") != std::string::npos || name.find(".conv") != std::string::npos) {
            continue;  // FourierKernelsTest proves them
        }
        int32_t found = 0;
        for (const CKernelCase& c : cases) {
            found += "com.tarvelo.qplex." + c.name == name;
        }
        EXPECT_EQ(found, 1) << name;
    }
    for (const CKernelCase& c : cases) {
        const int32_t number = context->findKernel(("com.tarvelo.qplex." + c.name).c_str());
        ASSERT_GE(number, 0) << c.name;
        EXPECT_EQ(static_cast<size_t>(context->kernel(number).operandCount), c.operands.size()) << c.name;
    }
}

TEST_F(KernelSweep, EveryKernelGivesTheBitsOfItsPlainLoop) {
    for (const CKernelCase& c : allKernelCases()) {
        const CKernel& kernel = kernelOf(c);
        for (const CArrangement& arrangement : arrangements(c)) {
            for (const int32_t count : counts()) {
                CTestOperation actual(c, count, arrangement);
                CTestOperation expected = actual;
                for (int32_t run = 0; run < 2; ++run) {  // the second run shows what the first left in the blocks
                    kernel.function(actual.resolved());
                    c.reference(expected.resolved());
                    ASSERT_EQ(actual.bits(), expected.bits())
                        << c.name << " count " << count << " offset " << arrangement.offset << " in place of "
                        << arrangement.source.value_or(-1) << " shift " << arrangement.shift << " run " << run;
                }
            }
        }
    }
}

TEST_F(KernelSweep, EveryBatchGivesTheBitsOfOneByOne) {
    for (const CKernelCase& c : allKernelCases()) {
        const CKernel& kernel = kernelOf(c);
        if (!kernel.batch) {
            continue;
        }
        const std::vector<CArrangement> all = arrangements(c);
        for (int32_t n = 1; n <= 9; ++n) {
            for (const int32_t count : {0, 1, 2, 3, 4, 5, 7, 8, 31, 64, 512}) {
                std::vector<CTestOperation> actual;
                for (int32_t k = 0; k < n; ++k) {
                    // Mostly apart, as in a graph, with in-place and overlapping ones among them.
                    const size_t kind = k % 3 == 2 ? static_cast<size_t>(n + k + count) % all.size() : 0;
                    actual.emplace_back(c, count, all[kind]);
                }
                std::vector<CTestOperation> expected = actual;
                for (int32_t run = 0; run < 2; ++run) {
                    std::vector<COperation*> operations;
                    for (CTestOperation& operation : actual) {
                        operations.push_back(&operation.resolved());
                    }
                    kernel.batch(operations.data(), n);
                    for (int32_t k = 0; k < n; ++k) {
                        c.reference(expected[static_cast<size_t>(k)].resolved());
                        ASSERT_EQ(actual[static_cast<size_t>(k)].bits(), expected[static_cast<size_t>(k)].bits())
                            << c.name << " count " << count << " operation " << k << " of " << n << " run " << run;
                    }
                }
            }
        }
    }
}

TEST_F(KernelSweep, InterpolationWorksInPlace) {
    const std::vector<CKernelCase> cases = moduleKernelCases();
    for (const CKernelCase& c : cases) {
        if (c.name != "interp2") {
            continue;
        }
        for (const int32_t count : counts()) {
            std::vector<double> actual(static_cast<size_t>(2 * count + 1), 7.0);
            for (int32_t i = 0; i < count; ++i) {
                actual[static_cast<size_t>(i)] = nextNoise();
            }
            std::vector<double> expected = actual;
            COperation operation{};
            operation.count = count;
            operation.pointers[0] = operation.pointers[1] = actual.data();
            kernelOf(c).function(operation);
            operation.pointers[0] = operation.pointers[1] = expected.data();
            c.reference(operation);
            ASSERT_EQ(actual, expected) << count;
        }
    }
}

}  // namespace
}  // namespace tarv
