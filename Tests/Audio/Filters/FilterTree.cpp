#include "Tests/Audio/Filters/FilterTree.h"

#include <cmath>

#include "Audio/Filters/CAudioFilterAPF1Gen.h"
#include "Audio/Filters/CAudioFilterBypassGen.h"
#include "Audio/Filters/CAudioFilterFIRHilbGen.h"
#include "Audio/Filters/CAudioFilterFIRLPGen.h"
#include "Audio/Filters/CAudioFilterFIRLimGen.h"
#include "Audio/Filters/CAudioFilterGenArray.h"
#include "Audio/Filters/CAudioFilterGenArrayItem.h"
#include "Audio/Filters/CAudioFilterHBFGen.h"
#include "Audio/Filters/CAudioFilterLPHP1Gen.h"
#include "Audio/Filters/CAudioFilterMagnusGen.h"
#include "Audio/Filters/CAudioFilterRBJGen.h"
#include "Audio/Filters/CAudioFilterSerialGen.h"
#include "Audio/Filters/CAudioFilterSerialGenItem.h"
#include "Core/CCreatorRegistry.h"

namespace tarv {

namespace {

using CComplex = std::complex<double>;

constexpr CCreatorRow kRows[] = {
    {"core:object", &createObject<CObject>, nullptr},
    {"audio:fltgen-bypass", &createObject<CAudioFilterBypassGen>, nullptr},
    {"audio:fltgen-lphp1", &createObject<CAudioFilterLPHP1Gen>, nullptr},
    {"audio:fltgen-rbj", &createObject<CAudioFilterRBJGen>, nullptr},
    {"audio:fltgen-magnus", &createObject<CAudioFilterMagnusGen>, nullptr},
    {"audio:fltgen-hbf", &createObject<CAudioFilterHBFGen>, nullptr},
    {"audio:fltgen-apf1", &createObject<CAudioFilterAPF1Gen>, nullptr},
    {"audio:fltgen-firlp", &createObject<CAudioFilterFIRLPGen>, nullptr},
    {"audio:fltgen-firhilb", &createObject<CAudioFilterFIRHilbGen>, nullptr},
    {"audio:fltgen-firlim", &createObject<CAudioFilterFIRLimGen>, nullptr},
    {"audio:fltgen-serial", &createObject<CAudioFilterSerialGen>, nullptr},
    {"audio:fltgen-serial-item", &createObject<CAudioFilterSerialGenItem>, nullptr},
    {"audio:fltgen-array", &createObject<CAudioFilterGenArray>, nullptr},
    {"audio:fltgen-array-item", &createObject<CAudioFilterGenArrayItem>, nullptr},
};

CComplex biquad(const CFilterSection& s, double c0, double c1, CComplex z) {
    return (1.0 + c0 * z + c1 * z * z) / (1.0 - s.denominators[0] * z - s.denominators[1] * z * z);
}

CComplex onePole(const CFilterSection& s, CComplex z) {
    const bool isHighPass = s.type >= 9;
    const int stages = (s.type - 5) % 4 + 1;
    const double k = s.denominators[0];
    const CComplex lowPass = k / (1.0 - (1.0 - k) * z);
    return std::pow(isHighPass ? 1.0 - lowPass : lowPass, stages);
}

CComplex halfBand(const CFilterSection& s, CComplex z) {
    CComplex a = 1.0;
    CComplex b = z;
    for (double c : s.numerators) {
        a *= (c + z * z) / (1.0 + c * z * z);
    }
    for (double c : s.denominators) {
        b *= (c + z * z) / (1.0 + c * z * z);
    }
    return a + b;
}

CComplex taps(const CFilterSection& s, CComplex z) {
    CComplex sum = 0.0;
    for (int32_t i = s.numerators.count(); i-- > 0;) {
        sum = sum * z + s.numerators[i];
    }
    return sum;
}

CComplex allPasses(const CFilterSection& s, CComplex z) {
    CComplex product = 1.0;
    for (const CArray<double, 4>* part : {&s.numerators, &s.denominators}) {
        for (double c : *part) {
            product *= (c + z) / (1.0 + c * z);
        }
    }
    return product;
}

/// `z` is the delay of one sample.
CComplex sectionResponse(const CFilterSection& s, CComplex z) {
    constexpr double kNumerators[3][2] = {{2.0, 1.0}, {-2.0, 1.0}, {0.0, -1.0}};  // of the types 1, 2, 3
    if (s.type == 0) {
        return s.gain * biquad(s, s.numerators[0], s.numerators[1], z);
    }
    if (s.type <= 3) {
        return s.gain * biquad(s, kNumerators[s.type - 1][0], kNumerators[s.type - 1][1], z);
    }
    if (s.type == 4) {
        return s.gain * biquad(s, s.numerators[0], 1.0, z);
    }
    if (s.type <= 12) {
        return s.gain * onePole(s, z);
    }
    if (s.type <= 20) {
        return s.gain * halfBand(s, z);
    }
    return s.gain * (s.type == 21 ? taps(s, z) : allPasses(s, z));
}

}  // namespace

CFilterTree::CFilterTree() {
    CCreatorRegistry::clear();
    logError(CCreatorRegistry::registerRows(kRows, static_cast<int32_t>(std::size(kRows))));
    root_.reset(CCreatorRegistry::create("core:object"));
}

CFilterTree::~CFilterTree() {
    root_.reset();
    CCreatorRegistry::clear();
}

CError* CFilterTree::add(CObject* parent, const char* tag, const char* name, CTexts attributes, CObject*& child) {
    TARV_TRY(parent->addChild(child, tag, name, false));
    for (const auto& [key, text] : attributes) {
        TARV_TRY(child->addAttribute(key, text, false));
    }
    TARV_TRY(child->init());
    return child->initChildren();
}

CAudioFilterGen& CFilterTree::generator(const char* tag, const char* name, CTexts attributes) {
    CObject* child = nullptr;
    CError* error = add(root(), tag, name, attributes, child);
    EXPECT_EQ(error, nullptr) << error->joined().toUtf8();
    return dynamic_cast<CAudioFilterGen&>(*child);
}

CAudioFilterGen& CFilterTree::serial(const char* name, CTexts items, CTexts attributes) {
    CAudioFilterGen& set = generator("audio:fltgen-serial", name, attributes);
    for (const auto& [path, adjust] : items) {
        CObject* item = nullptr;
        CError* error = add(&set, "audio:fltgen-serial-item", "item", {{"fltgen", path}, {"adjust", adjust}}, item);
        EXPECT_EQ(error, nullptr) << error->joined().toUtf8();
    }
    return set;
}

CString CFilterTree::failure(CObject* parent, const char* tag, CTexts attributes) {
    CObject* child = nullptr;
    std::unique_ptr<CError> error(add(parent, tag, "bad", attributes, child));
    return error ? *error->lines()[0] : CString();
}

CSectionList designed(const CAudioFilterGen& generator, double rate, std::initializer_list<double> values) {
    CSectionList list;
    generator.design(list, rate, values.begin(), static_cast<int32_t>(values.size()));
    return list;
}

std::complex<double> response(const CSectionList& list, double frequency, double rate) {
    const CComplex z = std::polar(1.0, -2.0 * M_PI * frequency / rate);
    CComplex product = 1.0;
    for (const CFilterSection& section : list.sections) {
        product *= sectionResponse(section, z);
    }
    return product;
}

double responseDb(const CSectionList& list, double frequency, double rate) {
    return toDb(std::abs(response(list, frequency, rate)));
}

bool isStable(const CSectionList& list) {
    for (const CFilterSection& s : list.sections) {
        bool finite = std::isfinite(s.gain);
        for (double c : s.numerators) {
            finite = finite && std::isfinite(c);
        }
        const CArray<double, 4>& d = s.denominators;
        // One pole at 1 - k; two poles inside the circle are the triangle of the coefficients.
        const bool inside =
            d.count() == 1 ? std::fabs(1.0 - d[0]) < 1.0 : std::fabs(d[1]) < 1.0 && std::fabs(d[0]) < 1.0 - d[1];
        if (!finite || !inside) {
            return false;
        }
    }
    return true;
}

double toDb(double factor) {
    return 20.0 * std::log10(factor);
}

double fromDb(double db) {
    return std::pow(10.0, db / 20.0);
}

}  // namespace tarv
