#include "UI/Placement/CViewRows.h"

#include "UI/Placement/CViewAreaNet.h"

namespace tarv {

CViewRowList::~CViewRowList() {
    if (net_) {
        rowCount_ = 0;
        helperCount_ = 0;
        end();
    }
}

void CViewRowList::begin(CViewAreaNet& net) {
    net_ = &net;
    rowCount_ = 0;
    helperCount_ = 0;
}

CViewRow* CViewRowList::addRow() {
    if (rowCount_ == rows_.count()) {
        CViewRow row;
        row.length = net_->allocCell(nullptr);
        row.thickness = row.length == kNoViewCell ? kNoViewCell : net_->allocCell(nullptr);
        if (row.thickness == kNoViewCell) {
            if (row.length != kNoViewCell) {
                net_->freeCell(row.length);
            }
            return nullptr;
        }
        rows_.append(row);
    }
    CViewRow& row = rows_[rowCount_++];
    row.first = -1;
    row.last = -1;
    return &row;
}

CViewCellId CViewRowList::takeHelper() {
    if (helperCount_ == helpers_.count()) {
        const CViewCellId id = net_->allocCell(nullptr);
        if (id == kNoViewCell) {
            return kNoViewCell;
        }
        helpers_.append(id);
    }
    return helpers_[helperCount_++];
}

void CViewRowList::end() {
    while (rows_.count() > rowCount_) {
        net_->freeCell(rows_.last().length);
        net_->freeCell(rows_.last().thickness);
        rows_.removeLast();
    }
    while (helpers_.count() > helperCount_) {
        net_->freeCell(helpers_.last());
        helpers_.removeLast();
    }
}

}  // namespace tarv
