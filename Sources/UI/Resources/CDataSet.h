#pragma once

#include <cstdint>

#include "Core/CStreams.h"

namespace tarv {

class CDataReader;

/// The one version of all four formats.
inline constexpr uint32_t kDataSetVersion = 1;
/// Longest side of a picture in pixels, and farthest that one may lie from its place.
inline constexpr int32_t kMaxImageSide = 65535;
inline constexpr double kLowestStoredScale = 0.01;
inline constexpr double kHighestStoredScale = 100.0;

/// Prepared graphics of one kind: a file of the builder in memory. Begins, in a stream, with a u32 that counts the
/// bytes behind it. Built and read on one thread; read-only afterwards, and then for any.
class CDataSet : public CHeapObject {
public:
    virtual ~CDataSet() = default;
    /// Replaces the content. Strict: what is short, out of order, out of its range, or left behind the end of the set
    /// is a failure that names its place, and the set is empty then.
    [[nodiscard]] virtual CError* read(CInputStream& input) = 0;
    /// The same bytes that were read.
    [[nodiscard]] virtual CError* write(COutputStream& output) const = 0;
    /// Bytes that write makes.
    virtual int64_t getSize() const = 0;

    /// The scale of the editor, for what is read or added from now on: of the stored versions the nearest counts.
    void setScale(double scale) { scale_ = scale; }
    double scale() const { return scale_; }

protected:
    CDataSet() = default;
    CDataSet(const CDataSet&) = delete;
    CDataSet& operator=(const CDataSet&) = delete;
    /// The size field of this set.
    [[nodiscard]] CError* writeSize(COutputStream& output) const;

private:
    double scale_ = 1.0;
};

/// Position of the scale nearest to `scale` in an ascending list of one or more. The smaller one of two that are as
/// near, since what is too small still fits its place; what is not a number counts as 1.
int32_t nearestScale(const CArray<double, 3>& scales, double scale);

/// Fails if there is no resource or file of that name.
[[nodiscard]] CError* requireDataSet(const CString& name);
/// Reads the resource or file of that name, which must hold this set and nothing else. After a failure the content
/// counts for nothing.
[[nodiscard]] CError* loadDataSet(CDataSet& set, const CString& name, double scale);

}  // namespace tarv
