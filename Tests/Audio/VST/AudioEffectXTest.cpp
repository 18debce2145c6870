#include "Audio/VST/AudioEffectX.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarv {
namespace {

using vst::AEffect;

struct CFakeHost {
    std::vector<int32_t> opcodes;
    std::string text;
    int32_t automated = -1;
    float automation = 0.0f;
};
CFakeHost* fakeHost = nullptr;

intptr_t answerHost(AEffect*, int32_t opcode, int32_t index, intptr_t, void* ptr, float opt) {
    fakeHost->opcodes.push_back(opcode);
    if (opcode == vst::kHostGetVendorString || opcode == vst::kHostGetProductString) {
        std::memcpy(ptr, fakeHost->text.c_str(), fakeHost->text.size() + 1);
        return 1;
    }
    if (opcode == vst::kHostAutomate) {
        fakeHost->automated = index;
        fakeHost->automation = opt;
    }
    return opcode == vst::kHostVersion ? 2400 : opcode == vst::kHostGetProcessLevel ? 4 : 0;
}

/// Records the calls that reach it, and copies its inputs plus one to its outputs.
class CNotingEffect : public AudioEffectX {
public:
    explicit CNotingEffect(vst::HostCallback host) : AudioEffectX(host, 3, 5) {
        setNumInputs(2);
        setNumOutputs(2);
    }
    ~CNotingEffect() override {
        if (onDelete) {
            *onDelete = true;
        }
    }

    void suspend() override { log += "suspend"; }
    void resume() override { log += "resume"; }
    void processReplacing(float** inputs, float** outputs, int32_t frames) override {
        longest = std::max(longest, frames);
        for (int c = 0; c < 2; ++c) {
            for (int32_t i = 0; i < frames; ++i) {
                outputs[c][i] = (inputs[c] ? inputs[c][i] : 0.0f) + 1.0f;
            }
        }
    }
    void processDoubleReplacing(double**, double**, int32_t frames) override { note("double", frames); }
    void setParameter(int32_t index, float value) override {
        if (throwsNext) {
            throw std::runtime_error("no memory");
        }
        note("set", index);
        lastValue = value;
    }
    float getParameter(int32_t index) override { return index == 2 ? 0.25f : 0.0f; }
    int32_t getProgram() override { return 2; }
    void setProgram(int32_t program) override { note("setProgram", program); }
    void setProgramName(const char* text) override { log += std::string("setProgramName ") + text; }
    void getProgramName(char* text) override { std::strcpy(text, "program"); }
    int32_t getChunk(void** data, bool isProgram) override {
        *data = this;
        return isProgram ? 11 : 22;
    }
    int32_t setChunk(const void*, intptr_t size, bool isProgram) override {
        note(isProgram ? "program chunk" : "bank chunk", static_cast<int32_t>(size));
        return 1;
    }
    void getParameterLabel(int32_t index, char* text) override { write("label", index, text); }
    void getParameterDisplay(int32_t index, char* text) override { write("shown", index, text); }
    void getParameterName(int32_t index, char* text) override { write("name", index, text); }
    bool getProgramNameIndexed(int32_t index, char* text) override { return write("program", index, text), true; }
    bool setProcessPrecision(int32_t precision) override { return note("precision", precision), true; }
    int32_t processEvents(const vst::Events* events) override { return events->numEvents; }
    bool getEffectName(char* text) override { return std::strcpy(text, "effect"), true; }
    bool getVendorString(char* text) override { return std::strcpy(text, "vendor"), true; }
    bool getProductString(char* text) override { return std::strcpy(text, "product"), true; }
    int32_t getVendorVersion() override { return 1800; }
    intptr_t vendorSpecific(int32_t index, intptr_t value, void*, float opt) override {
        return index * 100 + value * 10 + static_cast<intptr_t>(opt);
    }
    intptr_t canDo(const char* text) override { return std::strcmp(text, "this") == 0; }
    int32_t getPlugCategory() override { return vst::kCategoryEffect; }

