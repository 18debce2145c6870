#pragma once

#include "UI/Views/CView.h"

namespace tarv {

/// A panel (`ui:frame`): its range stretches over its box, as nine pieces or as a picture that is repeated; without an
/// `image-set` its colour fills it. With `has-borders` "false" only the middle of the nine pieces is drawn. Thread:
/// that of the window.
class CFrame : public CView {
public:
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

protected:
    [[nodiscard]] CError* draw() override;

private:
    [[nodiscard]] CError* attrHasBorders();

    bool hasBorders_ = true;
};

}  // namespace tarv
