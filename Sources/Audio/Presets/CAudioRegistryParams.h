#pragma once

#include <string>

#include "Audio/Parameters/CAudioParamCollector.h"

namespace tarv {

/// One parameter of a registry and the key under which presets hold it.
struct CAudioRegistryParam : public CHeapObject {
    CString key;                      ///< the full name without the hierarchy
    std::string keyBytes;             ///< as presets hold it
    const char* formerKey = nullptr;  ///< under which older presets hold it, or null
    CAudioParam* param = nullptr;

    /// Whether presets hold the parameter: a storable one, and one that is persistent only if `withPersistent`.
    static bool isStored(const CAudioParam& param, bool withPersistent);
};

/// The parameters of a registry, by ascending key. Parameters are added and never removed. One lock; any thread but the
/// audio thread.
class CAudioRegistryParams {
public:
    using CEntries = CArray<const CAudioRegistryParam*, 64>;

    /// `hierarchy` ends with ".". `withFormerKeys`: parameters that were stored under another key have that one, too.
    /// Once, before all else; the collector outlives the list's use.
    void init(CAudioParamCollector& collector, const CString& hierarchy, bool withFormerKeys);
    const CString& hierarchy() const { return hierarchy_; }

    /// Whether a full name lies under the hierarchy.
    bool covers(const CString& name) const { return name.startsWith(hierarchy_); }
    void add(const CString& name, CAudioParam& param);
    int32_t count() const;
    /// Entry of an index in 0..count-1.
    const CAudioRegistryParam& entry(int32_t index) const;
    /// All entries. They stay valid as long as the list.
    CEntries entries() const;
    /// The collector's parameter under the hierarchy with that key, also one of another registry; null if there is
    /// none.
    CAudioParam* findAny(const CString& key) const;

private:
    CAudioParamCollector* collector_ = nullptr;
    CString hierarchy_;
    bool withFormerKeys_ = false;
    mutable CLock lock_;
    COwnedArray<const CAudioRegistryParam> entries_;
};

}  // namespace tarv
