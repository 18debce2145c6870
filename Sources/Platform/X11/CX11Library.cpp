// Opens the libraries of the X window system when they are needed.

#include "Platform/X11/CX11Library.h"

#include <dlfcn.h>

#include <cstring>
#include <vector>

#include "Platform/Posix/PathText.h"

namespace tarv {

namespace {

/// Where a function's address goes.
struct CFunctionRow {
    const char* name;
    void* target;
};

// Those that may be missing give pictures and monitors their plain way.
constexpr bool kIsNeeded[CX11Library::kFileCount] = {true, false, false, true, true, true};

}  // namespace

CX11Library::~CX11Library() {
    unload();
}

void CX11Library::unload() {
    // Those behind stand on those before.
    for (int i = kFileCount - 1; i >= 0; --i) {
        if (libraries_[i]) {
            dlclose(libraries_[i]);
            libraries_[i] = nullptr;
        }
    }
    isLoaded_ = false;
}

bool CX11Library::load(std::u16string& reason) {
    if (isLoaded_) {
        return true;
    }
#define TARV_ROW(name) {#name, &name},
    const std::vector<CFunctionRow> functions[kFileCount] = {
        {TARV_XCB_FUNCTIONS(TARV_ROW)},     {TARV_SHM_FUNCTIONS(TARV_ROW)}, {TARV_RANDR_FUNCTIONS(TARV_ROW)},
        {TARV_XCB_XKB_FUNCTIONS(TARV_ROW)}, {TARV_XKB_FUNCTIONS(TARV_ROW)}, {TARV_XKB_X11_FUNCTIONS(TARV_ROW)}};
#undef TARV_ROW
    for (int i = 0; i < kFileCount; ++i) {
        libraries_[i] = dlopen(files_[i], RTLD_NOW | RTLD_LOCAL);
        const char* missing = libraries_[i] ? nullptr : files_[i];
        for (const CFunctionRow& row : functions[i]) {
            void* address = missing ? nullptr : dlsym(libraries_[i], row.name);
            if (!address && !missing) {
                missing = row.name;
            }
            // Functions and data alike: the system gives all addresses one form.
            std::memcpy(row.target, &address, sizeof address);
        }
        if (missing && libraries_[i]) {
            dlclose(libraries_[i]);
            libraries_[i] = nullptr;
        }
        if (missing && kIsNeeded[i]) {
            reason = u"The library of the window system can't be loaded: " + pathToUtf16(missing) + u" is missing.";
            unload();
            return false;
        }
    }
    isLoaded_ = true;
    return true;
}

}  // namespace tarv
