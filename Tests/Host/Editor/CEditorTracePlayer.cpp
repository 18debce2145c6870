// The host's side of an editor in a trace.

#include "Tests/Host/Editor/CEditorTracePlayer.h"

#include <set>

namespace tarv::host {

namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 400;
/// An empty window has one colour or two; the editor's first picture some hundreds.
constexpr size_t kColorsOfAPicture = 20;

}  // namespace

CEditorTracePlayer::~CEditorTracePlayer() {
    runOn(thread_, [this] {
        if (parent_ && subject().effect()) {
            close();
        }
        desk_.reset();
    });
}

void CEditorTracePlayer::callEditor(const CTraceCall& call) {
    if (!desk_) {
        desk_ = std::make_unique<CHostDesk>();
        thread_ = call.thread;
    }
    switch (call.opcode) {
        case vst::kEffectEditGetRect:
            compareRect();
            break;
        case vst::kEffectEditOpen:
            open();
            break;
        case vst::kEffectEditClose:
            close();
            break;
        default:
            subject().dispatch(call.opcode, call.index, static_cast<intptr_t>(call.value), nullptr, call.opt);
            desk_->serve();
            ++idles_;
    }
}

void CEditorTracePlayer::compareRect() {
    vst::Rect* rect = nullptr;
    if (subject().dispatch(vst::kEffectEditGetRect, 0, 0, &rect) != 1 || !rect || rect->left != 0 || rect->top != 0 ||
        rect->right != kWidth || rect->bottom != kHeight) {
        fail("the host gets another size");
    }
}

void CEditorTracePlayer::open() {
    const bool isAgain = parent_ != nullptr;
    if (!isAgain) {
        parent_ = desk_->openParent(kWidth, kHeight);
    }
    // An editor that stands in that very window is not opened twice.
    if (subject().dispatch(vst::kEffectEditOpen, 0, 0, parent_) != (isAgain ? 0 : 1)) {
        fail("the opening has another answer");
    }
    const std::vector<uint32_t> pixels = desk_->pixels(parent_, 0, 0, kWidth, kHeight);
    if (desk_->childCount(parent_) != 1 ||
        std::set<uint32_t>(pixels.begin(), pixels.end()).size() < kColorsOfAPicture) {
        fail("the opening returns without a picture");
    }
    ++openings_;
}

void CEditorTracePlayer::close() {
    if (parent_ && isParentDestroyedFirst_) {
        desk_->destroyParent(parent_);
        parent_ = nullptr;
    }
    subject().dispatch(vst::kEffectEditClose);
    if (parent_) {
        if (desk_->childCount(parent_) != 0) {
            fail("the close leaves a window");
        }
        desk_->destroyParent(parent_);
        parent_ = nullptr;
    }
    if (!desk_->popups().empty()) {
        fail("the close leaves a popup");
    }
}

}  // namespace tarv::host
