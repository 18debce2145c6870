#include "Audio/VST/CAudioWrapperVST.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Parameters/CAudioExtParam.h"
#include "Audio/VST/CAudioWrapperVSTEditor.h"
#include "Audio/VST/VstAnswers.h"
#include "Core/CApplication.h"
#include "Core/CApplicationData.h"
#include "Product/Product.h"

namespace tarv {
namespace {

struct CHostAnswers {
    intptr_t version = 2400;
    const char* vendor = "Any";
    const char* product = "Any";
    intptr_t level = vst::kLevelRealtime;
    const vst::TimeInfo* time = nullptr;
    int32_t automated = -1;
    float automation = -1.0f;
    int32_t timeRequest = 0;
    int32_t ioChanges = 0;
    int32_t displayUpdates = 0;
    std::vector<std::pair<int32_t, int32_t>> edits;  ///< opcode, index
};
CHostAnswers answers;

intptr_t answerHost(vst::AEffect*, int32_t opcode, int32_t index, intptr_t value, void* ptr, float opt) {
    switch (opcode) {
        case vst::kHostVersion:
            return answers.version;
        case vst::kHostGetVendorString:
            return std::strcpy(static_cast<char*>(ptr), answers.vendor) != nullptr;
        case vst::kHostGetProductString:
            return std::strcpy(static_cast<char*>(ptr), answers.product) != nullptr;
        case vst::kHostGetProcessLevel:
            return answers.level;
        case vst::kHostGetTime:
            answers.timeRequest = static_cast<int32_t>(value);
            return reinterpret_cast<intptr_t>(answers.time);
        case vst::kHostIoChanged:
            return ++answers.ioChanges;
        case vst::kHostUpdateDisplay:
            return ++answers.displayUpdates;
        case vst::kHostAutomate:
            answers.automated = index;
            answers.automation = opt;
            return 1;
        case vst::kHostBeginEdit:
        case vst::kHostEndEdit:
            answers.edits.emplace_back(opcode, index);
            return 1;
        default:
            return 0;
    }
}

class CAudioWrapperVSTTest : public ::testing::Test {
protected:
    void SetUp() override {
        ensureProductStarted();
        answers = CHostAnswers();
    }
    CAudioWrapperVST& make() {
        vst::AEffect* effect = CAudioWrapperVST::create(&answerHost);
        EXPECT_NE(effect, nullptr);
        wrapper.reset(static_cast<CAudioWrapperVST*>(static_cast<AudioEffectX*>(effect->object)));
        return *wrapper;
    }
    std::unique_ptr<CAudioWrapperVST> wrapper;
};

TEST_F(CAudioWrapperVSTTest, TheFocusFollowsTheLastHostOfTheProcess) {
    for (const auto& [vendor, isTaken] : {std::pair{"Steinberg", false}, {"Any", true}}) {
        answers.vendor = vendor;
        make();
        EXPECT_EQ(CAudioWrapperVST::isFocusTaken(), isTaken) << vendor;
    }
}

TEST_F(CAudioWrapperVSTTest, TheProcessLockIsEnabledForAHostThatNeedsIt) {
    EXPECT_FALSE(make().hasProcessLock());
    answers.product = "WaveLab";
    EXPECT_TRUE(make().hasProcessLock());
}

TEST_F(CAudioWrapperVSTTest, EditsOnAnotherThreadAreNotReportedToAHostThatTakesThemOnTheFirstOnly) {
    const std::vector<std::pair<int32_t, int32_t>> edit = {{vst::kHostBeginEdit, 4}, {vst::kHostEndEdit, 4}};
    const auto editOn = [](CAudioWrapperVST& w, bool isOther) {
        const auto work = [&] {
            w.hostParamEdited(4, true);
            w.hostParamEdited(4, false);
        };
        answers.edits.clear();
        isOther ? std::thread(work).join() : work();
        return answers.edits;
    };
    EXPECT_EQ(editOn(make(), false), edit);
    EXPECT_EQ(editOn(*wrapper, true), edit);
    answers.product = "Ardour";
    EXPECT_EQ(editOn(make(), false), edit);
    EXPECT_EQ(editOn(*wrapper, true), (std::vector<std::pair<int32_t, int32_t>>{}));
}

TEST_F(CAudioWrapperVSTTest, TheHostsNamesAreKept) {
    answers.vendor = "Some Vendor";
    answers.product = "Some Product";
    EXPECT_EQ(make().hostTraits().vendor, CString("Some Vendor"));
    EXPECT_EQ(wrapper->hostTraits().product, CString("Some Product"));
    EXPECT_TRUE(wrapper->hostTraits().isManyChannels);
}

TEST_F(CAudioWrapperVSTTest, RefusedPrecisionsChangeNothing) {
    CAudioWrapperVST& w = make();
    EXPECT_FALSE(w.isDoublePrecision());
    EXPECT_TRUE(w.setProcessPrecision(1));
    EXPECT_FALSE(w.setProcessPrecision(2));
    EXPECT_TRUE(w.isDoublePrecision());
    EXPECT_TRUE(w.setProcessPrecision(0));
    EXPECT_FALSE(w.setProcessPrecision(-1));
    EXPECT_FALSE(w.isDoublePrecision());
}

TEST_F(CAudioWrapperVSTTest, ResumeTakesRateAndBlockSizeFromTheHost) {
    CAudioWrapperVST& w = make();
    vst::AEffect* e = w.getAeffect();
    e->dispatcher(e, vst::kEffectSetSampleRate, 0, 0, nullptr, 47999.5f);
    e->dispatcher(e, vst::kEffectSetBlockSize, 0, 96, nullptr, 0.0f);
    EXPECT_EQ(w.env()->sampleRate(), 44100.0);
    w.resume();
    EXPECT_EQ(w.env()->sampleRate(), 47999.5);
    EXPECT_EQ(w.env()->blockSize(), 96);
    EXPECT_TRUE(w.isActive());
    e->dispatcher(e, vst::kEffectSetSampleRate, 0, 0, nullptr, 96000.0f);
    e->dispatcher(e, vst::kEffectSetBlockSize, 0, 128, nullptr, 0.0f);
    EXPECT_EQ(w.env()->sampleRate(), 96000.0) << "the next block runs at it, without a suspend";
    EXPECT_EQ(w.env()->blockSize(), 128);
    w.suspend();
    EXPECT_FALSE(w.isActive());
}

TEST_F(CAudioWrapperVSTTest, ANewLatencyIsInTheEffectBeforeTheHostIsNotified) {
    CAudioWrapperVST& w = make();
    w.resume();
    EXPECT_EQ(w.getAeffect()->initialDelay, 0);
    w.env()->setLatency(37);
    w.hostIoChanged();
    EXPECT_EQ(w.getAeffect()->initialDelay, 37);
    EXPECT_EQ(answers.ioChanges, 1);
}

TEST_F(CAudioWrapperVSTTest, TheTempoCountsOnlyWithItsValidFlag) {
    CAudioWrapperVST& w = make();
    vst::TimeInfo time{};
    time.tempo = 93.5;
    double bpm = 0.0;
    EXPECT_FALSE(w.hostTempo(bpm));
    EXPECT_EQ(answers.timeRequest, 1024);
    answers.time = &time;
    time.flags = ~vst::kTimeTempoValid;
    EXPECT_FALSE(w.hostTempo(bpm));
    time.flags = vst::kTimeTempoValid;
    EXPECT_TRUE(w.hostTempo(bpm));
    EXPECT_EQ(bpm, 93.5);
}

TEST_F(CAudioWrapperVSTTest, AChangeOfTheEngineReachesTheHostsAutomation) {
    CAudioWrapperVST& w = make();
    CAudioExtParam& changed = *w.extParamList()->param(3);
    changed.param()->setValue(changed.group(), changed.elementIndex(), 1.25);
    EXPECT_EQ(answers.automated, 3);
    EXPECT_EQ(answers.automation, w.getParameter(3));
    answers.automated = -1;
    w.setParameter(3, 0.5f);
    EXPECT_EQ(answers.automated, -1) << "the host made this change: no notification";
}

TEST_F(CAudioWrapperVSTTest, AProgramOfTheEngineUpdatesTheDisplayAndOneOfTheHostDoesNot) {
    CAudioWrapperVST& w = make();
    EXPECT_EQ(w.paramRegistry()->activateRomPreset(4), nullptr);
    EXPECT_EQ(answers.displayUpdates, 1);
    EXPECT_GE(answers.automated, 0);
    answers.automated = -1;
    w.setProgram(2);
    w.setProgramName("Other");
    void* data = nullptr;
    const int32_t size = w.getChunk(&data, false);
    const std::string bank(static_cast<const char*>(data), static_cast<size_t>(size));
    w.setParameter(1, 0.1f);
    EXPECT_EQ(w.setChunk(bank.data(), static_cast<intptr_t>(bank.size()), false), 1);
    EXPECT_EQ(answers.displayUpdates, 1);
    EXPECT_EQ(answers.automated, -1);
    w.paramRegistry()->renameProgram(2, "Mine");
    EXPECT_EQ(answers.displayUpdates, 2);
}

TEST_F(CAudioWrapperVSTTest, ANullListOfEventsIsAccepted) {
    EXPECT_EQ(make().processEvents(nullptr), 1);
}

TEST_F(CAudioWrapperVSTTest, TheCategoryIsTheOneNamedInTheProject) {
    EXPECT_EQ(make().getPlugCategory(), vst::kCategoryEffect);
    const struct {
        const char* name;
        int32_t value;
    } rows[] = {
        {"kPlugCategUnknown", 0},     {"kPlugCategEffect", 1},
        {"kPlugCategSynth", 2},       {"kPlugCategAnalysis", 3},
        {"kPlugCategMastering", 4},   {"kPlugCategSpacializer", 5},
        {"kPlugCategRoomFx", 6},      {"kPlugSurroundFx", 7},
        {"kPlugCategRestoration", 8}, {"kPlugCategOfflineProcess", 9},
        {"kPlugCategShell", 10},      {"kPlugCategGenerator", 11},
        {"kPlugCategEffects", 0},     {"", 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(vstCategory(row.name), row.value) << row.name;
    }
}

TEST_F(CAudioWrapperVSTTest, ChannelLabelsComeFromTheHostsSpeakers) {
    CAudioWrapperVST& w = make();
    vst::SpeakerArrangement in{};
    in.type = vst::kArrangementUserDefined;
    in.numChannels = 4;
    in.speakers[0].type = vst::kSpeakerL;
    in.speakers[1].type = vst::kSpeakerLfe;
    in.speakers[2].type = vst::kSpeakerUndefined;
    in.speakers[3].type = vst::kSpeakerR;
    std::strcpy(in.speakers[3].name, "Mine");
    vst::SpeakerArrangement out{};
    out.numChannels = 9;
    std::memset(out.speakers[7].name, 'x', sizeof out.speakers[7].name);
    ASSERT_TRUE(w.setSpeakerArrangement(&in, &out));
    ASSERT_EQ(w.speakers().inputs().labelCount, 4);
    const char* expected[] = {"L", "Lfe", "3", "Mine"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(w.speakers().inputs().labels[i], CString(expected[i]));
    }
    ASSERT_EQ(w.speakers().outputs().labelCount, 8);
    EXPECT_EQ(w.speakers().outputs().labels[7].length(), 64);
}

/// Keeps the last labels of outputs that the engine sent.
class CLabelReader final : public CAudioInterfaceClientEnd {
public:
    CError* onProcessBaseData(CInputStream& stream) override {
        uint32_t type = 0;
        uint32_t kind = 0;
        TARV_TRY(takeField(stream, type));
        if (type == kData) {
            TARV_TRY(takeField(stream, kind));
        }
        return type == kData && kind == static_cast<uint32_t>(CDataKind::OutputLabels) ? takeField(stream, labels)
                                                                                       : nullptr;
    }
    const CString& errorContextName() const { return none_; }
    CTextList labels;

private:
    CString none_;
};

TEST_F(CAudioWrapperVSTTest, EditorsGetTheLabelsOfTheHostsOutputs) {
    CAudioWrapperVST& w = make();
    auto& connector = dynamic_cast<CAudioInterfaceBaseConnectorVST&>(*w.interfaceBase()->connector());
    CLabelReader reader;
    ASSERT_GE(connector.addClient(reader), 0);
    vst::SpeakerArrangement in{};
    vst::SpeakerArrangement out{};
    out.numChannels = 2;
    out.speakers[0].type = vst::kSpeakerL;
    std::strcpy(out.speakers[1].name, "Mine");
    ASSERT_TRUE(w.setSpeakerArrangement(&in, &out));
    ASSERT_EQ(reader.labels.count(), 2);
    EXPECT_EQ(reader.labels[0], CString("L"));
    EXPECT_EQ(reader.labels[1], CString("Mine"));
    connector.removeClient(reader);
}

class CWheelEditor : public AEffEditor {
public:
    bool getRect(vst::Rect**) override { return false; }
    bool open(void*) override { return false; }
    void close() override {}
    bool isOpen() const override { return false; }
    void idle() override {}
    bool onWheel(float distance) override {
        turned = distance;
        return distance < 0.0f;
    }
    float turned = 0.0f;
};

class CWrapperWithEditor : public CAudioWrapperVST {
public:
    CWrapperWithEditor() : CAudioWrapperVST(&answerHost) { setEditor(wheel = new CWheelEditor); }
    CWheelEditor* wheel;
};

TEST_F(CAudioWrapperVSTTest, AWheelReportReachesTheEditorAndItsAnswerReachesTheHost) {
    CWrapperWithEditor w;
    EXPECT_EQ(w.vendorSpecific(0x73744341, 0x57686565, nullptr, -1.5f), 1);
    EXPECT_EQ(w.wheel->turned, -1.5f);
    EXPECT_EQ(w.vendorSpecific(0x73744341, 0x57686565, nullptr, 2.0f), 0);
    EXPECT_EQ(w.wheel->turned, 2.0f);
    EXPECT_EQ(w.vendorSpecific(0x73744341, 0x57686564, nullptr, -1.0f), 0);
    EXPECT_EQ(w.vendorSpecific(0x73744340, 0x57686565, nullptr, -1.0f), 0);
    EXPECT_EQ(w.wheel->turned, 2.0f);
}

TEST_F(CAudioWrapperVSTTest, TheEditorHasTheProjectsSizeAndFailsToOpenWithoutAWindow) {
    CAudioWrapperVST& w = make();
    CAudioWrapperVSTEditor editor(w);
    EXPECT_EQ(editor.getEffect(), &w);
    vst::Rect* rect = nullptr;
    ASSERT_TRUE(editor.getRect(&rect));
    EXPECT_EQ(rect->top, 0);
    EXPECT_EQ(rect->left, 0);
    EXPECT_EQ(rect->bottom, 400);
    EXPECT_EQ(rect->right, 640);
    int window = 0;
    EXPECT_FALSE(editor.open(&window));
    EXPECT_FALSE(editor.isOpen());
    editor.close();
    EXPECT_TRUE(w.getAeffect()->flags & vst::kFlagHasEditor);
}

TEST_F(CAudioWrapperVSTTest, TheEditorsRectangleFollowsTheChosenScaleWhileNoEditorIsOpen) {
    CAudioWrapperVSTEditor editor(make());
    const auto size = [&](const char* scale) {
        CLocalData::instance().writeText("ui-scale", scale);
        vst::Rect* rect = nullptr;
        EXPECT_TRUE(editor.getRect(&rect));
        return std::pair<int, int>(rect->right, rect->bottom);
    };
    EXPECT_EQ(size("1.25"), std::pair(800, 500));
    EXPECT_EQ(size("0.8"), std::pair(512, 320));
    CError* error = CApplication::openEditor();
    ASSERT_FALSE(error) << error->joined().toUtf8();
    EXPECT_EQ(size("1.25"), std::pair(512, 320)) << "another instance's editor is open";
    CApplication::closeEditor();
    EXPECT_EQ(size("1.25"), std::pair(800, 500));
    EXPECT_EQ(size("1.0"), std::pair(640, 400));
}

TEST_F(CAudioWrapperVSTTest, AnEditorThatFailsToOpenDoesNotCountAsOpen) {
    CAudioWrapperVSTEditor editor(make());
    int window = 0;
    EXPECT_FALSE(editor.open(&window));
    CLocalData::instance().writeText("ui-scale", "1.25");
    CApplication::refreshUiScale();
    EXPECT_EQ(CApplication::uiScale(), 1.25);
    CLocalData::instance().writeText("ui-scale", "1.0");
    CApplication::refreshUiScale();
}

}  // namespace
}  // namespace tarv
