#include "Audio/Engine/CEngineEdits.h"

#include <algorithm>
#include <cmath>

#include "Audio/Engine/CEngineGestures.h"
#include "Audio/Engine/CEngineHistory.h"
#include "Audio/Engine/CEngineRegistries.h"
#include "Audio/Engine/CEngineStatus.h"
#include "Audio/Engine/CEngineSubscriptions.h"
#include "Audio/Parameters/CAudioParamCollector.h"

namespace tarv {

namespace {

constexpr const char* kChannelNames = "plugin.modMain.io-params.in-channel-names";
/// A message names a group below this, or one that the parameter has, and begins at an element up to this, or at the
/// end of what the group holds: the gap is filled, and takes memory without any byte of the message behind it.
constexpr int32_t kGroupReach = 32;
constexpr int32_t kElementReach = 64;
/// Characters of a channel's name.
constexpr int32_t kMaxChannelName = 8;

/// As many characters of a host's label as a name has; blanks at its end go.
CString channelNameOf(const CString& label) {
    int32_t end = std::min(label.length(), kMaxChannelName);
    while (end > 0 && label.at(end - 1) == ' ') {
        --end;
    }
    return label.substring(0, end);
}

}  // namespace

/// Values that take the place of others.
struct CEngineEdits::CEdit {
    CAudioParam* param = nullptr;
    int32_t group = 0;
    int32_t first = 0;
    int32_t count = 0;
    uint32_t flags = 0;
    CArray<double, 16> numbers;  ///< count * element size; what is no number stays as it is
    CTextList texts;             ///< count, in place of the numbers of a string parameter
    CString label;
    int32_t key = CAudioParamUndoStep::kNoKey;
};

CError* CEngineEdits::requirePlace(const CEdit& edit) const {
    bool hasPlace = edit.group >= 0 && edit.first >= 0 && edit.count >= 0;
    if (hasPlace) {
        CLockScope scope(edit.param->lock());
        const CAudioParamData& data = edit.param->userData();
        const int32_t groups = edit.param->info().isSingleGroup() ? 1 : std::max(kGroupReach, data.groupCount());
        hasPlace = (edit.group == CAudioParamData::kAllGroups || edit.group < groups) &&
                   edit.first <= std::max(kElementReach, data.elementCount(edit.group)) &&
                   edit.count <= CAudioParamData::kElementLimit - edit.first;
    }
    if (!hasPlace) {
        TARV_FAIL(
            "@tarvstr_CEngineEdits_requirePlace_InvalidPlace Parameter '%1' has no place for %2 elements from "
            "%3 on in group %4.",
            edit.param->fullName(), CString::fromInt(edit.count), CString::fromInt(edit.first),
            CString::fromInt(edit.group));
    }
    return nullptr;
}

CError* CEngineEdits::readElements(CInputStream& stream, CEdit& edit) const {
    const CAudioParamInfo& info = edit.param->info();
    for (int32_t element = 0; element < edit.count; ++element) {
        if (info.isString()) {
            CString text;
            TARV_TRY(stream.readString(text));
            edit.texts.append(std::move(text));
        }
        for (int32_t i = 0; i < (info.isString() ? 0 : info.elementSize()); ++i) {
            double number = 0.0;
            TARV_TRY(stream.readDouble(number));
            edit.numbers.append(number);
        }
    }
    return nullptr;
}

CError* CEngineEdits::setValues(CInputStream& stream) {
    CEdit edit;
    uint32_t id = 0;
    CString name;
    TARV_TRY(takeFields(stream, id, name, edit.group, edit.first, edit.count, edit.flags));
    TARV_TRY(subscriptions_.findParam(id, name, edit.param));
    TARV_TRY(requirePlace(edit));
    TARV_TRY(readElements(stream, edit));
    TARV_TRY(takeMessage(stream, edit.label, edit.key));
    const bool isHeld = (edit.flags & kIsHeld) != 0;
    if (isHeld) {
        TARV_TRY(sender_.requireClient(id));
        TARV_TRY(gestures_.requireRoom(clientOf(id), edit.key));
    }
    if (!isHeld || !gestures_.isCancelled(edit.key)) {
        const CEngineGestures::CAction action(gestures_, clientOf(id), edit.key, isHeld);
        carryOut(edit);
    }
    return nullptr;
}

void CEngineEdits::editGroup(const CEdit& edit, int32_t group) const {
    CAudioParam& param = *edit.param;
    const CAudioParamInfo& info = param.info();
    CAudioParamData pool;
    CAudioParamChange* change =
        collector_.createChange(param, group, edit.first, edit.count, (edit.flags & kIsReplacing) != 0);
    for (int32_t i = 0; i < edit.numbers.count(); ++i) {
        const int32_t position = i % info.elementSize();
        const double now = param.userData().value(group, edit.first + i / info.elementSize(), position);
        change->values[i] = info.clamp(position, std::isnan(edit.numbers[i]) ? now : edit.numbers[i]);
    }
    for (int32_t i = 0; i < edit.texts.count(); ++i) {
        change->values[i] = pool.addString(edit.texts[i]);
    }
    change->sourcePool = &pool;
    collector_.postWithoutNotifying(param, change);
}

void CEngineEdits::carryOut(const CEdit& edit) {
    const int32_t notified = postEdit(edit);
    // Notifies even if unchanged: the sender must learn the clamped value.
    edit.param->notify(edit.group, edit.first, notified);
    undo_.notifyIfChanged();
}

int32_t CEngineEdits::postEdit(const CEdit& edit) {
    const CString label = labelOf(edit);
    const int32_t lastGroups = edit.param->info().isSingleGroup() ? 1 : status_.counts().groups;
    int32_t notified = edit.count;
    CLockScope scope(undo_.lock());
    CAudioParamData before;
    CAudioParamData after;
    {
        // Held over all groups, so that no other change comes between the values that the step holds.
        CLockScope paramScope(edit.param->lock());
        const CAudioParamData& data = edit.param->userData();
        before = data;
        const bool isForAll = edit.group == CAudioParamData::kAllGroups;
        // Also groups that hold nothing yet: they are at the default, which is a value like others.
        const int32_t end = isForAll ? std::max({before.groupCount(), lastGroups, 1}) : edit.group + 1;
        for (int32_t group = isForAll ? 0 : edit.group; group < end; ++group) {
            editGroup(edit, group);
            if (edit.flags & kIsReplacing) {
                notified = std::max(notified, before.elementCount(group) - edit.first);
            }
        }
        after = data;
    }
    if ((edit.flags & kIsRecorded) && !before.isSame(after)) {
        auto step = CEngineHistory::makeStep(label, edit.key);
        step->add(*edit.param, std::move(before), std::move(after));
        undo_.addStep(std::move(step), true);
    }
    return notified;
}

CString CEngineEdits::labelOf(const CEdit& edit) const {
    if (!edit.label.isEmpty()) {
        return edit.label;
    }
    const CAudioParamInfo& info = edit.param->info();
    const CString name = info.visualName().isEmpty() ? info.displayPath() : info.visualName();
    if (edit.group == CAudioParamData::kAllGroups || info.isSingleGroup()) {
        return name + " change";
    }
    return name + " (" + registries_.groupName(edit.group) + ") change";
}

CError* CEngineEdits::importLabels(CInputStream& stream) {
    TARV_TRY(expectMessageEnd(stream));
    CEdit edit;
    edit.texts = status_.channelLabels();
    edit.count = edit.texts.count();
    if (edit.count == 0) {
        return nullptr;
    }
    TARV_TRY(subscriptions_.findParam(0, kChannelNames, edit.param));
    TARV_TRY(requirePlace(edit));
    for (int32_t i = 0; i < edit.count; ++i) {
        CString& name = edit.texts[i];
        name = name.isEmpty() ? edit.param->text(0, i) : channelNameOf(name);
    }
    edit.flags = kIsRecorded;
    edit.label = kLabelImport;
    carryOut(edit);
    return nullptr;
}

}  // namespace tarv
