#pragma once

#include "Core/CStreams.h"

namespace tarv {

/// The kind of a record, as streams number it.
enum class CAudioVizKind : uint32_t { Meter = 0, Info = 1, Spectrum = 3 };

/// One record of what an editor draws. One thread at a time. In a stream, all little-endian: `kind`, `source` and
/// `channel` in 32 bits, `time` in 64, `group` in 32, then what the kind adds in the order of its members.
class CAudioVizData : public CCheckedObject {
public:
    ~CAudioVizData() override = default;
    /// Writes the whole record, `kind` first.
    [[nodiscard]] virtual CError* write(COutputStream& stream) const;
    /// Reads what follows `kind`. After a failure the record holds a part of it.
    [[nodiscard]] virtual CError* read(CInputStream& stream);

    /// A new record of a kind, with room for `capacity` bins or bytes; null for a number that is no kind.
    static CAudioVizData* create(uint32_t kind, int32_t capacity = 0);
    /// Reads a whole record; the caller owns it. Null, without a failure, for an unknown kind: nothing but `kind` has
    /// been read then, and where that record ends is unknown.
    [[nodiscard]] static CError* readAny(CInputStream& stream, CAudioVizData*& data);

    CAudioVizKind kind() const { return kind_; }

    uint32_t source = 0;   ///< number of the source in its collector
    uint32_t channel = 0;  ///< element within the group
    double time = 0.0;     ///< seconds that the instance has processed, at the start of the host's block
    uint32_t group = 0;

protected:
    explicit CAudioVizData(CAudioVizKind kind) : kind_(kind) {}

private:
    const CAudioVizKind kind_;
};

/// Levels of one channel, linear.
class CAudioVizDataMeter : public CAudioVizData {
public:
    CAudioVizDataMeter() : CAudioVizData(CAudioVizKind::Meter) {}
    [[nodiscard]] CError* write(COutputStream& stream) const override;
    [[nodiscard]] CError* read(CInputStream& stream) override;

    double level = 0.0;  ///< integrated
    double peak = 0.0;
};

/// Bytes whose form only the source and its view know: their count in 32 bits, the bytes, `code`.
class CAudioVizDataInfo : public CAudioVizData {
public:
    static constexpr uint32_t kMaxBytes = 65536;

    explicit CAudioVizDataInfo(int32_t capacity = 0);
    [[nodiscard]] CError* write(COutputStream& stream) const override;
    /// Refuses more than kMaxBytes; memory grows with the bytes that are there.
    [[nodiscard]] CError* read(CInputStream& stream) override;

    CByteBuffer data;
    uint32_t code = 0;
};

/// A spectrum: the count of the bins in 32 bits, the bins, `sampleRate`, `size`, `type`.
class CAudioVizDataSpectrum : public CAudioVizData {
public:
    /// Twice the longest block that a spectrum is offered for.
    static constexpr uint32_t kMaxBins = 65536;

    explicit CAudioVizDataSpectrum(int32_t capacity = 0);
    [[nodiscard]] CError* write(COutputStream& stream) const override;
    /// Refuses more than kMaxBins; memory grows with the bins that are there.
    [[nodiscard]] CError* read(CInputStream& stream) override;

    CArray<double, 1> bins;   ///< linear, from 0 Hz up
    double sampleRate = 0.0;  ///< Hz
    uint32_t size = 0;        ///< state of `enum-blocksize`
    uint32_t type = 0;        ///< state of `enum-spectype`
};

}  // namespace tarv
