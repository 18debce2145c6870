#pragma once

#include <string>

#include "Platform/ByHand/CPictureByHand.h"

namespace tarv {

/// One picture of the product's editor, of those that a command draws or a test keeps.
struct CProductPicture {
    const char* scene;  ///< name of a row of kScenes
    double scale;
    const char* palette;
    bool isTopAlone = false;  ///< the window that was opened last, instead of all where they stand on the screen
    /// Such as "main-flat-1.00-Default.png".
    std::string fileName() const;
};

/// The windows of an editor in a scene. Failure, or "".
std::string drawProduct(const CProductPicture& what, CPictureByHand& picture);

/// Draws each scene, and the curves in each palette at each scale, as PNG files in a folder; of them those with `only`
/// in their paths. Failure, or "".
std::string drawAllOfProduct(const std::string& folder, const std::string& only);

}  // namespace tarv
