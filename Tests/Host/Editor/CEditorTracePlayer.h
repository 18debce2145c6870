#pragma once

#include <memory>
#include <vector>

#include "Tests/Host/CTracePlayer.h"
#include "Tests/Host/Editor/CHostDesk.h"

namespace tarv::host {

/// Plays back what a host did with an editor, too, in a real window that is made for each opening, on the thread of the
/// trace. What it expects of the calls is part of the first difference: the size that the host gets is the same at any
/// time, the picture is there when an opening returns, and nothing is left of it when a close returns.
class CEditorTracePlayer final : public CTracePlayer {
public:
    CEditorTracePlayer(vst::EntryProc entry, const CHostTrace& trace, bool isParentDestroyedFirst = false)
        : CTracePlayer(entry, trace), isParentDestroyedFirst_(isParentDestroyedFirst) {}
    ~CEditorTracePlayer() override;

    int32_t openings() const { return openings_; }
    int32_t idles() const { return idles_; }

private:
    void callEditor(const CTraceCall& call) override;
    void compareRect();
    void open();
    void close();

    const bool isParentDestroyedFirst_;
    std::unique_ptr<CHostDesk> desk_;
    int32_t thread_ = 0;  ///< of the desk
    void* parent_ = nullptr;
    int32_t openings_ = 0;
    int32_t idles_ = 0;
};

}  // namespace tarv::host
