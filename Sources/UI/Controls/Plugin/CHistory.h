#pragma once

#include "UI/Views/CView.h"

namespace tarv {

class CAudioInterfaceClient;
class CValueList;

/// The strip of the undo history (`ui:history`); `interface-client` is the path of the client. Its children: the
/// value list `history-list`, which shows nothing by itself, and `button-undo`, `button-select`, `button-redo`, whose
/// `button-released` it follows. A button that has nothing to do is disabled. `button-select` opens a list of the
/// steps, the newest on top, the position selected, those that redo would bring dimmed; a choice moves there. Sends
/// `history-change` when steps or position have become others. Attributes that it sets, for hints: `undo-label` and
/// `redo-label`, the labels of the steps that the buttons move over, behind the texts `undo-prefix` and `redo-prefix`;
/// `undo-none` and `redo-none` while there is no such step. Thread: that of the window.
class CHistory : public CView {
public:
    ~CHistory() override;
    /// Fails without the client.
    [[nodiscard]] CError* init() override;
    /// Fails where a child is missing.
    [[nodiscard]] CError* finishInit() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

private:
    [[nodiscard]] CError* findChildren();
    [[nodiscard]] CError* bindButton(const char* name, const char* handler, const char* message);
    [[nodiscard]] CError* undo();
    [[nodiscard]] CError* redo();
    [[nodiscard]] CError* openList();
    [[nodiscard]] CError* stepChosen(CAttributeMap& params);
    [[nodiscard]] CError* historyChanged();
    [[nodiscard]] CError* engineGone();
    [[nodiscard]] CError* fillList();
    [[nodiscard]] CError* showLabels();
    [[nodiscard]] CError* enable(const char* button, bool isEnabled);
    CValueList* list() const;
    CAudioInterfaceClient* client() const;

    CString clientPath_;
    bool isGone_ = false;
    int32_t shown_ = 0;  ///< counts the lists that were shown: a choice in an older one is ignored
};

}  // namespace tarv
