// How long a host waits for an editor: from open to its first picture, and for close, in windows of the system.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "CPluginLibrary.h"
#include "CVstHost.h"
#include "Tests/Host/Editor/CHostDesk.h"
#include "Tests/TestPaths.h"

namespace {

using CClock = std::chrono::steady_clock;

constexpr int kRounds = 50;

double millisecondsSince(CClock::time_point start) {
    return std::chrono::duration<double, std::milli>(CClock::now() - start).count();
}

struct CTimes {
    std::vector<double> opens;
    std::vector<double> closes;
};

/// False if the picture is not there when open returns.
bool measure(tarv::host::CVstHost& effect, tarv::host::CHostDesk& desk, void* parent, CTimes& times) {
    using namespace tarv;
    const uint32_t ground = desk.pixel(parent, 10, 10);
    for (int i = 0; i < kRounds; ++i) {
        const auto start = CClock::now();
        const bool isOpen = effect.dispatch(vst::kEffectEditOpen, 0, 0, parent) == 1;
        times.opens.push_back(millisecondsSince(start));
        if (!isOpen || (i == 0 && desk.pixel(parent, 10, 10) == ground)) {
            return false;
        }
        desk.serve();
        const auto end = CClock::now();
        effect.dispatch(vst::kEffectEditClose);
        times.closes.push_back(millisecondsSince(end));
        desk.serve();
    }
    return true;
}

void print(const char* what, std::vector<double> times) {
    std::sort(times.begin(), times.end());
    std::printf("%-40s %8.2f ms   most %8.2f ms\n", what, times[times.size() / 2], times.back());
}

}  // namespace

/// EditorTimes [LIBRARY]: prints the median and the longest of 50; the first opening of a process loads the graphics.
int main(int argc, char** argv) {
    using namespace tarv::host;
    CPluginLibrary library;
    std::string error;
    if (!library.load(argc > 1 ? argv[1] : tarv::kPluginFile, error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 1;
    }
    CHostDesk desk;
    CVstHost effect;
    CTimes times;
    if (!effect.open(library.entry()) || !measure(effect, desk, desk.openParent(), times)) {
        std::fprintf(stderr, "the editor does not open with its picture\n");
        return 1;
    }
    constexpr double kLimit = 150.0;
    const double first = times.opens.front();
    std::printf("%-40s %8.2f ms   limit %7.2f ms\n", "first open, with the graphics", first, kLimit);
    times.opens.erase(times.opens.begin());
    print("open to the first picture", times.opens);
    print("close", times.closes);
    return first > kLimit ? 1 : 0;
}
