#include "UI/Resources/CImageSet.h"

#include <algorithm>

#include "UI/Resources/CDataReader.h"

namespace tarv {

namespace {

// Of a range: the length of its name, first, last.
constexpr uint32_t kRangeLeast = 12;
constexpr uint32_t kIndexBytes = 4;

}  // namespace

int32_t CImageSet::rangePosition(const CString& name) const {
    const CRange* found = std::lower_bound(ranges_.begin(), ranges_.end(), name,
                                           [](const CRange& range, const CString& key) { return range.name < key; });
    return static_cast<int32_t>(found - ranges_.begin());
}

int32_t CImageSet::imagePosition(uint32_t index) const {
    // Most sets and fonts have no gap in front of an image.
    const uint32_t guess = images_.isEmpty() ? 0 : index - images_[0].index;
    if (guess < static_cast<uint32_t>(images_.count()) && images_[static_cast<int32_t>(guess)].index == index) {
        return static_cast<int32_t>(guess);
    }
    const CItem* found = std::lower_bound(images_.begin(), images_.end(), index,
                                          [](const CItem& item, uint32_t key) { return item.index < key; });
    return static_cast<int32_t>(found - images_.begin());
}

CError* CImageSet::addRange(const CString& name, uint32_t first, uint32_t last) {
    const int32_t position = rangePosition(name);
    const bool isKnown = position < ranges_.count() && ranges_[position].name == name;
    if (isKnown || last < first || !isNarrowName(name)) {
        TARV_FAIL("@tarvstr_CImageSet_addRange_Invalid Range '%1' of the images %2 to %3 can't be added.", name,
                  CString::fromInt(first), CString::fromInt(last));
    }
    ranges_.insert(position, CRange{name, first, last});
    return nullptr;
}

void CImageSet::setImage(uint32_t index, CImage* image) {
    image->chooseScale(scale());
    const int32_t position = imagePosition(index);
    if (position < images_.count() && images_[position].index == index) {
        delete images_[position].image;
        images_[position].image = image;
        return;
    }
    images_.insert(position, CItem{index, image});
}

void CImageSet::clear() {
    ranges_.clear();
    while (!images_.isEmpty()) {
        delete images_.last().image;
        images_.removeLast();
    }
}

bool CImageSet::findRange(const CString& name, uint32_t& first, uint32_t& last) const {
    const int32_t position = rangePosition(name);
    if (position == ranges_.count() || ranges_[position].name != name) {
        return false;
    }
    first = ranges_[position].first;
    last = ranges_[position].last;
    return true;
}

const CImage* CImageSet::getImage(uint32_t index) const {
    const int32_t position = imagePosition(index);
    return position < images_.count() && images_[position].index == index ? images_[position].image : nullptr;
}

bool CImageSet::getSize(uint32_t index, double scale, int32_t& width, int32_t& height) const {
    const CImage* image = getImage(index);
    if (!image || image->layerCount() == 0) {
        return false;
    }
    const CImageVersion& version = image->layer(0).versionNear(scale);
    width = version.width();
    height = version.height();
    return true;
}

CError* CImageSet::read(CInputStream& input) {
    clear();
    CDataReader reader;
    TARV_TRY(reader.open(input));
    CError* error = readBody(reader);
    error = error ? error : reader.finish();
    if (error) {
        clear();
        TARV_TRY(error);
    }
    return nullptr;
}

CError* CImageSet::readBody(CDataReader& reader) {
    TARV_TRY(reader.readVersion());
    TARV_TRY(readRanges(reader));
    TARV_TRY(readImages(reader));
    return nullptr;
}

CError* CImageSet::readRanges(CDataReader& reader) {
    int32_t count = 0;
    TARV_TRY(reader.readCount(count, kRangeLeast));
    for (int32_t i = 0; i < count; ++i) {
        CRange range{};
        TARV_TRY(reader.readSortedName(range.name, i > 0 ? ranges_.last().name : CString(), i == 0));
        TARV_TRY(reader.readValue(range.first));
        TARV_TRY(reader.readValue(range.last));
        if (range.last < range.first) {
            TARV_FAIL("@tarvstr_CImageSet_read_Range Range '%1' before byte %2 goes from %3 to %4.", range.name,
                      reader.place(), CString::fromInt(range.first), CString::fromInt(range.last));
        }
        ranges_.append(std::move(range));
    }
    return nullptr;
}

CError* CImageSet::readImages(CDataReader& reader) {
    int32_t count = 0;
    TARV_TRY(reader.readCount(count, kIndexBytes + CImage::kLeastBytes));
    for (int32_t i = 0; i < count; ++i) {
        CItem item{};
        TARV_TRY(reader.readValue(item.index));
        if (i > 0 && item.index <= images_.last().index) {
            TARV_FAIL("@tarvstr_CImageSet_read_Order Image index %1 before byte %2 does not ascend.",
                      CString::fromInt(item.index), reader.place());
        }
        item.image = new CImage;
        images_.append(item);
        TARV_TRY(item.image->read(reader));
        item.image->chooseScale(scale());
    }
    return nullptr;
}

CError* CImageSet::write(COutputStream& output) const {
    TARV_TRY(writeSize(output));
    TARV_TRY(writeBody(output));
    return nullptr;
}

CError* CImageSet::writeBody(COutputStream& output) const {
    TARV_TRY(output.writeValue(kDataSetVersion));
    TARV_TRY(writeWhole(output, ranges_.count()));
    for (const CRange& range : ranges_) {
        TARV_TRY(writeName(output, range.name));
        TARV_TRY(output.writeValue(range.first));
        TARV_TRY(output.writeValue(range.last));
    }
    TARV_TRY(writeWhole(output, images_.count()));
    for (const CItem& item : images_) {
        TARV_TRY(output.writeValue(item.index));
        TARV_TRY(item.image->write(output));
    }
    return nullptr;
}

int64_t CImageSet::bodySize() const {
    // The version and the two counts.
    int64_t size = 3 * sizeof(uint32_t);
    for (const CRange& range : ranges_) {
        size += nameSize(range.name) + 2 * static_cast<int64_t>(sizeof(uint32_t));
    }
    for (const CItem& item : images_) {
        size += kIndexBytes + item.image->getSize();
    }
    return size;
}

int64_t CImageSet::getSize() const {
    return static_cast<int64_t>(sizeof(uint32_t)) + CImageSet::bodySize();
}

}  // namespace tarv
