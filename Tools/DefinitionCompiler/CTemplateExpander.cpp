#include "CTemplateExpander.h"

#include <iterator>

namespace tarv {

CTemplateExpander::CTemplateExpander(CDefinitionNode* shared) {
    if (shared) {
        for (CDefinitionNode& child : shared->children) {
            if (child.isTemplate()) {
                sharedScope_.templates[child.name] = &child;
            }
        }
    }
}

CDefinitionFailure CTemplateExpander::expand(CDefinitionNode& root) {
    return expandChildren(root, &sharedScope_);
}

CDefinitionFailure CTemplateExpander::enterTemplates(CDefinitionNode& node, CScope& scope) {
    for (CDefinitionNode& child : node.children) {
        if (!child.isTemplate()) {
            continue;
        }
        const auto [place, isNew] = scope.templates.try_emplace(child.name, &child);
        if (!isNew) {
            const CSourcePlace& first = place->second->place;
            return CDefinitionError{child.place, "the template '" + child.name + "' is defined already (" + first.file +
                                                     ":" + std::to_string(first.line) + ")"};
        }
    }
    return std::nullopt;
}

CTemplateExpander::CFound CTemplateExpander::find(const std::string& tag, const CScope* scope) {
    for (; scope; scope = scope->outer) {
        const auto found = scope->templates.find(tag);
        if (found != scope->templates.end()) {
            return {found->second, scope};
        }
    }
    return {};
}

CDefinitionFailure CTemplateExpander::expandChildren(CDefinitionNode& node, const CScope* outer) {
    CScope scope{outer, {}};
    if (auto failure = enterTemplates(node, scope)) {
        return failure;
    }
    for (CDefinitionNode& child : node.children) {
        if (child.isExpanded) {
            continue;
        }
        if (auto failure = child.isTemplate() ? expandTemplate(child, scope) : expandObject(child, scope, nullptr)) {
            return failure;
        }
    }
    return std::nullopt;
}

CDefinitionFailure CTemplateExpander::expandObject(CDefinitionNode& node, const CScope& scope,
                                                   const CDefinitionNode* bodyOf) {
    CFound base = find(node.tag, &scope);
    // A template may have the name of the class it is made of; its body then means the class (or an outer template).
    if (base.definition && base.definition == bodyOf) {
        base = find(node.tag, base.scope->outer);
    }
    if (base.definition) {
        if (!base.definition->isExpanded) {
            if (auto failure = expandTemplate(*base.definition, *base.scope)) {
                return failure;
            }
        }
        const CDefinitionNode& body = base.definition->children[0];
        node.tag = base.definition->realTag;
        node.attributes.insert(node.attributes.begin(), body.attributes.begin(), body.attributes.end());
        node.children.insert(node.children.begin(), body.children.begin(), body.children.end());
    }
    node.isExpanded = true;
    return expandChildren(node, &scope);
}

CDefinitionFailure CTemplateExpander::expandTemplate(CDefinitionNode& definition, const CScope& scope) {
    CDefinitionNode& body = definition.children[0];
    // The real tag is entered last: a body that is marked while it is still missing is being expanded further up.
    if (body.isExpanded) {
        return CDefinitionError{definition.place, "the template '" + definition.name + "' contains itself"};
    }
    body.isExpanded = true;
    if (auto failure = expandObject(body, scope, &definition)) {
        return failure;
    }
    definition.realTag = body.tag;
    definition.isExpanded = true;
    return std::nullopt;
}

}  // namespace tarv
