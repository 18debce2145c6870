// Finds the required objects of an instance by their paths.

#include "Audio/Instance/CAudioInstanceObjects.h"

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Graph/CAudioProcessBase.h"
#include "Audio/Instance/CAudioCCTable.h"
#include "Audio/Modules/CQPLEXContextObject.h"
#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Parameters/CAudioExtParam.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Audio/Visuals/CAudioVizCollector.h"

namespace tarv {

namespace {

template <class T>
CError* findRequired(const CObject& root, const char* path, const char* message, T*& found) {
    found = root.findObjectOf<std::remove_const_t<T>>(path);
    if (found == nullptr) {
        TARV_FAIL(message);
    }
    return nullptr;
}

}  // namespace

CError* CAudioInstanceObjects::find(const CObject& root) {
    TARV_TRY(findRequired(root, "plugin.qplex-context",
                          "@tarvstr_CAudioWrapper_init_NoContext No valid QPLEX context object with the name "
                          "'plugin.qplex-context' defined.",
                          context));
    TARV_TRY(findRequired(
        root, "plugin.audio-env",
        "@tarvstr_CAudioWrapper_init_NoEnv No valid env object with the name 'plugin.audio-env' defined.", env));
    TARV_TRY(findRequired(root, "plugin.param-collector",
                          "@tarvstr_CAudioWrapper_init_NoParamCollector No valid parameter collector object with the "
                          "name 'plugin.param-collector' defined.",
                          paramCollector));
    TARV_TRY(findRequired(root, "plugin.viz-collector",
                          "@tarvstr_CAudioWrapper_init_NoVizCollector No valid visual object collector object with the "
                          "name 'plugin.viz-collector' defined.",
                          vizCollector));
    TARV_TRY(findRequired(root, "plugin.interface-base",
                          "@tarvstr_CAudioWrapper_init_NoInterfaceBase No valid interface base collector object with "
                          "the name 'plugin.interface-base' defined.",
                          interfaceBase));
    TARV_TRY(findRequired(root, "plugin.ext-param-list",
                          "@tarvstr_CAudioWrapper_init_NoExtParamList No valid CAudioExtParamList* object with the "
                          "name 'plugin.ext-param-list' defined.",
                          extParamList));
    TARV_TRY(findRequired(root, "plugin.cctable",
                          "@tarvstr_CAudioWrapper_init_NoCCTable No valid CAudioCCTable* object with the name "
                          "'plugin.cctable' defined.",
                          ccTable));
    TARV_TRY(findRequired(root, "plugin.param-registry",
                          "@tarvstr_CAudioWrapper_init_NoParamRegistry No valid parameter registry object with the "
                          "name 'plugin.param-registry' defined.",
                          paramRegistry));
    TARV_TRY(findRequired(root, "shared::audio.modMain",
                          "@tarvstr_CAudioWrapper_init_NoMainDef No main process definition object with the name "
                          "'shared::audio.modMain' found.",
                          mainDef));
    TARV_TRY(findRequired(root, "shared::audio.modOutput",
                          "@tarvstr_CAudioWrapper_init_NoOutputDef No output process definition object with the name "
                          "'shared::audio.modOutput' found.",
                          outputDef));
    return nullptr;
}

}  // namespace tarv
