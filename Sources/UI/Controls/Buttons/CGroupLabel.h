#pragma once

#include "UI/Text/CTextViewAutoScroll.h"

namespace tarv {

class CValueList;

/// The inputs that a channel group receives (`ui:group-label`), as a text that slides where it does not fit: the first
/// title of its child `value-list`. Without a declared one it makes a list of the mode `audio-routing-labels` with its
/// own `group-selector` and `routing-label-mode`. Thread: that of the window.
class CGroupLabel : public CTextViewAutoScroll {
public:
    ~CGroupLabel() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    /// Fails as CValueListAudio does.
    [[nodiscard]] CError* finishInit() override;

private:
    [[nodiscard]] CError* makeList();
    [[nodiscard]] CError* listChanged();

    CValueList* list_ = nullptr;
};

}  // namespace tarv
