#pragma once

#include <map>
#include <string>

#include "CDefinitionNode.h"

namespace tarv {

/// Resolves templates: an object whose tag names a template gets the template's class, the template's attributes before
/// its own (a later one of the same name wins when the tree is loaded), and the template's children before its own.
/// A template is found where the program would find it: among the children of the parent, then further out, then in the
/// shared tree. The order of definition and use does not matter. Template definitions stay in the tree.
class CTemplateExpander {
public:
    /// `shared` is an expanded tree whose top-level templates are known everywhere, or null. It must outlive this.
    explicit CTemplateExpander(CDefinitionNode* shared = nullptr);
    [[nodiscard]] CDefinitionFailure expand(CDefinitionNode& root);

private:
    struct CScope {
        const CScope* outer = nullptr;
        std::map<std::string, CDefinitionNode*> templates;
    };
    struct CFound {
        CDefinitionNode* definition = nullptr;
        const CScope* scope = nullptr;
    };

    static CDefinitionFailure enterTemplates(CDefinitionNode& node, CScope& scope);
    static CFound find(const std::string& tag, const CScope* scope);
    CDefinitionFailure expandChildren(CDefinitionNode& node, const CScope* outer);
    CDefinitionFailure expandObject(CDefinitionNode& node, const CScope& scope, const CDefinitionNode* bodyOf);
    CDefinitionFailure expandTemplate(CDefinitionNode& definition, const CScope& scope);

    CScope sharedScope_;
};

}  // namespace tarv
