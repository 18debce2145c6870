#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "CHostileSide.h"

namespace tarv {

/// Two instances, their hosts, hands and files at random, by a seed: everything that an editor meets, in any order and
/// inside one another. What must be true at rest is asked by `rest`.
class CHostileSession : public testing::Test {
protected:
    static constexpr int32_t kSides = 2;

    CHostileSession();
    ~CHostileSession() override;

    int32_t any(int32_t count) { return static_cast<int32_t>(random_() % static_cast<uint32_t>(count)); }
    CHostileSide& side(int32_t index) { return *sides_[static_cast<size_t>(index)]; }
    CHostileSide& anySide() { return side(any(kSides)); }
    /// One act of hands, of a host, of the system or of files.
    void step();
    /// Both editors are opened.
    void openAll();
    /// Hands off, lists and windows closed, all that waits served.
    void calm();
    /// What holds at rest. Leaves both editors open.
    void rest();
    /// The acts since the last rest, for who has to look.
    const std::string& trace() const { return trace_; }

    CWindowSystemByHand system_;
    std::mt19937 random_;
    /// Other threads play and automate.
    bool isAudioElsewhere_ = false;

private:
    struct CPlace {
        CWindow* window = nullptr;
        const CView* view = nullptr;
    };
    CPlace anyPlace();
    void hand();
    void pointAt(const CPlace& place);
    void key();
    void host();
    void loseEngine(CHostileSide& of);
    void rescale();
    void state(CHostileSide& of);
    void system();
    void files();
    /// Of a host inside a call to it, or of a user while a file is asked for. `isClosing`: closes and opens, too.
    void nested(bool isClosing);
    void answerCalls();
    std::string file(int32_t which) const;

    void expectValues(CHostileSide& of);
    void expectHistory(CHostileSide& of);
    void expectNothingHeld(CHostileSide& of);
    void expectSameWhenReopened(CHostileSide& of);
    void expectFreshInstanceEqual(CHostileSide& of);

    std::vector<std::unique_ptr<CHostileSide>> sides_;
    std::string chunks_[2];
    std::string trace_;
    int32_t depth_ = 0;
};

}  // namespace tarv
