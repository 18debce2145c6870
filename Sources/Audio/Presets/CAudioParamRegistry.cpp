#include "Audio/Presets/CAudioParamRegistry.h"

#include "Audio/Presets/CAudioRegistryAction.h"

namespace tarv {

CAudioParamRegistry::CAudioParamRegistry() = default;

CAudioParamRegistry::~CAudioParamRegistry() {
    if (nameParam_ && isLive(nameParam_)) {
        nameParam_->removeListener(*this);
    }
    if (collector_ && isLive(static_cast<CObject*>(collector_))) {
        collector_->removeRegistry(*this);
    }
    if (isMaster_ && undo_ && isLive(static_cast<CObject*>(undo_))) {
        undo_->setPrograms(nullptr);
    }
}

CError* CAudioParamRegistry::init() {
    TARV_TRY(CObject::init());
    hierarchy_ = getAttrString("hierarchy");
    if (hierarchy_.isEmpty() || hierarchy_.at(hierarchy_.length() - 1) != '.') {
        hierarchy_.appendChar('.');
    }
    isMaster_ = getAttrBool("is-master");
    isEnumerated_ = getAttrBool("is-enumerated");
    id_ = getAttrString("id");
    presetNaming_ = getAttrString("preset-naming");
    presetNameParam_ = getAttrString("preset-name-param");
    groupNamesParam_ = getAttrString("group-names-param");
    bankFile_ = getAttrString("file");
    undo_ = findObjectOf<CAudioParamUndo>(getAttrString("param-undo"));
    collector_ = findObjectOf<CAudioParamCollector>(getAttrString("param-collector"));
    if (!collector_) {
        TARV_FAIL(
            "@tarvstr_CAudioParamRegistry_init_NoParamCollector No parameter collector with the name '%1' defined.",
            getAttrString("param-collector"));
    }
    if (!presetNameParam_.isEmpty()) {
        nameParam_ = collector_->getParam(presetNameParam_);
        nameParam_->addListener(*this);
    }
    if (isMaster_) {
        initBanks();
        if (undo_) {
            undo_->setPrograms(this);
        }
    }
    collector_->addRegistry(*this);
    return nullptr;
}

bool CAudioParamRegistry::offerParam(const CString& name, CAudioParam& param) {
    if (!name.startsWith(hierarchy_)) {
        return false;
    }
    takeParam(name, param);
    return true;
}

void CAudioParamRegistry::takeParam(const CString& name, CAudioParam& param) {
    if (isMaster_ && &param == nameParam_) {
        // From here on the name shown is that of the current slot. No thread knows the bank yet.
        CAssignments assignments;
        addNameShown(slot().displayName(), assignments);
        for (const CAssignment& assignment : assignments) {
            collector_->assign(assignment);
        }
    }
    const auto* added =
        new CEntry(name.startsWith(hierarchy_) ? name.substring(hierarchy_.length()) : name, param, formerKeyOf(param));
    CLockScope scope(paramLock_);
    int32_t place = params_.count();
    while (place > 0 && added->keyBytes < params_[place - 1]->keyBytes) {
        --place;
    }
    params_.insert(place, added);
}

int32_t CAudioParamRegistry::paramCount() const {
    CLockScope scope(paramLock_);
    return params_.count();
}

CAudioParamRegistry::CEntry CAudioParamRegistry::param(int32_t index) const {
    CLockScope scope(paramLock_);
    return *params_[index];
}

CArray<const CAudioParamRegistry::CEntry*, 64> CAudioParamRegistry::entries() const {
    CLockScope scope(paramLock_);
    CArray<const CEntry*, 64> all;
    all.reserve(params_.count());
    for (const CEntry* entry : params_) {
        all.append(entry);
    }
    return all;
}

CString CAudioParamRegistry::groupName(int32_t group) const {
    const CAudioParam* names = groupNamesParam_.isEmpty() ? nullptr : collector_->findParam(groupNamesParam_);
    const CString name = names ? names->text(0, group) : CString();
    return name.isEmpty() ? CString::fromInt(group + 1) : name;
}

void CAudioParamRegistry::onParamChanged(CAudioParam& param, int32_t, int32_t, int32_t) {
    if (!isMaster_) {
        return;
    }
    bool isRenamed = false;
    {
        CLockScope scope(bankLock_);
        isRenamed = renameSlot(session_.selectedIndex(), param.text(0, 0)) || isNamePending_;
        isNamePending_ = false;
    }
    if (isRenamed) {
        notifyBridges(kProgramUpdate);
    }
}

CAudioParamRegistryNameBridge::CAudioParamRegistryNameBridge(CAudioParamRegistry& registry, void (*changed)(void*),
                                                             void* user)
    : changed_(changed), user_(user) {
    connect(registry, CAudioParamRegistry::kProgramUpdate);
}

CAudioParamRegistry* CAudioParamRegistryNameBridge::registry() const {
    return static_cast<CAudioParamRegistry*>(base());
}

CString CAudioParamRegistryNameBridge::read() const {
    const CAudioParamRegistry* found = registry();
    return found ? found->programName(found->currentProgram()) : CString();
}

void CAudioParamRegistryNameBridge::write(const CString& displayName) {
    if (CAudioParamRegistry* found = registry()) {
        found->renameProgram(found->currentProgram(), displayName);
    }
}

void CAudioParamRegistryNameBridge::notify(CCheckedObject*) {
    changed_(user_);
}

}  // namespace tarv
