#include "UI/Controls/Plugin/CPluginControlDefPresetBridge.h"

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Core/CObjectWatch.h"

namespace tarv {

CError* CPluginControlDefPresetBridge::show(const CAudioInterfaceClient& client) {
    const CObjectWatch watch(owner_);
    const bool isThere = client.hasDefaultPreset();
    CError* error = owner_.setAttributePlain("default-preset-name", isThere ? client.defaultPresetName() : CString());
    if (error || !watch.isAlive()) {
        return error;
    }
    return owner_.setAttribute("has-default-preset", CAttributeValue::fromBool(isThere));
}

}  // namespace tarv
