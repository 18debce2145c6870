#include "PaletteBuilder.h"

#include <filesystem>

#include "CPaletteRules.h"

namespace tarv {

CDefinitionFailure readBaseColors(const std::string& path, CBaseColors& colors) {
    CTextSource source;
    if (auto failure = source.load(path)) {
        return failure;
    }
    CKeySource keys;
    if (auto failure = keys.take(source, {})) {
        return failure;
    }
    for (const CTextLine& line : keys.lines()) {
        CRgb color;
        if (line.words.size() != 3 || !parseColor(line.words[2], color)) {
            return CDefinitionError{line.place, "colour '" + line.words[0] + "' isn't of the form RRGGBB"};
        }
        colors[line.words[0]] = color;
    }
    return std::nullopt;
}

CDefinitionFailure computePalette(const std::string& path, CPaletteSource& palette) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    CBaseColors base;
    if (auto failure = readBaseColors(path, base)) {
        return failure;
    }
    CTextSource source;
    if (auto failure = source.load((folder / "rules.txt").string())) {
        return failure;
    }
    std::map<std::string, CBaseColors> others;
    const auto findPalette = [&](const std::string& name, const CBaseColors*& colors) -> CDefinitionFailure {
        const auto [found, isNew] = others.emplace(name, CBaseColors());
        colors = &found->second;
        return isNew ? readBaseColors((folder / (name + ".palette")).string(), found->second) : std::nullopt;
    };
    return CPaletteRules(source, base, findPalette).apply(palette);
}

}  // namespace tarv
