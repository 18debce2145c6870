// Random sequences of actions on programs, by seed: in any order, a program that no action named keeps its bytes.

#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>
#include <set>

#include "Tests/Audio/Presets/PresetTree.h"

namespace tarv {
namespace {

using CIds = std::set<uint64_t>;
using CPrograms = std::map<uint64_t, std::string>;

constexpr int32_t kHistoryLength = 32;
constexpr int32_t kMostPrograms = 9;

/// A preset with every record that a capture writes, so that capturing it anew changes no byte, and one more.
std::string wholePreset(const std::string& name, double gain) {
    return storedPreset("TAEQ:" + name, {{"eq.gains", realRecord({{gain, 2}}, 1, "audio.gains")},
                                         {"eq.pair", realRecord({{1, 2}}, 2, "audio.pair")},
                                         {"instance-name", textRecord({"Unnamed"}, "audio.instance-name")},
                                         {"io-params.group-names", textRecord({"1", "2", "3"}, "audio.group-names")},
                                         {"io-params.in-routing", realRecord({{1, 2}}, 1, "audio.in-routing")},
                                         {"out.mute", realRecord({{0}}, 1, "audio.mute")},
                                         {"oversampling", realRecord({{1}}, 1, "audio.oversampling")},
                                         {"unknown", name}});
}

/// The name that a preset's bytes begin with.
std::string nameOf(const std::string& bytes) {
    return bytes.substr(4, static_cast<uint8_t>(bytes[0]));
}

/// The expected history of one state: the programs that each step names.
struct CShadowList {
    struct CStep {
        CIds named;
        uint64_t serial = 0;
    };
    std::vector<CStep> steps;
    size_t position = 0;

    void add(const CStep& step) {
        steps.resize(position);
        steps.push_back(step);
        if (steps.size() > kHistoryLength)
            steps.erase(steps.begin());
        position = steps.size();
    }
};

class CProgramSequence {
public:
    explicit CProgramSequence(uint64_t seed) : random_(seed), seed_(seed) {}

    void run(int32_t count) {
        before_ = programs();
        for (int32_t i = 0; i < count && !testing::Test::HasFailure(); ++i) {
            const std::string what = step();
            SCOPED_TRACE("seed " + std::to_string(seed_) + ", operation " + std::to_string(i) + ": " + what);
            check();
        }
    }

private:
    CAudioParamRegistry& master() { return tree_.master(); }
    CShadowList& list() { return lists_[isAlternate_ ? 1 : 0]; }
    int32_t upTo(int32_t end) { return static_cast<int32_t>(random_() % static_cast<uint64_t>(end)); }
    int32_t anyIndex() { return upTo(master().programCount()); }
    uint64_t currentId() { return master().programId(master().currentProgram()); }
    std::string newName() { return "N" + std::to_string(++names_); }

    /// Every program's bytes: of the current one what a bank would hold, of the others what is stored.
    CPrograms programs() {
        CPrograms all;
        for (int32_t i = 0; i < master().programCount(); ++i)
            all[master().programId(i)] = tree_.acquire(master(), i == master().currentProgram() ? -1 : i);
        EXPECT_EQ(static_cast<int32_t>(all.size()), master().programCount()) << "no identity twice";
        return all;
    }
    std::string anyPreset() { return wholePreset(newName(), upTo(50)); }

    void note(const CIds& named) {
        named_ = named;
        crossed_ = ++serials_;
        list().add({named, crossed_});
    }
    /// An action that changes nothing is no step.
    void noteIfChanged(const CIds& named) {
        if (programs() != before_)
            note(named);
    }
    void add();
    void remove();
    void rename();
    void replace();
    void activate(bool isChunk);
    void bank(bool isChunk);
    void swap();
    std::vector<std::string> otherLabels();
    void copy();
    void edit();
    void move(int32_t target);
    std::string step();
    void check();

