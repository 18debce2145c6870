// What is asked of the registries.

#include "Audio/Client/CAudioInterfaceClient.h"

namespace tarv {

CError* CAudioInterfaceClient::setProgram(const CString& registry, int32_t index) {
    TARV_TRY(send(kSetProgram, registry, index));
    return nullptr;
}

CError* CAudioInterfaceClient::renameProgram(const CString& registry, int32_t index, const CString& displayName) {
    TARV_TRY(send(kRenameProgram, registry, index, displayName));
    return nullptr;
}

CError* CAudioInterfaceClient::addProgram(const CString& registry, int32_t index, const CString& displayName) {
    TARV_TRY(send(kAddProgram, registry, index, displayName));
    return nullptr;
}

CError* CAudioInterfaceClient::deleteProgram(const CString& registry, int32_t index) {
    TARV_TRY(send(kDeleteProgram, registry, index));
    return nullptr;
}

CError* CAudioInterfaceClient::replaceProgram(const CString& registry, int32_t index) {
    TARV_TRY(send(kReplaceProgram, registry, index));
    return nullptr;
}

CError* CAudioInterfaceClient::setDefaultPreset(const CString& registry, const CByteBuffer& packed) {
    TARV_TRY(send(kSetDefaultPreset, registry, packed));
    return nullptr;
}

CError* CAudioInterfaceClient::clearDefaultPreset() {
    TARV_TRY(send(kClearDefaultPreset));
    return nullptr;
}

CError* CAudioInterfaceClient::requestDefaultPreset() {
    TARV_TRY(send(kAskDefaultPreset, newId()));
    return nullptr;
}

CError* CAudioInterfaceClient::activateRomPreset(const CString& registry, int32_t index) {
    TARV_TRY(send(kActivateRomPreset, registry, index));
    return nullptr;
}

CError* CAudioInterfaceClient::activateData(const CString& registry, const CByteBuffer& packed, int32_t group) {
    TARV_TRY(send(kActivateData, registry, group, packed));
    return nullptr;
}

CError* CAudioInterfaceClient::acquirePreset(const CString& registry, CAudioInterfaceRegistryListener& listener,
                                             uint32_t& request, bool fromRom, int32_t index, int32_t group) {
    request = newId();
    TARV_TRY(send(kAcquirePreset, registry, request, fromRom, index, group));
    attach(listener);
    requests_[request] = &listener;
    return nullptr;
}

CError* CAudioInterfaceClient::acquireBank(const CString& registry, CAudioInterfaceRegistryListener& listener,
                                           uint32_t& request, bool fromRom) {
    request = newId();
    TARV_TRY(send(kAcquireBank, registry, request, fromRom));
    attach(listener);
    requests_[request] = &listener;
    return nullptr;
}

CError* CAudioInterfaceClient::swapAB(const CString& registry) {
    TARV_TRY(send(kSwapAB, registry));
    return nullptr;
}

CError* CAudioInterfaceClient::copyToAlternate(const CString& registry) {
    TARV_TRY(send(kCopyToAlternate, registry));
    return nullptr;
}

CError* CAudioInterfaceClient::resetState(const CString& registry) {
    TARV_TRY(send(kResetState, registry));
    return nullptr;
}

CError* CAudioInterfaceClient::masterReset(const CString& registry) {
    TARV_TRY(send(kMasterReset, registry));
    return nullptr;
}

}  // namespace tarv
