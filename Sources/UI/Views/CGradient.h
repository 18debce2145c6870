#pragma once

#include "UI/Views/CPicture.h"

namespace tarv {

/// A shade over a panel (`ui:overlay-gradient`): its colour, from nothing at the top to the colour's opacity at the
/// bottom. With an `image-set` it draws the picture instead. Thread: that of the window.
class CGradient : public CPicture {
protected:
    [[nodiscard]] CError* draw() override;
};

}  // namespace tarv
