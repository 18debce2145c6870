#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "CRenderOptions.h"
#include "CVstHost.h"

namespace tarv::host {

/// A change by number and frame, ready for the loop.
struct CFrameChange {
    int64_t frame;
    int32_t index;
    float value;
};

/// Streams raw audio through one opened effect. `renderAll` does a whole run: settings, resume, blocks, suspend.
class CRenderer {
public:
    CRenderer(CVstHost& host, const CRenderOptions& options) : host_(host), options_(options) {}

    /// Turns names and texts into numbers; changes are sorted by frame. False with the reason.
    bool resolve(std::string& error);
    /// Sets what `resolve` found for the time before the first block.
    void applySettings();
    /// False when reading or writing fails, with the reason.
    bool renderAll(std::FILE* input, std::FILE* output, std::string& error);

    int64_t frames() const { return frames_; }
    double seconds() const { return static_cast<double>(frames_) / options_.rate; }
    /// Wall-clock time of the run.
    double elapsed() const { return elapsed_; }

private:
    template <class Sample>
    bool run(std::FILE* input, std::FILE* output, std::string& error);
    /// Reads up to `wanted` frames; fewer mean the end.
    bool readFrames(std::FILE* input, std::vector<double>& stream, int32_t wanted, int32_t& count,
                    std::string& error) const;
    int32_t nextBlock();
    int32_t cutAtChange(int32_t frames) const;
    void applyChanges();
    void showProgress(bool isLast);

    CVstHost& host_;
    const CRenderOptions& options_;
    std::vector<CFrameChange> settings_;
    std::vector<CFrameChange> changes_;
    size_t nextChange_ = 0;
    uint64_t random_ = 0;
    int64_t frames_ = 0;
    double elapsed_ = 0.0;
    double shownAt_ = 0.0;
};

/// Reads `load` and chooses `preset` of the options. False with the reason.
bool prepareState(CVstHost& host, const CRenderOptions& options, std::string& error);
/// Writes `save` and `saveBank` of the options. False with the reason.
bool saveState(CVstHost& host, const CRenderOptions& options, std::string& error);
/// Prints the programs, the current one marked.
void printPrograms(CVstHost& host, std::FILE* output);
/// Prints names, counts and parameters of an effect.
void printList(CVstHost& host, std::FILE* output);

}  // namespace tarv::host
