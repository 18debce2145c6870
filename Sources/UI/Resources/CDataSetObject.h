#pragma once

#include "Core/CObject.h"
#include "UI/Resources/CBrushSet.h"
#include "UI/Resources/CImageSet.h"
#include "UI/Resources/CPalette.h"

namespace tarv {

/// Object that owns the data set of the resource named by its attribute `file`. The tree's thread builds it; the set is
/// for any thread from then on.
template <class T>
class CDataSetObject : public CObject {
public:
    /// Fails if the resource can't be found or read.
    [[nodiscard]] CError* init() override {
        TARV_TRY(CObject::init());
        TARV_TRY(loadDataSet(set_, getAttrString("file")));
        return nullptr;
    }
    const T& dataSet() const { return set_; }

private:
    T set_;
};

class CImageSetObject final : public CDataSetObject<CImageSet> {};
class CBrushSetObject final : public CDataSetObject<CBrushSet> {};
class CPaletteObject final : public CDataSetObject<CPalette> {};

}  // namespace tarv
