// Prints what a compressed block holds.

#include <cstdio>

#include "BlockText.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs(
            "usage: BlockDumper FILE\n\nPrints a preset, a bank, a host's chunk of either, a preset list, a stored "
            "setting or a\ncompiled tree as text.\n",
            stderr);
        return 2;
    }
    std::FILE* file = std::fopen(argv[1], "rb");
    if (!file) {
        std::fprintf(stderr, "BlockDumper: cannot read '%s'\n", argv[1]);
        return 1;
    }
    tarv::CByteBuffer bytes;
    tarv::CBufferWriter writer(bytes);
    char part[4096];
    for (size_t got = 0; (got = std::fread(part, 1, sizeof part, file)) > 0;) {
        tarv::logError(writer.write(part, static_cast<int64_t>(got)));
    }
    std::fclose(file);
    std::string text;
    if (tarv::CError* error = tarv::blockText(bytes, text)) {
        std::fprintf(stderr, "BlockDumper: %s: %s\n", argv[1], error->lines()[0]->toUtf8().c_str());
        delete error;
        return 1;
    }
    std::fwrite(text.data(), 1, text.size(), stdout);
    return 0;
}
