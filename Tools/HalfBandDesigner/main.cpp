// Command line of the designer of half-band filters.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Tools/HalfBandDesigner/HalfBandDesign.h"

namespace {

/// A family of rows: one code for the width, and the orders from steep to soft.
struct CFamily {
    const char* code;
    long double width;
    int orders[6];
};

// The rows of 0.05 below order 10 and those of 0.25 are older than this program; the definitions keep their digits.
constexpr CFamily kFamilies[] = {
    {"t100", 0.01L, {16, 14, 12, 10, 8, 6}},
    {"t50", 0.02L, {16, 14, 12, 10, 8, 6}},
    {"t33", 0.03L, {16, 14, 12, 10, 8, 6}},
    {"t20", 0.05L, {16, 14, 12, 10, 0, 0}},
};

void printRow(const char* code, int order, long double width) {
    const std::vector<long double> coefficients = tarv::designHalfBand(order, width);
    const double attenuation = tarv::halfBandAttenuation(coefficients, width);
    std::printf("    <audio:fltgen-hbf name=\"hbf%d%s\" order=\"%d\"\n        a=\"%s\"\n        b=\"%s\"/>\n",
                static_cast<int>(attenuation), code, order, tarv::branchText(coefficients, 0).c_str(),
                tarv::branchText(coefficients, 1).c_str());
    std::fprintf(stderr, "order %d, width %.4Lf: %.2f dB\n", order, width, attenuation);
}

}  // namespace

/// Without arguments prints the rows that the definitions hold; with an order and a width prints that row.
int main(int argc, char** argv) {
    if (argc == 3) {
        const int order = std::atoi(argv[1]);
        const long double width = std::strtold(argv[2], nullptr);
        if (tarv::designHalfBand(order, width).empty()) {
            std::fprintf(stderr, "The order must be even and above 0, the width above 0 and below 0.5.\n");
            return 1;
        }
        printRow("", order, width);
        return 0;
    }
    if (argc != 1) {
        std::fprintf(stderr, "Usage: HalfBandDesigner [ORDER WIDTH]\n");
        return 1;
    }
    for (const CFamily& family : kFamilies) {
        for (int order : family.orders) {
            if (order > 0) {
                printRow(family.code, order, family.width);
            }
        }
    }
    return 0;
}
