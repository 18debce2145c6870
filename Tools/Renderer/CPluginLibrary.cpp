// Loads a plug-in file by the loader of the system.

#include "CPluginLibrary.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace tarv::host {

#ifdef _WIN32

namespace {

void* openLibrary(const std::string& path, std::string& error) {
    // A loader that cannot find the file must return an error, not open a window.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    std::string native(path);
    for (char& c : native) {
        c = c == '/' ? '\\' : c;
    }
    HMODULE module = LoadLibraryA(native.c_str());
    if (!module) {
        error = "system error " + std::to_string(GetLastError());
    }
    return reinterpret_cast<void*>(module);
}

void closeLibrary(void* handle) {
    FreeLibrary(static_cast<HMODULE>(handle));
}

void* findSymbol(void* handle, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle), name));
}

}  // namespace

#else

namespace {

void* openLibrary(const std::string& path, std::string& error) {
    // Without a slash the loader would search its own folders instead of the current one.
    const std::string file = path.find('/') == std::string::npos ? "./" + path : path;
    void* handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        error = dlerror();
    }
    return handle;
}

void closeLibrary(void* handle) {
    dlclose(handle);
}

void* findSymbol(void* handle, const char* name) {
    return dlsym(handle, name);
}

}  // namespace

#endif

CPluginLibrary::~CPluginLibrary() {
    unload();
}

void CPluginLibrary::unload() {
    if (handle_) {
        closeLibrary(handle_);
    }
    handle_ = nullptr;
    entry_ = nullptr;
}

void* CPluginLibrary::symbol(const char* name) const {
    return handle_ ? findSymbol(handle_, name) : nullptr;
}

bool CPluginLibrary::load(const std::string& path, std::string& error) {
    unload();
    handle_ = openLibrary(path, error);
    if (!handle_) {
        error = "cannot load " + path + ": " + error;
        return false;
    }
    for (const char* name : {"VSTPluginMain", "main"}) {
        if (void* address = symbol(name)) {
            entry_ = reinterpret_cast<vst::EntryProc>(address);
            return true;
        }
    }
    unload();
    error = path + " exports no VST 2 entry point";
    return false;
}

}  // namespace tarv::host
