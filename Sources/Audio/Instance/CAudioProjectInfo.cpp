// Reads names, code, version and counts from the project object.

#include "Audio/Instance/CAudioProjectInfo.h"

namespace tarv {

namespace {

constexpr int32_t kMaxChannels = 32;
constexpr int32_t kMaxGroups = 8;

}  // namespace

CError* CAudioProjectInfo::read(const CObject& project) {
    name_ = project.getAttrString("app-name");
    if (name_.isEmpty()) {
        TARV_FAIL("@tarvstr_CAudioWrapper_init_NoPluginName Plug-in name is empty.");
    }
    vendor_ = project.getAttrString("app-vendor");
    if (vendor_.isEmpty()) {
        TARV_FAIL("@tarvstr_CAudioWrapper_init_NoVendorName Vendor name is empty.");
    }
    channelCount_ = project.getAttrInt("plugin-intchannel-count");
    if (channelCount_ < 1 || channelCount_ > kMaxChannels) {
        TARV_FAIL("@tarvstr_CAudioWrapper_init_InvalidChannelCount Invalid 'plugin-intchannel-count' attribute value.");
    }
    groupCount_ = project.getAttrInt("plugin-group-count");
    if (groupCount_ < 1 || groupCount_ > kMaxGroups) {
        TARV_FAIL("@tarvstr_CAudioWrapper_init_InvalidGroupCount Invalid 'plugin-group-count' attribute value.");
    }
    TARV_TRY(acquirePluginCode(project.getAttrString("plugin-code"), code_));
    TARV_TRY(parseVersion(project.getAttrString("app-version"), version_));
    return nullptr;
}

CError* CAudioProjectInfo::acquirePluginCode(const CString& text, uint32_t& code) {
    if (text.length() != 4) {
        TARV_FAIL("@tarvstr_CAudioWrapper_acquirePluginCode_InvalidCode Invalid plug-in code in string '%1'.", text);
    }
    code = 0;
    for (int32_t i = 0; i < 4; ++i) {
        code = (code << 8) + (text.at(i) & 0xff);
    }
    return nullptr;
}

CError* CAudioProjectInfo::parseVersion(const CString& text, int32_t (&version)[3]) {
    const CArray<CString, 4> parts = text.split('.', true);
    bool isGood = parts.count() == 2 || parts.count() == 3;
    int32_t numbers[3] = {0, 0, 0};
    for (int32_t i = 0; isGood && i < parts.count(); ++i) {
        numbers[i] = CString::toInt(parts[i], &isGood);
        isGood = isGood && numbers[i] >= 0;
    }
    if (!isGood) {
        TARV_FAIL("@tarvstr_CAudioWrapper_parseVersion_InvalidVersion Invalid version specification in string '%1'.",
                  text);
    }
    for (int32_t i = 0; i < 3; ++i) {
        version[i] = numbers[i];
    }
    return nullptr;
}

}  // namespace tarv
