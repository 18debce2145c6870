// Reads traces of hosts and plays them back beside a reference effect whose settings come before its resume.

#include "CTracePlayer.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <sstream>
#include <thread>

namespace tarv::host {

namespace {

bool isDispatch(const CTraceCall& call, int32_t opcode) {
    return call.kind == CTraceCall::kDispatch && call.opcode == opcode;
}

bool isEditorCall(const CTraceCall& call) {
    return isDispatch(call, vst::kEffectEditGetRect) || isDispatch(call, vst::kEffectEditOpen) ||
           isDispatch(call, vst::kEffectEditClose) || isDispatch(call, vst::kEffectEditIdle);
}

bool isStateChange(const CTraceCall& call) {
    return call.kind == CTraceCall::kSet || isDispatch(call, vst::kEffectSetProgram) ||
           isDispatch(call, vst::kEffectSetChunk);
}

bool readCall(const std::string& text, CTraceCall& call) {
    std::istringstream in(text);
    char letter = 0;
    std::string kind, word;
    in >> letter >> call.thread >> kind;
    if (kind == "dispatch") {
        std::string value;
        in >> call.opcode >> word >> call.index >> word >> value >> word >> call.opt;
        call.value = value == "pointer" ? 0 : std::atoll(value.c_str());
        call.kind = CTraceCall::kDispatch;
        if (call.opcode == vst::kEffectCanDo) {
            std::getline(in, word, '"');
            std::getline(in, call.text, '"');
        }
    } else if (kind == "set") {
        in >> call.index >> word >> call.opt;
        call.kind = CTraceCall::kSet;
    } else if (kind == "get") {
        in >> call.index;
        call.kind = CTraceCall::kGet;
    } else if (kind == "process32") {
        in >> word >> call.value;
        call.isInPlace = text.find("in place") != std::string::npos;
        call.kind = CTraceCall::kProcess;
    } else {
        return false;
    }
    return letter == 't' && !in.fail();
}

/// Reads one line and those that continue it.
bool nextLine(std::istream& in, std::string& line) {
    std::string part;
    line.clear();
    while (std::getline(in, part)) {
        line += part;
        if (!line.empty() && line.back() != '|') {
            return true;
        }
    }
    return false;
}

}  // namespace

std::vector<CTraceCall> readTrace(const char* lines) {
    std::vector<CTraceCall> calls;
    std::istringstream in(lines);
    std::string line;
    while (nextLine(in, line)) {
        int32_t times = 1;
        int32_t step = 0;
        if (line[0] != 't') {
            size_t end = 0;
            times = std::stoi(line, &end);
            step = line[end] == '+' ? 1 : 0;
            line.erase(0, end + 1);
        }
        std::vector<CTraceCall> loop;
        std::istringstream pieces(line);
        for (std::string piece; std::getline(pieces, piece, '|');) {
            CTraceCall call;
            if (!readCall(piece, call)) {
                return calls;
            }
            loop.push_back(call);
        }
        for (int32_t round = 0; round < times; ++round) {
            for (CTraceCall call : loop) {
                // Audacity passes the index in the value.
                const bool isInValue = call.kind == CTraceCall::kDispatch &&
                                       call.opcode == vst::kEffectCanBeAutomated && call.index == 0 && loop.size() > 1;
                if (isInValue) {
                    call.value += round * step;
                } else {
                    call.index += round * step;
                }
                calls.push_back(call);
            }
        }
    }
    return calls;
}

/// A thread that runs one task at a time, while the player waits.
class CTracePlayer::CThread {
public:
    CThread() : thread_([this] { run(); }) {}
    ~CThread() {
        work({});
        thread_.join();
    }
    void work(const std::function<void()>& task) {
        std::unique_lock lock(lock_);
        task_ = task;
        isBusy_ = true;
        wake_.notify_all();
        wake_.wait(lock, [this] { return !isBusy_; });
    }

private:
    void run() {
        std::unique_lock lock(lock_);
        for (bool isMore = true; isMore;) {
            wake_.wait(lock, [this] { return isBusy_; });
            isMore = task_ != nullptr;
            if (isMore) {
                task_();
            }
            isBusy_ = false;
            wake_.notify_all();
        }
    }

