#include "Audio/Filters/CAudioFilterGen.h"

#include <algorithm>
#include <cmath>

namespace tarv {

bool CAudioFilterGen::readType(int32_t maximum, int32_t& type) const {
    const CString& text = getAttrString("type");
    bool ok = true;
    type = text.isEmpty() ? 0 : CString::toInt(text, &ok);
    return ok && type >= 0 && type <= maximum;
}

void CAudioFilterGen::restart(CSectionList& list) {
    list.restart();
}

CFilterSection& CAudioFilterGen::addSection(CSectionList& list, int32_t type, double gain,
                                            std::initializer_list<double> numerators,
                                            std::initializer_list<double> denominators) {
    // Growing by resize takes exactly the room that is needed, so that the fourth element still lies inline.
    list.sections.resize(list.sections.count() + 1);
    CFilterSection& section = list.sections.last();
    section.type = type;
    section.gain = gain;
    if (type == CFilterSection::kFirType) {
        section.numerators = list.takeKept();
    }
    section.numerators.resize(static_cast<int32_t>(numerators.size()));
    std::copy(numerators.begin(), numerators.end(), section.numerators.begin());
    section.denominators.resize(static_cast<int32_t>(denominators.size()));
    std::copy(denominators.begin(), denominators.end(), section.denominators.begin());
    return section;
}

double onePoleCoefficient(double angle) {
    const double a = 2.0 - std::cos(angle);
    return (1.0 - a) + std::sqrt(a * a - 1.0);
}

bool readNumbers(const CString& text, CArray<double, 8>& numbers) {
    numbers.clear();
    if (text.isEmpty()) {
        return true;
    }
    for (const CString& piece : text.split(',', true)) {
        bool ok = false;
        numbers.append(CString::toDouble(piece, &ok));
        if (!ok) {
            return false;
        }
    }
    return true;
}

}  // namespace tarv
