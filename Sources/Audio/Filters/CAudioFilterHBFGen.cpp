#include "Audio/Filters/CAudioFilterHBFGen.h"

#include <algorithm>

namespace tarv {

namespace {

/// How a type runs its coefficients. A half-band pair has one section type for each length of a branch.
struct CTypeRow {
    int32_t sectionType;
    bool addsLength;
    double gain;
    int32_t fewest;
    int32_t most;
};

constexpr CTypeRow kTypes[3] = {
    {12, true, 0.5, 1, 8},
    {23, false, 1.0, 3, 3},
    {12, true, 1.0, 1, 8},
};

}  // namespace

CError* CAudioFilterHBFGen::init() {
    TARV_TRY(CAudioFilterGen::init());
    if (!readType(2, type_)) {
        TARV_FAIL("@tarvstr_CAudioFilterHBFGen_init_FilterTypeError Invalid filter type '%1' specified.",
                  getAttrString("type"));
    }
    const CTypeRow& row = kTypes[type_];
    const int32_t fewest = std::max(row.fewest, getAttrInt("order") / 2);
    if (!readNumbers(getAttrString("a"), a_) || a_.count() < fewest) {
        TARV_FAIL("@tarvstr_CAudioFilterHBFGen_init_NoCoeffsA Not enough 'a' coefficients defined.");
    }
    if (!readNumbers(getAttrString("b"), b_) || b_.count() < fewest) {
        TARV_FAIL("@tarvstr_CAudioFilterHBFGen_init_NoCoeffsB Not enough 'b' coefficients defined.");
    }
    if (a_.count() != b_.count()) {
        TARV_FAIL(
            "@tarvstr_CAudioFilterHBFGen_init_CoeffsCountError Coefficient count should match in 'a' and 'b' "
            "coefficient "
            "lists.");
    }
    if (a_.count() > row.most) {
        TARV_FAIL("@tarvstr_CAudioFilterHBFGen_init_TooManyCoeffs Too many coefficients defined: %1 (%2 at most).",
                  CString::fromInt(a_.count()), CString::fromInt(row.most));
    }
    return nullptr;
}

void CAudioFilterHBFGen::design(CSectionList& list, double, const double*, int32_t) const {
    restart(list);
    const CTypeRow& row = kTypes[type_];
    const int32_t sectionType = row.sectionType + (row.addsLength ? a_.count() : 0);
    CFilterSection& section = addSection(list, sectionType, row.gain, {}, {});
    section.numerators.resize(a_.count());
    std::copy(a_.begin(), a_.end(), section.numerators.begin());
    section.denominators.resize(b_.count());
    std::copy(b_.begin(), b_.end(), section.denominators.begin());
}

}  // namespace tarv
