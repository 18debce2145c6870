#pragma once

#include <cstdint>

namespace tarv {

/// Where a recorded run names a signal: by it a signal at an end of the run gets another address.
class CSignalPlaces {
public:
    CSignalPlaces() = default;
    /// Of `count` samples, where a storage begins.
    CSignalPlaces(const double* signal, int32_t count) : signal_(signal), count_(count) {}

    bool isHere(const void* address) const {
        const auto* const place = static_cast<const double*>(address);
        return place >= signal_ && place < signal_ + count_;
    }
    /// What is noted from now on belongs to call `number`.
    void beginCall(int32_t number) { next_ = number; }
    /// An address from which so many samples are read.
    void noteRead(void*& address, int32_t samples) { note(read_, address, samples); }
    /// An address to which so many samples are written, whatever stood there: if it is this one, what earlier calls did
    /// there, and what this one reads, concerned another signal.
    void noteFill(void*& address, int32_t samples) {
        beginAnew(address);
        note(filledOperand_, address, samples);
    }
    void noteFill(double*& address, int32_t samples) {
        beginAnew(address);
        note(filled_, address, samples);
    }
    /// An address that has to stay as it is.
    void noteFixed(const void* address) { isFixed_ |= isHere(address); }

    bool isRead() const { return read_ != nullptr; }
    bool isFilled() const { return filledOperand_ != nullptr || filled_ != nullptr; }
    /// One call reads the signal, and nothing else names it.
    bool isReadAlone() const { return !isFixed_ && isRead() && !isFilled(); }
    /// One call fills the signal, and nothing else names it.
    bool isFilledAlone() const { return !isFixed_ && !isRead() && isFilled(); }
    /// The call that names the signal.
    int32_t call() const { return call_; }
    /// Only for a signal that isReadAlone; the call reads what stands at `samples`.
    void readFrom(const void* samples) const { *read_ = const_cast<void*>(samples); }
    /// Only for a signal that isFilledAlone.
    void fill(double* samples) const {
        if (filledOperand_ != nullptr) {
            *filledOperand_ = samples;
        }
        if (filled_ != nullptr) {
            *filled_ = samples;
        }
    }

private:
    CSignalPlaces(const double* signal, int32_t count, int32_t next) : signal_(signal), count_(count), next_(next) {}
    void beginAnew(const void* address) {
        if (isHere(address) && (call_ != next_ || !isFilled())) {
            *this = CSignalPlaces(signal_, count_, next_);
        }
    }
    template <class Address>
    void note(Address*& place, Address& address, int32_t samples) {
        if (!isHere(address)) {
            return;
        }
        isFixed_ |= address != signal_ || samples != count_ || place != nullptr || (call_ != -1 && call_ != next_);
        place = &address;
        call_ = next_;
    }

    const double* signal_ = nullptr;
    int32_t count_ = 0;
    int32_t next_ = 0;
    int32_t call_ = -1;
    bool isFixed_ = false;
    // At most one of each kind; null: none.
    void** read_ = nullptr;
    void** filledOperand_ = nullptr;
    double** filled_ = nullptr;
};

}  // namespace tarv
