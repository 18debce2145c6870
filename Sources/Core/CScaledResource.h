#pragma once

#include "Core/CError.h"

namespace tarv {

/// Base of the objects that hold what is drawn at the scale of the editor. They are empty until the first editor of the
/// process opens; all of them hold the same scale from then on. Made, loaded and destroyed on threads of the user
/// interface, one at a time.
class CScaledResource {
public:
    /// Loads every one at `scale`, unless they hold it already. After a failure none counts as loaded, and the next
    /// call begins anew. Nothing may be drawn meanwhile.
    [[nodiscard]] static CError* loadAll(double scale);
    /// Returns to the state before the first loadAll, for those that are made from now on.
    static void forgetScale();

protected:
    CScaledResource();
    ~CScaledResource();
    CScaledResource(const CScaledResource&) = delete;
    CScaledResource& operator=(const CScaledResource&) = delete;

    /// Replaces the content by that for `scale`. After a failure the content counts for nothing.
    [[nodiscard]] virtual CError* loadAt(double scale) = 0;
    /// Loads this one if the others are loaded; for the end of an object's init.
    [[nodiscard]] CError* loadWithOthers();

private:
    CScaledResource* previous_ = nullptr;
    CScaledResource* next_ = nullptr;
};

}  // namespace tarv
