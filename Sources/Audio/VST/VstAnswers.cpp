// Answers questions of a host from tables.

#include "Audio/VST/VstAnswers.h"

#include "Audio/VST/Vst2.h"

namespace tarv {

namespace {

struct CNamedValue {
    const char* name;
    intptr_t value;
};

constexpr CNamedValue kCanDo[] = {
    {vst::kCanCockosExtensions, vst::kCockosExtensionsAnswer},
    {vst::kCanReceiveMidiEvent, 1},
    {vst::kCanReceiveTimeInfo, 1},
};

constexpr CNamedValue kCategories[] = {
    {"kPlugCategUnknown", vst::kCategoryUnknown},
    {"kPlugCategEffect", vst::kCategoryEffect},
    {"kPlugCategSynth", vst::kCategorySynth},
    {"kPlugCategAnalysis", vst::kCategoryAnalysis},
    {"kPlugCategMastering", vst::kCategoryMastering},
    {"kPlugCategSpacializer", vst::kCategorySpacializer},
    {"kPlugCategRoomFx", vst::kCategoryRoomFx},
    {"kPlugSurroundFx", vst::kCategorySurroundFx},
    {"kPlugCategRestoration", vst::kCategoryRestoration},
    {"kPlugCategOfflineProcess", vst::kCategoryOfflineProcess},
    {"kPlugCategShell", vst::kCategoryShell},
    {"kPlugCategGenerator", vst::kCategoryGenerator},
};

template <size_t count>
intptr_t valueOf(const CNamedValue (&table)[count], const CString& name) {
    for (const CNamedValue& row : table) {
        if (name == row.name) {
            return row.value;
        }
    }
    return 0;
}

}  // namespace

intptr_t vstCanDo(const CString& question) {
    return valueOf(kCanDo, question);
}

int32_t vstCategory(const CString& name) {
    return static_cast<int32_t>(valueOf(kCategories, name));
}

}  // namespace tarv