    using AudioEffectX::getCurrentProcessLevel;
    using AudioEffectX::getHostProductString;
    using AudioEffectX::getHostVendorString;
    using AudioEffectX::getMasterVersion;
    using AudioEffectX::getTimeInfo;
    using AudioEffectX::setEditor;
    using AudioEffectX::setParameterAutomated;

    std::string log;
    float lastValue = -1.0f;
    int32_t longest = 0;
    bool throwsNext = false;
    bool* onDelete = nullptr;

private:
    void note(const char* what, int32_t value) { log += std::string(what) + " " + std::to_string(value); }
    void write(const char* what, int32_t index, char* text) { std::sprintf(text, "%s%d", what, index); }
};

class AudioEffectXTest : public ::testing::Test {
protected:
    AudioEffectXTest() { fakeHost = &host; }
    intptr_t call(int32_t opcode, int32_t index = 0, intptr_t value = 0, void* ptr = nullptr, float opt = 0.0f) {
        return effect().dispatcher(&effect(), opcode, index, value, ptr, opt);
    }
    AEffect& effect() { return *noting.getAeffect(); }

    CFakeHost host;
    CNotingEffect noting{&answerHost};
};

TEST_F(AudioEffectXTest, ANewEffectHasTheMagicNumberAndAllFunctions) {
    EXPECT_EQ(effect().magic, 0x56737450);
    EXPECT_EQ(effect().numPrograms, 3);
    EXPECT_EQ(effect().numParams, 5);
    EXPECT_TRUE(effect().dispatcher && effect().process && effect().processReplacing && effect().setParameter &&
                effect().processDoubleReplacing && effect().getParameter);
    EXPECT_EQ(effect().flags, 0);
}

TEST_F(AudioEffectXTest, EachOpcodeReachesItsOperation) {
    const struct {
        int32_t opcode;
        int32_t index;
        intptr_t value;
        float opt;
        intptr_t answer;
        const char* log;
        const char* text;
    } cases[] = {
        {2, 0, 1, 0.0f, 0, "setProgram 1", ""},
        {3, 0, 0, 0.0f, 2, "", ""},
        {5, 0, 0, 0.0f, 0, "", "program"},
        {6, 4, 0, 0.0f, 0, "", "label4"},
        {7, 4, 0, 0.0f, 0, "", "shown4"},
        {8, 4, 0, 0.0f, 0, "", "name4"},
        {12, 0, 1, 0.0f, 0, "resume", ""},
        {12, 0, 0, 0.0f, 0, "suspend", ""},
        {22, 0, 0, 0.0f, 0x4e764566, "", ""},
        {24, 0, 9, 0.0f, 1, "bank chunk 9", ""},
        {24, 1, 8, 0.0f, 1, "program chunk 8", ""},
        {26, 4, 0, 0.0f, 1, "", ""},
        {26, 5, 0, 0.0f, 0, "", ""},
        {26, -1, 0, 0.0f, 0, "", ""},
        {29, 1, 0, 0.0f, 1, "", "program1"},
        {35, 0, 0, 0.0f, 1, "", ""},
        {45, 0, 0, 0.0f, 1, "", "effect"},
        {47, 0, 0, 0.0f, 1, "", "vendor"},
        {48, 0, 0, 0.0f, 1, "", "product"},
        {49, 0, 0, 0.0f, 1800, "", ""},
        {50, 1, 2, 3.0f, 123, "", ""},
        {58, 0, 0, 0.0f, 2400, "", ""},
        {77, 0, 1, 0.0f, 1, "precision 1", ""},
    };
    for (const auto& c : cases) {
        noting.log.clear();
        char text[64] = {};
        EXPECT_EQ(call(c.opcode, c.index, c.value, text, c.opt), c.answer) << c.opcode;
        EXPECT_EQ(noting.log, c.log) << c.opcode;
        EXPECT_STREQ(text, c.text) << c.opcode;
    }
    char question[] = "this";
    EXPECT_EQ(call(vst::kEffectCanDo, 0, 0, question), 1);
    vst::Events events{};
    events.numEvents = 2;
    EXPECT_EQ(call(vst::kEffectProcessEvents, 0, 0, &events), 2);
}

TEST_F(AudioEffectXTest, UnknownOpcodesAnswerZeroAndDoNothing) {
    char buffer[512] = {};
    for (int32_t opcode : {-2147483647, -1, 9, 11 + 69, 81, 1000, 2147483647}) {
        EXPECT_EQ(call(opcode, 1, 1, buffer, 1.0f), 0) << opcode;
    }
    EXPECT_EQ(noting.log, "");
    EXPECT_EQ(buffer[0], 0);
}

TEST_F(AudioEffectXTest, EveryOpcodeButCloseTakesANullPointer) {
    for (int32_t opcode = -1; opcode < 100; ++opcode) {
        if (opcode != vst::kEffectClose) {
            call(opcode, 0, 0, nullptr);
        }
    }
}

TEST_F(AudioEffectXTest, ARateOrBlockSizeOutOfRangeIsIgnored) {
    call(vst::kEffectSetSampleRate, 0, 0, nullptr, 47999.5f);
    call(vst::kEffectSetBlockSize, 0, 96);
    for (float rate : {0.0f, -44100.0f, 999.0f, 1.1e7f, std::numeric_limits<float>::infinity(), std::nanf("")}) {
        call(vst::kEffectSetSampleRate, 0, 0, nullptr, rate);
    }
    for (intptr_t frames : {intptr_t{0}, intptr_t{-1}, std::numeric_limits<intptr_t>::max()}) {
        call(vst::kEffectSetBlockSize, 0, frames);
    }
    EXPECT_EQ(noting.sampleRate(), 47999.5f);
    EXPECT_EQ(noting.blockSize(), 96);
}

TEST_F(AudioEffectXTest, TheAccumulatingCallAddsWhatTheReplacingOneWrites) {
    for (int32_t frames : {0, 1, 255, 256, 257, 1000}) {
        std::vector<float> in(1001, 0.5f), left(1001, 10.0f), right(1001, 20.0f);
        float* inputs[] = {in.data(), nullptr};
        float* outputs[] = {left.data(), right.data()};
        effect().process(&effect(), inputs, outputs, frames);
        for (int32_t i = 0; i < 1001; ++i) {
            ASSERT_EQ(left[i], i < frames ? 11.5f : 10.0f) << i;
            ASSERT_EQ(right[i], i < frames ? 21.0f : 20.0f) << i;
        }
    }
    effect().process(&effect(), nullptr, nullptr, 100);
    EXPECT_LE(noting.longest, 256);
}

TEST_F(AudioEffectXTest, AForeignOrNullEffectIsLeftAlone) {
    AEffect foreign{};
    for (AEffect* e : {static_cast<AEffect*>(nullptr), &foreign}) {
        EXPECT_EQ(effect().dispatcher(e, vst::kEffectGetVstVersion, 0, 0, nullptr, 0.0f), 0);
        EXPECT_EQ(effect().getParameter(e, 2), 0.0f);
        effect().setParameter(e, 0, 1.0f);
        effect().process(e, nullptr, nullptr, 1);
        effect().processReplacing(e, nullptr, nullptr, 1);
        effect().processDoubleReplacing(e, nullptr, nullptr, 1);
    }
    EXPECT_EQ(noting.log, "");
}

TEST_F(AudioEffectXTest, NoExceptionReachesTheHost) {
    noting.throwsNext = true;
    effect().setParameter(&effect(), 1, 0.5f);
    noting.throwsNext = false;
    effect().setParameter(&effect(), 1, 0.5f);
    EXPECT_EQ(noting.log, "set 1");
    EXPECT_EQ(noting.lastValue, 0.5f);
    EXPECT_EQ(effect().getParameter(&effect(), 2), 0.25f);
}

TEST_F(AudioEffectXTest, CloseDeletesTheEffect) {
    bool isDeleted = false;
    auto* closing = new CNotingEffect(&answerHost);
    closing->onDelete = &isDeleted;
    AEffect* e = closing->getAeffect();
    EXPECT_EQ(e->dispatcher(e, vst::kEffectClose, 0, 0, nullptr, 0.0f), 1);
    EXPECT_TRUE(isDeleted);
}

TEST_F(AudioEffectXTest, AHostsTextIsCutAt64Characters) {
    char text[65];
    host.text = std::string(300, 'x');
    noting.getHostVendorString(text);
    EXPECT_EQ(std::string(text), std::string(64, 'x'));
    host.text = "Short";
    noting.getHostProductString(text);
    EXPECT_STREQ(text, "Short");
}

TEST_F(AudioEffectXTest, WithoutAHostEveryQuestionGivesZero) {
    CNotingEffect lonely(nullptr);
    char text[65];
    EXPECT_EQ(lonely.getMasterVersion(), 0);
    EXPECT_EQ(lonely.getCurrentProcessLevel(), 0);
    EXPECT_EQ(lonely.getTimeInfo(vst::kTimeTempoValid), nullptr);
    EXPECT_FALSE(lonely.getHostVendorString(text));
    EXPECT_STREQ(text, "");
}

TEST_F(AudioEffectXTest, AChangeFromInsideIsReportedToTheHostAndNotSetAgain) {
    noting.setParameterAutomated(3, 0.75f);
    EXPECT_EQ(host.automated, 3);
    EXPECT_EQ(host.automation, 0.75f);
    EXPECT_EQ(noting.log, "");
}

TEST_F(AudioEffectXTest, SpeakersAreNullByDefault) {
    vst::SpeakerArrangement given{};
    vst::SpeakerArrangement* input = &given;
    vst::SpeakerArrangement* output = &given;
    EXPECT_EQ(call(vst::kEffectGetSpeakerArrangement, 0, reinterpret_cast<intptr_t>(&input), &output), 0);
    EXPECT_EQ(input, nullptr);
    EXPECT_EQ(output, nullptr);
    EXPECT_EQ(call(vst::kEffectGetSpeakerArrangement, 0, 0, &output), 0);
}

class CNotingEditor : public AEffEditor {
public:
    bool getRect(vst::Rect** rect) override { return *rect = &place, true; }
    bool open(void* parent) override { return isOpened = parent != nullptr; }
    void close() override { isOpened = false; }
    bool isOpen() const override { return isOpened; }
    void idle() override { ++idles; }
    bool onWheel(float) override { return false; }

    vst::Rect place{0, 0, 400, 640};
    bool isOpened = false;
    int idles = 0;
};

TEST_F(AudioEffectXTest, TheEditorFlagFollowsTheEditor) {
    vst::Rect* rect = nullptr;
    EXPECT_EQ(call(vst::kEffectEditGetRect, 0, 0, &rect), 0);
    EXPECT_EQ(call(vst::kEffectEditOpen, 0, 0, &rect), 0);
    auto* editor = new CNotingEditor;
    noting.setEditor(editor);
    EXPECT_TRUE(effect().flags & vst::kFlagHasEditor);
    EXPECT_EQ(call(vst::kEffectEditGetRect, 0, 0, &rect), 1);
    EXPECT_EQ(rect, &editor->place);
    EXPECT_EQ(call(vst::kEffectEditOpen, 0, 0, &rect), 1);
    EXPECT_TRUE(editor->isOpen());
    call(vst::kEffectEditIdle);
    EXPECT_EQ(editor->idles, 1);
    call(vst::kEffectEditClose);
    EXPECT_FALSE(editor->isOpen());
    noting.setEditor(nullptr);
    EXPECT_FALSE(effect().flags & vst::kFlagHasEditor);
}

}  // namespace
}  // namespace tarv
