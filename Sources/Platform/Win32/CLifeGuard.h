#pragma once

namespace tarv {

class CLifeGuard;

/// A member of an object that may be destroyed by what it calls. One thread.
class CLifeChain {
public:
    CLifeChain() = default;
    ~CLifeChain();
    CLifeChain(const CLifeChain&) = delete;
    CLifeChain& operator=(const CLifeChain&) = delete;

private:
    friend class CLifeGuard;
    CLifeGuard* newest_ = nullptr;
};

/// Stands on the stack around such a call; after it the object may be touched only if isAlive.
class CLifeGuard {
public:
    explicit CLifeGuard(CLifeChain& chain) : chain_(&chain), outer_(chain.newest_) { chain.newest_ = this; }
    ~CLifeGuard() {
        if (chain_) {
            chain_->newest_ = outer_;
        }
    }
    CLifeGuard(const CLifeGuard&) = delete;
    CLifeGuard& operator=(const CLifeGuard&) = delete;

    bool isAlive() const { return chain_ != nullptr; }

private:
    friend class CLifeChain;
    CLifeChain* chain_;
    CLifeGuard* outer_;
};

inline CLifeChain::~CLifeChain() {
    for (CLifeGuard* guard = newest_; guard; guard = guard->outer_) {
        guard->chain_ = nullptr;
    }
}

}  // namespace tarv
