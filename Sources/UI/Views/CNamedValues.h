#pragma once

#include <map>
#include <utility>
#include <vector>

#include "Core/CHeap.h"
#include "Core/CString.h"

namespace tarv {

/// Values by name, in the order of the names. What is erased leaves its room for the next name, so that states that
/// come and go take memory once. One thread.
template <class T>
class CNamedValues {
    using CMap = std::map<CString, T, std::less<CString>, CHeapAllocator<std::pair<const CString, T>>>;
    using CNode = typename CMap::node_type;

public:
    auto begin() { return map_.begin(); }
    auto end() { return map_.end(); }
    auto begin() const { return map_.begin(); }
    auto end() const { return map_.end(); }
    auto find(const CString& name) const { return map_.find(name); }
    bool isEmpty() const { return map_.empty(); }

    /// Of a new name it is T().
    T& operator[](const CString& name) {
        const auto found = map_.find(name);
        if (found != map_.end()) {
            return found->second;
        }
        if (spare_.empty()) {
            return map_[name];
        }
        CNode node = std::move(spare_.back());
        spare_.pop_back();
        node.key() = name;
        node.mapped() = T();
        return map_.insert(std::move(node)).position->second;
    }
    /// A name that is not there does nothing.
    void erase(const CString& name) {
        const auto found = map_.find(name);
        if (found != map_.end()) {
            spare_.push_back(map_.extract(found));
        }
    }
    void clear() {
        while (!map_.empty()) {
            spare_.push_back(map_.extract(map_.begin()));
        }
    }

private:
    CMap map_;
    std::vector<CNode, CHeapAllocator<CNode>> spare_;
};

}  // namespace tarv
