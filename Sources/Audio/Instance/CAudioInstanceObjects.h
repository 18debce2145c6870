#pragma once

#include "Core/CObject.h"

namespace tarv {

class CAudioCCTable;
class CAudioEnv;
class CAudioExtParamList;
class CAudioInterfaceBase;
class CAudioParamCollector;
class CAudioParamRegistry;
class CAudioProcessDefBase;
class CAudioVizCollector;
class CQPLEXContextObject;

/// The objects that the core of an instance requires: those of the instance's `plugin` tree, which the instance owns,
/// and the definitions of its processes in the shared tree. All null until found.
struct CAudioInstanceObjects {
    /// Finds every object from the instance's root, in the order below. Fails with the path of the first that is
    /// missing or of another class; those before it are found. [main thread, new]
    [[nodiscard]] CError* find(const CObject& root);

    CQPLEXContextObject* context = nullptr;
    CAudioEnv* env = nullptr;
    CAudioParamCollector* paramCollector = nullptr;
    CAudioVizCollector* vizCollector = nullptr;
    CAudioInterfaceBase* interfaceBase = nullptr;
    CAudioExtParamList* extParamList = nullptr;
    CAudioCCTable* ccTable = nullptr;  ///< required, and not used: nothing sends controllers
    CAudioParamRegistry* paramRegistry = nullptr;
    const CAudioProcessDefBase* mainDef = nullptr;
    const CAudioProcessDefBase* outputDef = nullptr;
};

}  // namespace tarv
