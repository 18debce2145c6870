#pragma once

#include "Core/CObject.h"
#include "UI/Controls/Presets/CDynamicListPresetsListBridge.h"

namespace tarv {

/// A menu of presets (`ui:dynamic-list-presets`): the text source of a popup list, and its result target, which
/// activates the preset that is chosen. Attributes:
///   interface-client   path of the CAudioInterfaceClient
///   param-registry     path of the registry on the engine's side
///   store-name         name of the store whose presets follow the fixed banks; empty for none
///   is-global-data     the store is one of presets without banks, for all the maker's plug-ins
///   is-show-banks      the first list has banks, "Session Bank" and "Factory ROM" first, and their presets stand in
///                      lists below them; otherwise it has the presets of the first bank
///   preset-name        written: the current program's name, plain; empty for a registry without programs
///   hint-target, hint-text   path of a view whose hint gets the current name and this text behind it
/// A bank or preset that has moved since the list was made is found by its name; one that is gone is ignored. Thread:
/// that of the editor.
class CDynamicListPresets : public CObject, public CDynamicList, public CAudioInterfaceRegistryListener {
public:
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* generateSubList(const CString& parentId, CDynamicListRows& rows) override;
    void onRegistryChanged(const CInterfaceRegistryState& state) override;

    const CPresetCatalog& catalog() const { return catalog_; }

private:
    [[nodiscard]] CError* chosen(CAttributeMap& params);
    [[nodiscard]] CError* showName();

    CPresetCatalog catalog_;
    CDynamicListPresetsListBridge bridge_{catalog_};
    bool isNameShown_ = false;
};

}  // namespace tarv