    std::mutex lock_;
    std::condition_variable wake_;
    std::function<void()> task_;
    bool isBusy_ = false;
    std::thread thread_;
};

CTracePlayer::CTracePlayer(vst::EntryProc entry, const CHostTrace& trace) : entry_(entry), trace_(trace) {
    for (auto& thread : threads_) {
        thread = std::make_unique<CThread>();
    }
}

CTracePlayer::~CTracePlayer() = default;

void CTracePlayer::makeChunks(vst::EntryProc entry) {
    CVstHost donor;
    if (donor.open(entry)) {
        // All but bypass and oversampling, the last one: at another oversampling every effect would start anew.
        for (int32_t i = 1; i < donor.effect()->numParams - 1; ++i) {
            donor.setParameter(i, 0.3f + 0.02f * static_cast<float>(i));
        }
        chunks_[0] = donor.chunk(false);
        chunks_[1] = donor.chunk(true);
    }
}

void CTracePlayer::runOn(int32_t thread, const std::function<void()>& task) {
    threads_.at(static_cast<size_t>(thread))->work(task);
}

std::string CTracePlayer::play(const std::vector<CTraceCall>& calls) {
    const auto isSetChunk = [](const CTraceCall& call) { return isDispatch(call, vst::kEffectSetChunk); };
    if (std::any_of(calls.begin(), calls.end(), isSetChunk)) {
        makeChunks(entry_);
    }
    subject_.answers.vendor = trace_.vendor;
    subject_.answers.product = trace_.product;
    subject_.answers.masterVersion = trace_.masterVersion;
    subject_.answers.processLevel = trace_.processLevel;
    runOn(0, [this] { subject_.create(entry_); });
    if (!subject_.effect()) {
        return "no effect";
    }
    channels_ = subject_.effect()->numInputs;
    for (const CTraceCall& call : calls) {
        if (!subject_.effect()) {
            return "a call behind the last one";
        }
        blocksInARow_ = call.kind == CTraceCall::kProcess ? blocksInARow_ + 1 : 0;
        if (blocksInARow_ <= kBlocksInARow) {
            runOn(call.thread, [&] { make(call); });
        }
    }
    const auto isEdit = [](const std::string& report) { return report != "update"; };
    const auto edit = std::find_if(subject_.edits.begin(), subject_.edits.end(), isEdit);
    if (edit != subject_.edits.end()) {
        fail("the effect reports: " + *edit);
    }
    return difference_;
}

void CTracePlayer::make(const CTraceCall& call) {
    if (isEditorCall(call)) {
        callEditor(call);
        return;
    }
    if (isStateChange(call)) {
        change(subject_, call);
        changes_.push_back(call);
        if (reference_) {
            change(*reference_, call);
        }
        return;
    }
    switch (call.kind) {
        case CTraceCall::kDispatch:
            dispatch(call);
            break;
        case CTraceCall::kGet:
            subject_.parameter(call.index);
            break;
        default:
            process(call);
    }
}

void CTracePlayer::dispatch(const CTraceCall& call) {
    char text[512] = {};
    std::memcpy(text, call.text.c_str(), call.text.size());
    if (call.opcode == vst::kEffectClose) {
        compareStates();  // Qtractor quits without a `mains off`
        subject_.close();
        return;
    }
    if (call.opcode == vst::kEffectMainsChanged && call.value == 0) {
        compareStates();
        reference_.reset();
    }
    rate_ = call.opcode == vst::kEffectSetSampleRate ? call.opt : rate_;
    blockSize_ = call.opcode == vst::kEffectSetBlockSize ? static_cast<int32_t>(call.value) : blockSize_;
    subject_.dispatch(call.opcode, call.index, static_cast<intptr_t>(call.value), text, call.opt);
}

void CTracePlayer::change(CVstHost& host, const CTraceCall& call) {
    if (call.kind == CTraceCall::kSet) {
        host.setParameter(call.index, call.opt);
    } else if (call.opcode == vst::kEffectSetProgram) {
        host.setProgram(static_cast<int32_t>(call.value));
    } else if (!host.setChunk(chunks_[call.index != 0], call.index != 0)) {
        fail("a chunk was refused");
    }
}

void CTracePlayer::startReference() {
    reference_ = std::make_unique<CVstHost>(subject_.answers);
    reference_->open(entry_);
    reference_->prepare(static_cast<double>(rate_), blockSize_, vst::kPrecision32);
    for (const CTraceCall& call : changes_) {
        change(*reference_, call);
    }
    reference_->resume();
}

void CTracePlayer::process(const CTraceCall& call) {
    if (!reference_) {
        startReference();
    }
    const auto frames = static_cast<int32_t>(call.value);
    const auto count = static_cast<size_t>(frames);
    std::vector<std::vector<float>> input(static_cast<size_t>(channels_), std::vector<float>(count));
    for (auto& channel : input) {
        for (float& sample : channel) {
            seed_ = seed_ * 1664525u + 1013904223u;
            sample = static_cast<float>(seed_ >> 8) / 33554432.0f - 0.25f;
        }
    }
    std::vector<std::vector<float>> outputs[2] = {input, input};
    for (int32_t i = 0; i < 2; ++i) {
        std::vector<float*> from, into;
        for (size_t c = 0; c < input.size(); ++c) {
            into.push_back(outputs[i][c].data());
            from.push_back(call.isInPlace && i == 0 ? into.back() : input[c].data());
        }
        (i == 0 ? subject_ : *reference_).process(from.data(), into.data(), frames);
    }
    for (const float sample : outputs[0][0]) {
        level_ = std::max(level_, std::fabs(static_cast<double>(sample)));
    }
    for (size_t c = 0; c < input.size() && difference_.empty(); ++c) {
        if (std::memcmp(outputs[0][c].data(), outputs[1][c].data(), count * sizeof(float)) != 0) {
            difference_ = "channel " + std::to_string(c) + " differs in block " + std::to_string(blockCount_);
        }
    }
    ++blockCount_;
}

void CTracePlayer::compareStates() {
    if (!reference_) {
        startReference();
    }
    for (int32_t i = 0; i < subject_.effect()->numParams; ++i) {
        if (subject_.parameter(i) != reference_->parameter(i)) {
            fail("parameter " + std::to_string(i) + " differs");
        }
    }
    if (subject_.chunk(false) != reference_->chunk(false)) {
        fail("the chunk differs");
    }
}

}  // namespace tarv::host
