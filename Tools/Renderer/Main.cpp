// Renders standard input through a VST 2 effect to standard output.

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

#include <cstdio>

#include "CPluginLibrary.h"
#include "CRenderer.h"

namespace {

enum ExitCode : int { kDone = 0, kBadCommand = 1, kBadPlugin = 2, kBadParameter = 3, kBadStream = 4 };

int fail(ExitCode code, const std::string& message) {
    std::fprintf(stderr, "Renderer: %s\n", message.c_str());
    return code;
}

void makeStreamsBinary() {
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
#endif
}

}  // namespace

int main(int argc, char** argv) {
    using namespace tarv;
    using namespace tarv::host;
    CRenderOptions options;
    std::string error;
    if (!parseOptions(argc, argv, options, error)) {
        return fail(kBadCommand, error + " (see --help)");
    }
    if (options.isHelp) {
        std::fputs(renderHelp(), stdout);
        return kDone;
    }
    CPluginLibrary library;
    if (!library.load(options.plugin, error)) {
        return fail(kBadPlugin, error);
    }
    CHostAnswers answers;
    answers.processLevel = options.isRealtime ? vst::kLevelRealtime : vst::kLevelOffline;
    answers.rate = options.rate;
    answers.blockSize = options.block;
    CVstHost host(answers);
    if (!host.open(library.entry())) {
        return fail(kBadPlugin, options.plugin + " gives no effect");
    }
    if (!prepareState(host, options, error)) {
        return fail(kBadParameter, error);
    }
    if (options.isList || options.isPresetList) {
        (options.isList ? &printList : &printPrograms)(host, stdout);
        return kDone;
    }
    if (options.channels > host.effect()->numInputs || options.channels > host.effect()->numOutputs) {
        return fail(kBadCommand, "the plug-in has " + std::to_string(host.effect()->numInputs) + " inputs and " +
                                     std::to_string(host.effect()->numOutputs) + " outputs");
    }
    makeStreamsBinary();
    CRenderer renderer(host, options);
    if (!renderer.resolve(error)) {
        return fail(kBadParameter, error);
    }
    if (options.isSilent) {
        renderer.applySettings();
    } else if (!renderer.renderAll(stdin, stdout, error)) {
        return fail(kBadStream, error);
    }
    if (!saveState(host, options, error)) {
        return fail(kBadStream, error);
    }
    if (options.isSilent) {
        return kDone;
    }
    std::fprintf(stderr, "%lld frames, %.3f s of audio in %.3f s: %.1f times real time\n",
                 static_cast<long long>(renderer.frames()), renderer.seconds(), renderer.elapsed(),
                 renderer.elapsed() > 0.0 ? renderer.seconds() / renderer.elapsed() : 0.0);
    return kDone;
}
