// Opens the editor of an effect in a window, and says what was changed in it.

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "CEditorWindow.h"
#include "CLoopPlayer.h"
#include "CPluginLibrary.h"
#include "CRenderer.h"
#include "ChangedSettings.h"

namespace {

using namespace tarv::host;

enum ExitCode : int { kDone = 0, kBadCommand = 1, kBadPlugin = 2, kBadParameter = 3, kBadStream = 4 };

int fail(ExitCode code, const std::string& message) {
    std::fprintf(stderr, "EditorHost: %s\n", message.c_str());
    return code;
}

/// Takes `--close-after SECONDS` out of the arguments; 0 without it.
double takeCloseAfter(int& count, char** arguments) {
    for (int i = 1; i + 1 < count; ++i) {
        if (std::strcmp(arguments[i], "--close-after") == 0) {
            const double seconds = std::atof(arguments[i + 1]);
            for (int k = i + 2; k < count; ++k) {
                arguments[k - 2] = arguments[k];
            }
            count -= 2;
            return seconds;
        }
    }
    return 0.0;
}

std::vector<double> readSound(int32_t channels) {
    _setmode(_fileno(stdin), _O_BINARY);
    std::vector<double> sound;
    double part[4096];
    for (size_t got = 0; (got = std::fread(part, sizeof(double), 4096, stdin)) > 0;) {
        sound.insert(sound.end(), part, part + got);
    }
    sound.resize(sound.size() / static_cast<size_t>(channels) * static_cast<size_t>(channels));
    return sound;
}

/// The effect as the options set it, before anybody touches it.
bool makeReady(CVstHost& host, const CPluginLibrary& library, const CRenderOptions& options, std::string& error) {
    error = options.plugin + " gives no effect";
    if (!host.open(library.entry()) || !prepareState(host, options, error)) {
        return false;
    }
    CRenderer renderer(host, options);
    if (!renderer.resolve(error)) {
        return false;
    }
    renderer.applySettings();
    return true;
}

/// Options that make the state of `host` again from what `options` say; by a file where no parameters do.
bool describe(CVstHost& host, const std::vector<float>& before, const CPluginLibrary& library,
              const CRenderOptions& options, std::string& line, std::string& error) {
    line = changedSettings(host, before);
    CVstHost second(host.answers);
    if (!makeReady(second, library, options, error)) {
        return false;
    }
    // A parameter that is set is stored, too: only those that were touched.
    for (int32_t i = 0; i < host.effect()->numParams; ++i) {
        if (host.parameter(i) != before[static_cast<size_t>(i)]) {
            second.setParameter(i, host.parameter(i));
        }
    }
    if (second.chunk(true) == host.chunk(true)) {
        return true;
    }
    if (options.save.empty()) {
        error = "the parameters do not tell all that was changed, and there is no --save for a state";
        return false;
    }
    line = "--load " + options.save;
    return saveState(host, options, error);
}

}  // namespace

int main(int argc, char** argv) {
    const double closeAfter = takeCloseAfter(argc, argv);
    CRenderOptions options;
    std::string error;
    if (!parseOptions(argc, argv, options, error)) {
        return fail(kBadCommand, error);
    }
    CPluginLibrary library;
    if (!library.load(options.plugin, error)) {
        return fail(kBadPlugin, error);
    }
    CHostAnswers answers;
    answers.product = "EditorHost";
    answers.processLevel = tarv::vst::kLevelRealtime;
    answers.rate = options.rate;
    answers.blockSize = CLoopPlayer::kBlock;
    CVstHost host(answers);
    if (!makeReady(host, library, options, error)) {
        return fail(kBadParameter, error);
    }
    if (!(host.effect()->flags & tarv::vst::kFlagHasEditor)) {
        return fail(kBadPlugin, options.plugin + " has no editor");
    }
    if (options.channels > host.effect()->numInputs || options.channels > host.effect()->numOutputs) {
        return fail(kBadCommand, "the plug-in has fewer channels");
    }
    const std::vector<double> sound = readSound(options.channels);
    const std::vector<float> before = settingsOf(host);
    {
        CEditorWindow window(host, host.text(tarv::vst::kEffectGetEffectName));
        if (!window.open()) {
            return fail(kBadPlugin, "the editor does not open");
        }
        CLoopPlayer player(host, sound, options.channels, options.rate);
        window.setNote(sound.empty() ? "nothing plays" : "a recording plays in a loop");
        window.run(closeAfter);
        std::fprintf(stderr, "%.1f s played%s\n", static_cast<double>(player.frames()) / options.rate,
                     player.isHeard() ? "" : " without a sound device");
    }
    std::string line;
    if (!describe(host, before, library, options, line, error)) {
        return fail(kBadStream, error);
    }
    std::printf("%s\n", line.c_str());
    return kDone;
}
