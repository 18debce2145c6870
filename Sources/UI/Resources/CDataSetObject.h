#pragma once

#include "Core/CObject.h"
#include "Core/CScaledResource.h"
#include "UI/Resources/CBrushSet.h"
#include "UI/Resources/CImageSet.h"
#include "UI/Resources/CPalette.h"

namespace tarv {

/// Object that owns the data set of the resource named by its attribute `file`, empty until an editor opens. The tree's
/// thread builds it; while an editor is open the set is for any thread.
template <class T>
class CDataSetObject : public CObject, private CScaledResource {
public:
    /// Fails if there is no such resource; once an editor has opened, also if it can't be read.
    [[nodiscard]] CError* init() override {
        TARV_TRY(CObject::init());
        TARV_TRY(requireDataSet(getAttrString("file")));
        TARV_TRY(loadWithOthers());
        return nullptr;
    }
    const T& dataSet() const { return set_; }

private:
    [[nodiscard]] CError* loadAt(double scale) override {
        TARV_TRY(loadDataSet(set_, getAttrString("file"), scale));
        return nullptr;
    }

    T set_;
};

class CImageSetObject final : public CDataSetObject<CImageSet> {};
class CBrushSetObject final : public CDataSetObject<CBrushSet> {};
class CPaletteObject final : public CDataSetObject<CPalette> {};

}  // namespace tarv
