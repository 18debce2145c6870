// Looks inside the graph: prints how it was built, or writes the signal behind any process to a file.

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Audio/Graph/CAudioProcessBase.h"
#include "CGraphPrinter.h"
#include "CPlainInstance.h"
#include "CSignalTap.h"

namespace {

constexpr const char* kUsage =
    "GraphInspector [options] [< interleaved float64]\n"
    "  --rate HZ          host rate, default 44100\n"
    "  --channels N       host channels in and out, default 2\n"
    "  --set NAME[:GROUP[:ELEMENT]]=VALUE   a parameter by its full name, in its own unit\n"
    "  --tap PATH[:ELEMENT] FILE   runs standard input through and writes what lies behind a process\n"
    "                     (raw interleaved float64; ELEMENT is the position in the innermost stack)\n"
    "  --help             this text\n"
    "Without --tap it prints the set of instructions that bands run in (TARV_INSTRUCTION_SET=sse2 asks for a narrower "
    "one)\n"
    "and the built graph; each line that begins with a path is a process that can be tapped.\n";

struct COptions {
    double rate = 44100.0;
    int32_t channels = 2;
    std::vector<std::string> settings;
    std::string tapPath;
    int32_t tapElement = -1;
    std::string tapFile;
    bool isHelp = false;
};

/// The whole text as a number.
bool toNumber(const std::string& text, double& value) {
    char* end = nullptr;
    value = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == 0;
}

bool parse(int argc, char** argv, COptions& options) {
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        const int left = argc - i - 1;
        if (name == "--help") {
            options.isHelp = true;
        } else if (name == "--rate" && left > 0) {
            if (!toNumber(argv[++i], options.rate)) {
                return false;
            }
        } else if (name == "--channels" && left > 0) {
            options.channels = std::atoi(argv[++i]);
        } else if (name == "--set" && left > 0) {
            options.settings.emplace_back(argv[++i]);
        } else if (name == "--tap" && left > 1) {
            options.tapPath = argv[++i];
            options.tapFile = argv[++i];
            const size_t colon = options.tapPath.find(':');
            if (colon != std::string::npos) {
                options.tapElement = std::atoi(options.tapPath.c_str() + colon + 1);
                options.tapPath.resize(colon);
            }
        } else {
            return false;
        }
    }
    return options.rate > 0.0 && options.channels > 0 && options.channels <= 32;
}

bool apply(tarv::CPlainInstance& instance, const std::string& setting) {
    const size_t equals = setting.find('=');
    if (equals == std::string::npos) {
        return false;
    }
    std::string name = setting.substr(0, equals);
    int32_t place[2] = {0, 0};
    const size_t colon = name.find(':');
    if (colon != std::string::npos) {
        std::sscanf(name.c_str() + colon, ":%d:%d", &place[0], &place[1]);
        name.resize(colon);
    }
    double value = 0.0;
    return toNumber(setting.substr(equals + 1), value) && instance.set(name.c_str(), place[0], place[1], value);
}

std::vector<std::vector<double>> readInput(int32_t channels) {
    std::vector<std::vector<double>> planar(static_cast<size_t>(channels));
    std::vector<double> frame(planar.size());
    while (std::fread(frame.data(), sizeof(double), frame.size(), stdin) == frame.size()) {
        for (size_t c = 0; c < frame.size(); ++c) {
            planar[c].push_back(frame[c]);
        }
    }
    return planar;
}

int tap(tarv::CPlainInstance& instance, const COptions& options) {
    FILE* file = std::fopen(options.tapFile.c_str(), "wb");
    if (file == nullptr) {
        std::fprintf(stderr, "Unable to write '%s'.\n", options.tapFile.c_str());
        return 1;
    }
    tarv::CSignalTap signal(options.tapPath.c_str(), options.tapElement, file);
    instance.graph().observer = &signal;
    instance.run(readInput(options.channels), 512);
    instance.graph().observer = nullptr;
    std::fclose(file);
    if (signal.frames() == 0) {
        std::fprintf(stderr, "No signal behind a process '%s'; the printed graph names them.\n",
                     options.tapPath.c_str());
        return 1;
    }
    std::fprintf(stderr, "%lld frames of %d channels at %g Hz\n", static_cast<long long>(signal.frames()),
                 signal.channels(), signal.rate());
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    COptions options;
    if (!parse(argc, argv, options)) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    if (options.isHelp) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    tarv::CError* error = nullptr;
    tarv::CPlainInstance* instance = tarv::CPlainInstance::create(error);
    if (instance == nullptr) {
        tarv::showError(error);
        return 1;
    }
    int result = 0;
    for (const std::string& setting : options.settings) {
        if (!apply(*instance, setting)) {
            std::fprintf(stderr, "No parameter, or no number, in '%s'.\n", setting.c_str());
            result = 2;
        }
    }
    if (result == 0) {
        instance->start(options.rate, options.channels, options.channels);
        if (options.tapPath.empty()) {
            tarv::CGraphPrinter printer(stdout);
            printer.printInstructions();
            printer.print(*instance->mainProcess());
        } else {
            result = tap(*instance, options);
        }
    }
    delete instance;
    return result;
}