    CPresetTree tree_{{wholePreset("One", 1), wholePreset("Two", 2), wholePreset("Three", 3)}};
    std::mt19937_64 random_;
    uint64_t seed_;
    int32_t names_ = 0;
    bool isAlternate_ = false;
    uint64_t alternateId_ = 0;  ///< 0: no state beside this one yet
    CShadowList lists_[2];
    CPrograms before_;
    struct CGone {
        uint64_t step = 0;
        std::string bytes;
    };
    std::map<uint64_t, CGone> gone_;  ///< programs that one step took out, with the bytes that they had then
    uint64_t serials_ = 0;
    uint64_t crossed_ = 0;  ///< the one step that an operation made or moved over; 0: none, or several
    uint64_t undone_ = 0;   ///< the same, if it was taken back
    CIds named_;
};

void CProgramSequence::add() {
    if (master().programCount() >= kMostPrograms)
        return;
    const int32_t index = upTo(master().programCount() + 1);
    const CString name = newName().c_str();
    master().addProgram(index, name);
    EXPECT_EQ(master().programName(index), name);
    note({master().programId(index)});
}

void CProgramSequence::remove() {
    const int32_t index = anyIndex();
    const uint64_t id = master().programId(index);
    if (master().programCount() < 2)
        return;
    master().deleteProgram(index);
    note({id});
}

void CProgramSequence::rename() {
    const int32_t index = anyIndex();
    const CString name = newName().c_str();
    if (upTo(4) == 0) {
        tree_.param("preset-name").setText(0, 0, name);  // as a host does: no step
        named_ = {currentId()};
        EXPECT_EQ(master().programName(master().currentProgram()), name);
        return;
    }
    master().renameProgram(index, name);
    EXPECT_EQ(master().programName(index), name);
    note({master().programId(index)});
}

void CProgramSequence::replace() {
    const int32_t index = anyIndex();
    master().replaceProgram(index);
    noteIfChanged({master().programId(index)});
}

void CProgramSequence::activate(bool isChunk) {
    if (isChunk) {
        EXPECT_EQ(tree_.activate(master(), anyPreset(), {-1, true, false}), "");
        named_ = {currentId()};
        return;
    }
    if (upTo(3) == 0)
        EXPECT_EQ(firstLine(master().activateRomPreset(upTo(3))), "");
    else
        EXPECT_EQ(tree_.activate(master(), anyPreset(), {upTo(4) == 0 ? 1 : -1}), "");
    noteIfChanged({currentId()});
}

void CProgramSequence::bank(bool isChunk) {
    std::vector<std::string> presets;
    for (int32_t i = 0; i <= upTo(4); ++i)
        presets.push_back(anyPreset());
    EXPECT_EQ(
        tree_.activateBank(storedBank("b", presets), isChunk ? CPresetRequest{-1, true, false} : CPresetRequest{}), "");
    CIds named;
    for (const auto& entry : before_)
        named.insert(entry.first);
    for (int32_t i = 0; i < master().programCount(); ++i)
        named.insert(master().programId(i));
    if (!isChunk) {
        note(named);
        return;
    }
    named_ = named;
    // Steps of the former bank end; what is left of them changes values of the current program only.
    for (CShadowList& each : lists_)
        each.steps.clear(), each.position = 0;
    int32_t position = 0;
    tree_.history().selectStep(0);
    EXPECT_EQ(programs().size(), presets.size());
    for (int32_t i = tree_.history().getStepLabels(&position).count(); i > 1; --i)
        tree_.history().redo(1);
    EXPECT_EQ(programs().size(), presets.size()) << "no step restores a program of the former bank";
}

// Both states may edit one program and have different values of it: names the program that becomes current.
void CProgramSequence::swap() {
    const uint64_t present = currentId();
    const uint64_t other = alternateId_ ? alternateId_ : present;
    const bool isThere = before_.count(other) != 0;
    master().swapAB();
    isAlternate_ = !isAlternate_;
    EXPECT_EQ(currentId(), isThere ? other : present);
    alternateId_ = present;
    named_ = {currentId()};
    const auto found = before_.find(currentId());
    EXPECT_EQ(nameOf(tree_.acquire(master())), nameOf(found->second)) << "a swap renames nothing";
    if (isThere)
        return;
    // The values of a deleted program move to the present one, and so do their steps.
    for (CShadowList::CStep& each : list().steps)
        if (each.named.count(other) != 0)
            each.named.insert(present);
}

/// Labels of the other state's history, read by a look at it and back.
std::vector<std::string> CProgramSequence::otherLabels() {
    master().swapAB();
    std::vector<std::string> labels;
    int32_t position = 0;
    for (const CString& label : tree_.history().getStepLabels(&position))
        labels.push_back(label.toUtf8());
    labels.push_back(std::to_string(position));
    master().swapAB();
    return labels;
}

void CProgramSequence::copy() {
    const uint64_t overwritten = alternateId_;
    if (overwritten == 0) {
        master().copyToAlternate();
        alternateId_ = currentId();
        return;
    }
    if (before_.count(overwritten) == 0)
        return;  // the look would move the values of a deleted program
    named_ = {currentId(), overwritten};
    const std::vector<std::string> labels = otherLabels();
    master().copyToAlternate();
    alternateId_ = currentId();
    if (otherLabels() != labels)
        lists_[isAlternate_ ? 0 : 1].add({named_, ++serials_});
}

void CProgramSequence::edit() {
    if (upTo(2) == 0) {
        tree_.set("eq.gains", upTo(90), upTo(2), upTo(5));
        named_ = {currentId()};
        return;
    }
    if (upTo(4) == 0) {
        tree_.set("out.mute", 1);
        tree_.set("eq.gains", 95);
        master().masterReset();
    } else {
        tree_.set("io-params.in-routing", 7);
        tree_.routing().reset();
    }
    note({currentId()});
}

void CProgramSequence::move(int32_t target) {
    CShadowList& own = list();
    int32_t position = 0;
    const int32_t count = tree_.history().getStepLabels(&position).count() - 1;
    target = std::clamp(target, 0, count);
    const int32_t first = std::min(position, target);
    const int32_t last = std::max(position, target);
    // Steps from before a host's bank come first in the list, and change the current program's values.
    const int32_t old = count - static_cast<int32_t>(own.steps.size());
    const uint64_t formerId = currentId();
    for (int32_t i = first; i < last; ++i)
        if (i >= old)
            named_.insert(own.steps[static_cast<size_t>(i - old)].named.begin(),
                          own.steps[static_cast<size_t>(i - old)].named.end());
    if (last - first == 1 && first >= old) {
        crossed_ = own.steps[static_cast<size_t>(first - old)].serial;
        undone_ = target < position ? crossed_ : 0;
    }
    tree_.history().selectStep(target);
    own.position = static_cast<size_t>(std::max(0, target - old));
    if (first < old)
        named_.insert({formerId, currentId()});
}

std::string CProgramSequence::step() {
    named_.clear();
    crossed_ = 0;
    undone_ = 0;
    const int32_t kind = upTo(40);
    int32_t position = 0;
    const int32_t count = tree_.history().getStepLabels(&position).count() - 1;
    if (kind < 7) {
        const int32_t index = anyIndex();
        const bool isOther = index != master().currentProgram();
        master().selectProgram(index);
        if (isOther)
            note({});
        return "select";
    }
    if (kind < 10)
        return add(), "add";
    if (kind < 13)
        return remove(), "delete";
    if (kind < 15)
        return rename(), "rename";
    if (kind < 17)
        return replace(), "replace";
    if (kind < 20)
        return activate(false), "activate";
    if (kind == 20)
        return activate(true), "program chunk";
    if (kind == 21)
        return bank(upTo(4) == 0), "bank";
    if (kind < 25)
        return swap(), "swap";
    if (kind == 25)
        return copy(), "copy";
    if (kind < 30)
        return edit(), "edit";
    if (kind < 35)
        return move(position - 1), "undo";
    if (kind < 38)
        return move(position + 1), "redo";
    return move(upTo(count + 1)), "jump";
}

void CProgramSequence::check() {
    const CPrograms now = programs();
    for (const auto& [id, bytes] : before_) {
        const auto found = now.find(id);
        if (named_.count(id) == 0) {
            ASSERT_TRUE(found != now.end()) << "program " << id << " vanished";
            ASSERT_TRUE(found->second == bytes) << "program " << id << " changed";
        }
    }
    for (const auto& [id, bytes] : now)
        ASSERT_TRUE(before_.count(id) != 0 || named_.count(id) != 0)
            << "program " << id << " was not added by any action";
    for (const auto& [id, gone] : gone_)
        if (undone_ != 0 && gone.step == undone_) {
            ASSERT_TRUE(now.count(id) != 0) << "program " << id << " was not restored";
            ASSERT_TRUE(now.at(id) == gone.bytes) << "program " << id << " was restored with other bytes";
        }
    for (const auto& [id, bytes] : before_)
        if (now.count(id) == 0)
            gone_[id] = {crossed_, bytes};
    for (const auto& [id, bytes] : now)
        gone_.erase(id);
    // A jump may have restored a program, changed it and removed it again.
    for (const uint64_t id : named_)
        if (crossed_ == 0)
            gone_.erase(id);
    before_ = now;
}

/// Operations of the test: TARV_SEQUENCE_OPERATIONS, otherwise 1,000,000 of the long form and 10,000.
int64_t operationCount() {
    if (const char* asked = std::getenv("TARV_SEQUENCE_OPERATIONS"))
        return std::max<int64_t>(1, std::atoll(asked));
    const char* isLong = std::getenv("TARV_LONG");
    return isLong && *isLong == '1' ? 1000000 : 10000;
}

TEST(ProgramSequences, NothingVanishesButByAnActionThatNamesIt) {
    constexpr int32_t kOperationsOfOne = 500;
    const int64_t sequences = std::max<int64_t>(1, operationCount() / kOperationsOfOne);
    for (int64_t seed = 1; seed <= sequences && !HasFailure(); ++seed)
        CProgramSequence(static_cast<uint64_t>(seed)).run(kOperationsOfOne);
}

}  // namespace
}  // namespace tarv
