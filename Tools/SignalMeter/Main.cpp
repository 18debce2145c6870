// Sits in a pipe of raw 64-bit floats: passes them on unchanged and leaves a report of what went through.

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string_view>

#include "Tools/SignalMeter/CFloatWav.h"
#include "Tools/SignalMeter/CSignalMeter.h"

namespace {

constexpr char kUsage[] =
    "SignalMeter --channels N --rate HZ --report FILE [--progress FRAMES] [--wav FILE] < in.f64 > out.f64\n"
    "  Passes interleaved 64-bit floats from stdin to stdout and writes levels and long-term spectrum to FILE.\n"
    "  --wav FILE          writes a WAV file of 32-bit floats instead of stdout: nothing is clipped\n"
    "  --progress FRAMES   shows on a terminal how much of that many frames has passed, and how fast\n";

struct CArguments {
    int channels = 0;
    double rate = 0.0;
    const char* report = nullptr;
    const char* wav = nullptr;
    double expectedFrames = 0.0;
};

bool readArguments(int count, char** words, CArguments& arguments) {
    for (int i = 1; i + 1 < count; i += 2) {
        const std::string_view name = words[i];
        if (name == "--channels")
            arguments.channels = std::atoi(words[i + 1]);
        else if (name == "--rate")
            arguments.rate = std::atof(words[i + 1]);
        else if (name == "--report")
            arguments.report = words[i + 1];
        else if (name == "--wav")
            arguments.wav = words[i + 1];
        else if (name == "--progress")
            arguments.expectedFrames = std::atof(words[i + 1]);
        else
            return false;
    }
    return count % 2 == 1 && arguments.channels > 0 && arguments.channels <= 64 && arguments.rate > 0.0 &&
           arguments.report;
}

/// Where the samples go: on through the pipe, or into a WAV file.
class COutlet {
public:
    explicit COutlet(const CArguments& arguments)
        : isFile_(arguments.wav != nullptr), wav_(arguments.channels, arguments.rate) {}
    bool open(const CArguments& arguments) { return !isFile_ || wav_.open(arguments.wav); }
    bool write(std::span<const double> samples) {
        return isFile_ ? wav_.write(samples)
                       : std::fwrite(samples.data(), sizeof(double), samples.size(), stdout) == samples.size();
    }
    bool close() { return isFile_ ? wav_.close() : std::fflush(stdout) == 0; }

private:
    bool isFile_;
    tarv::CFloatWav wav_;
};

/// A line that is written over in place, five times a second, and taken away at the end.
class CProgressLine {
public:
    explicit CProgressLine(const CArguments& arguments)
        : arguments_(arguments), isShown_(arguments.expectedFrames > 0.0 && isatty(STDERR_FILENO)) {}

    ~CProgressLine() {
        if (isShown_)
            std::fputs("\r\033[K", stderr);
    }

    void show(double frames) {
        const auto now = std::chrono::steady_clock::now();
        if (!isShown_ || now - shown_ < std::chrono::milliseconds(200))
            return;
        shown_ = now;
        const double elapsed = std::chrono::duration<double>(now - start_).count();
        std::fprintf(stderr, "\r\033[K%3.0f %%  %.1f s of audio, %.1f x real time",
                     100.0 * frames / arguments_.expectedFrames, frames / arguments_.rate,
                     frames / arguments_.rate / elapsed);
    }

private:
    const CArguments& arguments_;
    const bool isShown_;
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::chrono::steady_clock::time_point shown_ = start_;
};

}  // namespace

int main(int count, char** words) {
    CArguments arguments;
    if (!readArguments(count, words, arguments)) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    tarv::CSignalMeter meter(arguments.channels, arguments.rate);
    COutlet outlet(arguments);
    if (!outlet.open(arguments)) {
        std::fprintf(stderr, "SignalMeter: cannot write %s\n", arguments.wav);
        return 1;
    }
    std::vector<double> block(4096 * static_cast<size_t>(arguments.channels));
    {
        CProgressLine progress(arguments);
        const size_t frameBytes = sizeof(double) * arguments.channels;
        while (const size_t frames = std::fread(block.data(), frameBytes, 4096, stdin)) {
            const size_t samples = frames * arguments.channels;
            meter.add({block.data(), samples});
            if (!outlet.write({block.data(), samples}))
                return 1;
            progress.show(static_cast<double>(meter.frames()));
        }
    }
    if (!outlet.close())
        return 1;
    std::ofstream report(arguments.report);
    tarv::writeReport(meter, arguments.channels, report);
    report.flush();
    if (!report) {
        std::fprintf(stderr, "SignalMeter: cannot write %s\n", arguments.report);
        return 1;
    }
    return 0;
}
