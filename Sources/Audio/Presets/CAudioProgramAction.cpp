#include "Audio/Presets/CAudioProgramAction.h"

#include <algorithm>
#include <utility>

namespace tarv {

CAudioProgramAction::CAudioProgramAction(CAudioSessionBank& session, bool withPersistent)
    : session_(session), movedAt_(session.nextTime()) {
    request_.withPersistent = withPersistent;
}

void CAudioProgramAction::add(std::unique_ptr<CAudioPreset> program, uint64_t predecessor) {
    const uint64_t id = program->identity().id;
    presences_.append({id, true, std::move(program), predecessor, 0});
}

void CAudioProgramAction::remove(uint64_t id) {
    presences_.append({id, false, nullptr, 0, 0});
}

void CAudioProgramAction::replace(uint64_t id, CAudioPreset& contents) {
    auto other = std::make_unique<CAudioPreset>();
    other->take(contents);
    contents_.append({id, std::move(other)});
}

void CAudioProgramAction::replaceAll(CAudioPresetBank& loaded) {
    select(session_.slot().identity().id, loaded.preset(loaded.selectedIndex()).identity().id);
    for (int32_t i = 0; i < bank().count(); ++i) {
        remove(bank().preset(i).identity().id);
    }
    for (uint64_t predecessor = 0; loaded.count() > 0;) {
        const uint64_t id = loaded.preset(0).identity().id;
        add(loaded.takeOut(0), predecessor);
        predecessor = id;
    }
}

void CAudioProgramAction::rename(uint64_t id, const CString& before, const CString& after) {
    names_.append({id, before, after});
}

void CAudioProgramAction::select(uint64_t before, uint64_t after) {
    selectedBefore_ = before;
    selectedAfter_ = after;
}

bool CAudioProgramAction::merge(CAudioUndoAction& later) {
    auto* other = dynamic_cast<CAudioProgramAction*>(&later);
    const auto isName = [](const CAudioProgramAction& action) {
        return action.names_.count() == 1 && action.presences_.isEmpty() && action.contents_.isEmpty() &&
               action.selectedAfter_ == 0;
    };
    if (!other || !isName(*this) || !isName(*other) || other->names_[0].id != names_[0].id) {
        return false;
    }
    names_[0].after = other->names_[0].after;
    movedAt_ = other->movedAt_;
    return true;
}

bool CAudioProgramAction::isIdle() const {
    bool isIdle = presences_.isEmpty() && names_.isEmpty() && selectedAfter_ == 0;
    for (const CContents& contents : contents_) {
        const int32_t index = bank().indexOf(contents.id);
        isIdle = isIdle && index >= 0 && bank().preset(index).isSame(*contents.other);
    }
    return isIdle;
}

bool CAudioProgramAction::isOthersWork(const CAudioPreset& program) const {
    return session_.isOthersWork(program, movedAt_);
}

// Never lists all programs: the bank keeps at least one.
CAudioProgramAction::CIds CAudioProgramAction::leaving(bool forth) const {
    CIds ids;
    for (const CPresence& presence : presences_) {
        const int32_t index = presence.isAdded == forth ? -1 : bank().indexOf(presence.id);
        if (index >= 0 && !isOthersWork(bank().preset(index)) && ids.count() + 1 < bank().count()) {
            ids.append(presence.id);
        }
    }
    return ids;
}

bool CAudioProgramAction::canSelect(int32_t index, CAssignments& assignments) const {
    assignments.clear();
    if (CError* error = session_.codec().decode(bank().preset(index), request_, assignments)) {
        TARV_CONSUME(error);
        assignments.clear();
        return false;
    }
    return true;
}

// The program that is current afterwards: the one that was selected, else the present one, else its neighbour.
int32_t CAudioProgramAction::programToBe(bool forth, CIds& leaving, CAssignments& assignments) const {
    const int32_t current = bank().selectedIndex();
    const uint64_t currentId = bank().preset(current).identity().id;
    const auto isStaying = [&](int32_t index) { return leaving.indexOf(bank().preset(index).identity().id) < 0; };
    const int32_t wanted = bank().indexOf(forth ? selectedAfter_ : selectedBefore_);
    if (wanted >= 0 && wanted != current && isStaying(wanted) && canSelect(wanted, assignments)) {
        return wanted;
    }
    if (isStaying(current)) {
        return current;
    }
    for (int32_t i = current + 1; i < bank().count(); ++i) {
        if (isStaying(i) && canSelect(i, assignments)) {
            return i;
        }
    }
    for (int32_t i = current - 1; i >= 0; --i) {
        if (isStaying(i) && canSelect(i, assignments)) {
            return i;
        }
    }
    leaving.removeAt(leaving.indexOf(currentId));
    return current;
}

void CAudioProgramAction::putIn(bool forth) {
    for (CPresence& presence : presences_) {
        if (presence.isAdded != forth || !presence.out) {
            continue;
        }
        const int32_t behind = presence.predecessor == 0 ? -1 : bank().indexOf(presence.predecessor);
        const bool isGone = presence.predecessor != 0 && behind < 0;
        bank().putIn(isGone ? std::min(presence.index, bank().count()) : behind + 1, std::move(presence.out));
    }
}

// Records all places before it takes any program out: each place is given by the program in front of it.
void CAudioProgramAction::takeOut(const CIds& ids) {
    for (CPresence& presence : presences_) {
        if (ids.indexOf(presence.id) >= 0) {
            presence.index = bank().indexOf(presence.id);
            presence.predecessor = presence.index > 0 ? bank().preset(presence.index - 1).identity().id : 0;
        }
    }
    for (CPresence& presence : presences_) {
        if (ids.indexOf(presence.id) >= 0) {
            presence.out = bank().takeOut(bank().indexOf(presence.id));
        }
    }
}

void CAudioProgramAction::exchangeContents() {
    for (CContents& contents : contents_) {
        const int32_t index = bank().indexOf(contents.id);
        if (index >= 0 && !isOthersWork(bank().preset(index))) {
            bank().preset(index).swap(*contents.other);
            session_.contentsReplaced(bank().preset(index));
        }
    }
}

void CAudioProgramAction::exchangeNames(bool forth) {
    for (const CName& name : names_) {
        const int32_t index = bank().indexOf(name.id);
        if (index >= 0 && bank().preset(index).displayName() == (forth ? name.before : name.after)) {
            session_.rename(index, forth ? name.after : name.before);
        }
    }
}

bool CAudioProgramAction::move(bool forth, CTouched& touched) {
    CLockScope scope(session_.lock());
    session_.captureCurrent();
    putIn(forth);
    exchangeContents();
    exchangeNames(forth);
    CIds going = leaving(forth);
    const int32_t wantedToGo = going.count();
    CAssignments assignments;
    const uint64_t wanted = forth ? selectedAfter_ : selectedBefore_;
    const int32_t next = programToBe(forth, going, assignments);
    const bool isSelected = wanted == 0 || bank().preset(next).identity().id == wanted || !presences_.isEmpty();
    const bool isWhole = isSelected && going.count() == wantedToGo;
    bank().select(next);
    session_.addNameShown(assignments);
    takeOut(going);
    for (const CAudioParamCollector::CAssignment& assignment : assignments) {
        if (assignment.param->collector().assign(assignment)) {
            touched.add(*assignment.param);
        }
    }
    touched.add(session_.observer());
    movedAt_ = session_.nextTime();
    return isWhole;
}

}  // namespace tarv
