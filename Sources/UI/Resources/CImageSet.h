#pragma once

#include <cstdint>

#include "UI/Resources/CDataSet.h"
#include "UI/Resources/CImage.h"

namespace tarv {

/// Pictures by index, and names of ranges of indexes. In a file ranges ascend by name and images by index.
class CImageSet : public CDataSet {
public:
    /// Names the images `first` to `last`, both included. The empty name is the default range. Fails on a name that
    /// stands already, on a `last` before `first`, and on characters of more than 8 bits.
    [[nodiscard]] CError* addRange(const CString& name, uint32_t first, uint32_t last);
    /// Takes the image over, in the place of one of that index.
    void setImage(uint32_t index, CImage* image);
    void clear();

    /// False, and nothing given, for a name that the set lacks.
    bool findRange(const CString& name, uint32_t& first, uint32_t& last) const;
    int32_t rangeCount() const { return ranges_.count(); }
    const CString& rangeName(int32_t position) const { return ranges_[position].name; }
    /// Null for an index without an image.
    const CImage* getImage(uint32_t index) const;
    int32_t imageCount() const { return images_.count(); }
    /// Index of an image by its position in 0..imageCount-1.
    uint32_t imageIndex(int32_t position) const { return images_[position].index; }
    /// Nominal size at the stored scale nearest to `scale`; false for an index without an image.
    bool getSize(uint32_t index, double scale, int32_t& width, int32_t& height) const;

    [[nodiscard]] CError* read(CInputStream& input) override;
    [[nodiscard]] CError* write(COutputStream& output) const override;
    int64_t getSize() const override;
    ~CImageSet() override { clear(); }

protected:
    /// All behind the size field.
    [[nodiscard]] CError* readBody(CDataReader& reader);
    [[nodiscard]] CError* writeBody(COutputStream& output) const;
    int64_t bodySize() const;

private:
    struct CRange {
        CString name;
        uint32_t first;
        uint32_t last;
    };
    struct CItem {
        uint32_t index;
        CImage* image;
    };
    [[nodiscard]] CError* readRanges(CDataReader& reader);
    [[nodiscard]] CError* readImages(CDataReader& reader);
    /// First position whose name (index) is not below.
    int32_t rangePosition(const CString& name) const;
    int32_t imagePosition(uint32_t index) const;

    CArray<CRange, 1> ranges_;
    CArray<CItem, 1> images_;
};

}  // namespace tarv
