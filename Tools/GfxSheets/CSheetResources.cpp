#include "CSheetResources.h"

#include <cstdio>
#include <cstdlib>

namespace tarv {

template <class T>
const T& CSheetResources::load(std::map<std::string, std::unique_ptr<T>>& sets, const std::string& path) {
    std::unique_ptr<T>& set = sets[path];
    if (!set) {
        set = std::make_unique<T>();
        if (CError* error = loadDataSet(*set, CString((folder_ + "/" + path).c_str()), scale_)) {
            std::fprintf(stderr, "GfxSheets: %s: %s\n", path.c_str(), error->lines()[0]->toUtf8().c_str());
            delete error;
            std::exit(1);
        }
    }
    return *set;
}

const CImageSet& CSheetResources::images(const std::string& name) {
    return load(images_, "Imagesets/" + name + ".is");
}

const CFont& CSheetResources::font(const std::string& name) {
    return load(fonts_, "Fonts/" + name + ".fnt");
}

const CPalette& CSheetResources::palette(const std::string& name) {
    return load(palettes_, "Palettes/" + name + ".pal");
}

}  // namespace tarv
