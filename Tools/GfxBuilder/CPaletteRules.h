#pragma once

#include <functional>

#include "PaletteBuilder.h"

namespace tarv {

/// The rules by which a handful of base colours becomes every name, state and frame of a palette.
class CPaletteRules {
public:
    /// Gives the base colours of another palette by its name, for expressions that begin with `@`.
    using CFindPalette = std::function<CDefinitionFailure(const std::string& name, const CBaseColors*& colors)>;

    CPaletteRules(const CTextSource& source, CBaseColors& base, CFindPalette findPalette)
        : source_(source), base_(base), findPalette_(std::move(findPalette)) {}
    /// Adds what the rules give for the base colours; base colours that the rules default are added to these.
    [[nodiscard]] CDefinitionFailure apply(CPaletteSource& palette);

private:
    struct CRule;

    [[nodiscard]] CDefinitionFailure applyBase(const CTextLine& line);
    [[nodiscard]] CDefinitionFailure applyDark(const CTextLine& line);
    [[nodiscard]] CDefinitionFailure applyFrames(const CTextLine& line);
    [[nodiscard]] CDefinitionFailure applyRepeated(const CTextLine& line);
    [[nodiscard]] CDefinitionFailure applyColor(const CTextLine& line);
    [[nodiscard]] CDefinitionFailure parseRule(const CTextLine& line, CRule& rule) const;
    [[nodiscard]] CDefinitionFailure parseStates(const CTextLine& line, CRule& rule) const;
    [[nodiscard]] CDefinitionFailure addColor(const CRule& rule, const std::string& name, CRgb color, CRgb edge);
    [[nodiscard]] CDefinitionFailure evaluate(const CTextLine& line, const std::string& text, CRgb& color) const;
    [[nodiscard]] CDefinitionFailure findBase(const CTextLine& line, const std::string& key, CRgb& color) const;
    [[nodiscard]] CDefinitionFailure applyOperation(const CTextLine& line, const std::string& text, CRgb& color) const;

    const CTextSource& source_;
    CBaseColors& base_;
    CFindPalette findPalette_;
    CPaletteSource* palette_ = nullptr;
    CRgb dark_;  ///< whose hue ramps have in the dark; black changes none
};

}  // namespace tarv
