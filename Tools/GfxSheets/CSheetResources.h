#pragma once

#include <map>
#include <memory>
#include <string>

#include "UI/Resources/CFont.h"
#include "UI/Resources/CImageSet.h"
#include "UI/Resources/CPalette.h"

namespace tarv {

/// The built graphics of one folder, as the product reads them, at one scale. Sets are loaded when they are asked for;
/// one that cannot be read ends the program with its message. One thread.
class CSheetResources {
public:
    CSheetResources(const std::string& folder, double scale) : folder_(folder), scale_(scale) {}

    double scale() const { return scale_; }
    const std::string& folder() const { return folder_; }
    const CImageSet& images(const std::string& name);
    const CFont& font(const std::string& name);
    const CPalette& palette(const std::string& name);

private:
    template <class T>
    const T& load(std::map<std::string, std::unique_ptr<T>>& sets, const std::string& path);

    std::string folder_;
    double scale_;
    std::map<std::string, std::unique_ptr<CImageSet>> images_;
    std::map<std::string, std::unique_ptr<CFont>> fonts_;
    std::map<std::string, std::unique_ptr<CPalette>> palettes_;
};

}  // namespace tarv
