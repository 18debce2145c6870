#include "UI/Controls/Lists/CValueList.h"

#include <algorithm>
#include <cmath>

#include "Core/CKeptParams.h"
#include "UI/Views/CViewReading.h"

namespace tarv {

namespace {

/// Values are whole numbers or the same sum of them.
constexpr double kSameValue = 1e-9;
/// However far the range of a parameter reaches.
constexpr int32_t kItemLimit = 1024;

}  // namespace

CError* CValueList::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CValueList::listChanged>("update-values");
    for (const char* name : {"add-empty-value", "is-hide-reserve", "max-capacity", "separator-char", "value-count"}) {
        descriptor.addHandler<&CValueList::listChanged>(name);
    }
    return nullptr;
}

CError* CValueList::finishInit() {
    TARV_TRY(CObject::finishInit());
    TARV_TRY(updateValues());
    return nullptr;
}

CError* CValueList::listChanged() {
    return state() == CObjectState::Finished ? updateValues() : nullptr;
}

CError* CValueList::updateValues() {
    CItems items = roomForItems();
    for (const CObject* child : children()) {
        if (child->name().startsWith("content")) {
            const bool hasValue = !child->getAttrString("value").isEmpty();
            const double position = items.count();
            items.append({child->getAttrString("title"), hasValue ? child->getAttrReal("value") : position});
        }
    }
    return takeItems(std::move(items));
}

int32_t CValueList::itemLimit() const {
    const int32_t count = getAttrIntOr("value-count", -1);
    return count < 0 ? kItemLimit : std::min(count, kItemLimit);
}

CError* CValueList::takeItems(CItems items) {
    for (int32_t i = items.count() - 1; getAttrBool("is-hide-reserve") && i >= 0; --i) {
        if (items[i].title == CString(kReserveTitle)) {
            items.removeAt(i);
        }
    }
    items.resize(std::min(items.count(), itemLimit()));
    if (getAttrBool("add-empty-value")) {
        items.insert(0, {kEmptyTitle, items.isEmpty() ? 0.0 : items[0].value - 1.0});
    }
    const int32_t capacity = getAttrIntOr("max-capacity", -1);
    if (capacity >= 0 && items.count() > capacity) {
        items.resize(capacity);
    }
    return setItems(std::move(items));
}

CError* CValueList::setItems(CItems items) {
    const bool isSame =
        items.count() == items_.count() && std::equal(items.begin(), items.end(), items_.begin(), items_.end());
    if (isSame && hasAttr("titles") && separator() == titlesSeparator_) {
        keepRoom(items);
        return nullptr;
    }
    keepRoom(items_);
    items_ = std::move(items);
    titlesSeparator_ = separator();
    const CObjectWatch watch(*this);
    CError* error = setAttribute("titles", joinedTitles());
    if (error || !watch.isAlive() || isSame) {
        return error;
    }
    CKeptParams none(*this, changed_, 0);
    return sendEvent(kChangedEvent, none.params, false);
}

void CValueList::keepRoom(CItems& items) {
    items.clear();
    if (items.capacity() > room_.capacity()) {
        room_ = std::move(items);
    }
}

CString CValueList::joinedTitles() const {
    CString titles;
    for (int32_t i = 0; i < items_.count(); ++i) {
        if (i > 0) {
            titles.appendChar(separator());
        }
        titles += items_[i].title;
    }
    return titles;
}

uint16_t CValueList::separator() const {
    const CString& given = getAttrString("separator-char");
    return given.isEmpty() ? uint16_t{';'} : given.at(0);
}

CString CValueList::typed(const CString& text) const {
    return CViewReader::withMarks(text, separator());
}

int32_t CValueList::indexOf(double value) const {
    for (int32_t i = 0; i < items_.count(); ++i) {
        if (std::fabs(items_[i].value - value) < kSameValue) {
            return i;
        }
    }
    return -1;
}

CValueList::CItem CValueList::itemOf(double value) const {
    const int32_t index = indexOf(value);
    return index < 0 ? missingItem(value) : items_[index];
}

CValueList::CItem CValueList::missingItem(double value) const {
    return {CString::fromDouble(value, value == std::round(value) ? 0 : 2), value, true};
}

CError* CValueList::generateSubList(const CString& parentId, CDynamicListRows& rows) {
    if (!parentId.isEmpty()) {
        TARV_FAIL("@tarvstr_CValueList_generateSubList_InvalidListId Invalid list identifier %1.", parentId);
    }
    for (int32_t i = 0; i < items_.count(); ++i) {
        const CString& title = items_[i].title;
        rows.add(items_[i].isDimmed ? CString("[C1]") + title + "[/C1]" : title, CString::fromInt(i));
    }
    return nullptr;
}

}  // namespace tarv
