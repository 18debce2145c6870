// Loads a state before a run and saves one behind it.

#include "CRenderer.h"

namespace tarv::host {

namespace {

constexpr size_t kPrefix = 16;

bool readFile(const std::string& path, std::string& bytes, std::string& error) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    error = "cannot read '" + path + "'";
    if (!file) {
        return false;
    }
    char part[4096];
    for (size_t got = 0; (got = std::fread(part, 1, sizeof part, file)) > 0;) {
        bytes.append(part, got);
    }
    const bool isRead = !std::ferror(file);
    std::fclose(file);
    return isRead;
}

bool writeFile(const std::string& path, const std::string& bytes, std::string& error) {
    error = "cannot write '" + path + "'";
    std::FILE* file = bytes.empty() ? nullptr : std::fopen(path.c_str(), "wb");
    if (!file) {
        return false;
    }
    const bool isWritten = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && isWritten;
}

/// Whether the id is found where a block may begin.
bool hasId(const std::string& bytes, const char* id) {
    return bytes.compare(0, 4, id) == 0 || (bytes.size() > kPrefix && bytes.compare(kPrefix, 4, id) == 0);
}

bool loadState(CVstHost& host, const std::string& path, std::string& error) {
    std::string bytes;
    if (!readFile(path, bytes, error)) {
        return false;
    }
    const bool isProgram = hasId(bytes, "aprs");
    if (!isProgram && !hasId(bytes, "abnk")) {
        error = "'" + path + "' is neither a preset nor a bank";
        return false;
    }
    error = "the plug-in does not take '" + path + "': it is damaged, or of another product";
    return host.setChunk(bytes, isProgram);
}

std::string programName(CVstHost& host, int32_t index) {
    return host.text(vst::kEffectGetProgramNameIndexed, index);
}

bool choosePreset(CVstHost& host, const std::string& name, std::string& error) {
    for (int32_t i = 0; i < host.effect()->numPrograms; ++i) {
        if (programName(host, i) == name) {
            host.setProgram(i);
            return true;
        }
    }
    error = "no preset is named '" + name + "'; --list-presets shows the names";
    return false;
}

}  // namespace

bool prepareState(CVstHost& host, const CRenderOptions& options, std::string& error) {
    return (options.load.empty() || loadState(host, options.load, error)) &&
           (options.preset.empty() || choosePreset(host, options.preset, error));
}

bool saveState(CVstHost& host, const CRenderOptions& options, std::string& error) {
    return (options.save.empty() || writeFile(options.save, host.chunk(true), error)) &&
           (options.saveBank.empty() || writeFile(options.saveBank, host.chunk(false), error));
}

void printPrograms(CVstHost& host, std::FILE* output) {
    for (int32_t i = 0; i < host.effect()->numPrograms; ++i) {
        std::fprintf(output, "%3d %c %s\n", i, i == host.program() ? '*' : ' ', programName(host, i).c_str());
    }
}

}  // namespace tarv::host
