#pragma once

#include <string>
#include <vector>

#include "ProductTree.h"
#include "UI/Views/CView.h"

namespace tarv {

/// A view as the tables list it.
struct CViewTreeRow {
    std::string path;   ///< from the root of the table; empty for that root
    std::string tag;    ///< of its class
    std::string place;  ///< `placement`, `width` and `height`, "-" for one that is not given
    std::string hint;
    std::vector<CAttributeRow> attributes;  ///< what it has besides; others are left out
};
using CViewTreeTable = std::vector<CViewTreeRow>;

/// What a control is bound by: a list, a range, a controller, a group of points and their parameters.
struct CBoundRow {
    std::string path;
    std::string tag;
    std::vector<CAttributeRow> attributes;  ///< what it has, "-" for what it has not; others are left out
};
using CBoundTable = std::vector<CBoundRow>;

/// Trees of the editor and their views, as the definitions make them. What a control makes for itself is left out: of
/// what stands below one, only buttons of the definitions count.
class CEditorViews : public CEditorProductTree {
protected:
    /// A text of a row with what stands for `$name` in it; the longest names first.
    using CReplacements = std::vector<std::pair<std::string, std::string>>;

    /// The two views of the equaliser: what `$path`, their selectors, their first groups and their number stand for.
    struct CEqualizer {
        const char* path;
        CReplacements replacements;
    };
    static const CEqualizer kEqualizers[2];

    /// The views below a root are those of the table, in its order, and no other.
    static void expectViews(const CView& root, const CViewTreeTable& rows, const CReplacements& replacements = {});
    /// A window of a template: its frame, the views of a table, which has its root first, and the bindings.
    void expectWindow(const char* templateName, const CViewTreeTable& rows, bool hasHints, const CBoundTable& bindings);
    /// The bindings below an object are those of the table, and no other.
    static void expectBindings(const CObject& root, const CBoundTable& rows, const CReplacements& replacements = {});
    /// An object of the class that the key stands for.
    static void expectClass(const CObject& object, const std::string& key);
    static std::string replaced(std::string text, const CReplacements& replacements);

private:
    static void collect(const CView& view, const std::string& path, bool isInControl, std::vector<std::string>& paths);
};

}  // namespace tarv
