#include "UI/Controls/Presets/CDynamicListPresets.h"

#include "Core/CObjectWatch.h"

namespace tarv {

CError* CDynamicListPresets::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CDynamicListPresets::chosen>("popup-result");
    return nullptr;
}

CError* CDynamicListPresets::init() {
    TARV_TRY(CObject::init());
    auto* client = findObjectOf<CAudioInterfaceClient>(getAttrString("interface-client"));
    if (!client) {
        TARV_FAIL("@tarvstr_CDynamicListPresets_init_NoInterfaceClient No interfacing object '%1' found.",
                  getAttrString("interface-client"));
    }
    const CString& registry = getAttrString("param-registry");
    TARV_TRY(catalog_.init(*client, registry, getAttrString("store-name"), getAttrBool("is-global-data")));
    TARV_TRY(client->addRegistryListener(registry, *this));
    return nullptr;
}

CError* CDynamicListPresets::generateSubList(const CString& parentId, CDynamicListRows& rows) {
    if (parentId.isEmpty()) {
        if (catalog_.store()) {
            catalog_.store()->refresh();  // what other programs have written since
        }
        bridge_.addFirstRows(getAttrBool("is-show-banks"), rows);
    } else if (!bridge_.addRowsBelow(parentId, rows)) {
        TARV_FAIL("@tarvstr_CDynamicListPresets_generateSubList_InvalidListId Invalid list identifier %1.", parentId);
    }
    return nullptr;
}

CError* CDynamicListPresets::chosen(CAttributeMap& params) {
    CPresetPlace place;
    int32_t bank = -1;
    int32_t preset = -1;
    if (!CPresetPlace::fromId(params["id"].asString(), place) || place.isBank() ||
        !catalog_.find(place, bank, preset)) {
        return nullptr;
    }
    return catalog_.activate(bank, preset);
}

void CDynamicListPresets::onRegistryChanged(const CInterfaceRegistryState& state) {
    catalog_.setState(state);
    TARV_CONSUME(showName());
}

CError* CDynamicListPresets::showName() {
    const CString name = catalog_.presetName(0, catalog_.currentPreset(0));
    if (isNameShown_ && getAttrString("preset-name") == name) {
        return nullptr;
    }
    isNameShown_ = true;
    const CObjectWatch watch(*this);
    CError* error = setAttributePlain("preset-name", name);
    if (error || !watch.isAlive()) {
        return error;
    }
    const CString& path = getAttrString("hint-target");
    CObject* target = path.isEmpty() ? nullptr : findObject(path);
    return target
               ? target->setAttributePlain("hint", CPresetCatalog::shownName(name) + ". " + getAttrString("hint-text"))
               : nullptr;
}

}  // namespace tarv
