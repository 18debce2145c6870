// Command line of the compiler of definitions.

#include <cstdio>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "DefinitionCompiler.h"

namespace {

constexpr char kUsage[] =
    "usage: DefinitionCompiler SOURCE.xml OUTPUT [--templates SHARED.xml] [--set PATH.ATTRIBUTE=VALUE] [--depfile "
    "FILE]\n"
    "       DefinitionCompiler --dump COMPILED\n"
    "\n"
    "Compiles XML definitions to a compressed object tree. A source in the raw form (as --dump prints it) is taken as "
    "it\n"
    "stands. A bad source fails with file, line and column, and nothing is written.\n"
    "  --templates  a source whose top-level templates may be used\n"
    "  --set        gives an object another value of an attribute; may be repeated\n"
    "  --depfile    writes the files that the output depends on, in the form of make\n";

struct COptions {
    std::string source;
    std::string output;
    std::string templates;
    std::string depfile;
    std::vector<std::string> settings;
    bool dump = false;
};

bool parseOptions(int argc, char** argv, COptions& options) {
    std::string* positions[] = {&options.source, &options.output};
    int given = 0;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--dump") {
            options.dump = true;
        } else if (argument == "--templates" && i + 1 < argc) {
            options.templates = argv[++i];
        } else if (argument == "--set" && i + 1 < argc) {
            options.settings.emplace_back(argv[++i]);
        } else if (argument == "--depfile" && i + 1 < argc) {
            options.depfile = argv[++i];
        } else if (argument.starts_with("--") || given == 2) {
            return false;
        } else {
            *positions[given++] = argument;
        }
    }
    return given == (options.dump ? 1 : 2);
}

/// A failure removes the output: it must not be the source.
bool isSameFile(const std::string& a, const std::string& b) {
    return std::filesystem::weakly_canonical(a) == std::filesystem::weakly_canonical(b);
}

std::string depfileText(const std::string& output, const std::vector<std::string>& files) {
    std::string text = output + ":";
    for (const std::string& file : std::set<std::string>(files.begin(), files.end())) {
        text += " " + file;
    }
    return text + "\n";
}

tarv::CDefinitionFailure compile(const COptions& options) {
    std::string bytes;
    std::vector<std::string> files;
    if (auto failure = tarv::compileDefinitions(options.source, options.templates, bytes, files)) {
        return failure;
    }
    for (const std::string& setting : options.settings) {
        if (auto failure = tarv::setInTree(bytes, setting)) {
            return failure;
        }
    }
    std::string block;
    if (auto failure = tarv::packBlock(bytes, "cxml", block)) {
        return failure;
    }
    if (!options.depfile.empty()) {
        if (auto failure = tarv::writeFile(options.depfile, depfileText(options.output, files))) {
            return failure;
        }
    }
    return tarv::writeFile(options.output, block);
}

tarv::CDefinitionFailure dump(const COptions& options) {
    std::string raw;
    auto failure = tarv::dumpDefinitions(options.source, raw);
    std::fwrite(raw.data(), 1, raw.size(), stdout);
    return failure;
}

}  // namespace

int main(int argc, char** argv) {
    COptions options;
    if (!parseOptions(argc, argv, options) || (!options.dump && isSameFile(options.source, options.output))) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    const auto failure = options.dump ? dump(options) : compile(options);
    if (failure) {
        std::fprintf(stderr, "%s\n", failure->message().c_str());
        // A stale output must not pass for the result of this source.
        if (!options.dump) {
            std::remove(options.output.c_str());
        }
        return 1;
    }
    return 0;
}
