#pragma once

#include <string>

#include "Audio/VST/Vst2.h"

namespace tarv::host {

/// A loaded plug-in file. Unloads when destroyed, so every effect must be closed before.
class CPluginLibrary {
public:
    CPluginLibrary() = default;
    ~CPluginLibrary();
    CPluginLibrary(const CPluginLibrary&) = delete;
    CPluginLibrary& operator=(const CPluginLibrary&) = delete;

    /// Loads the file and finds `VSTPluginMain`, or its older name `main`. False with the reason.
    bool load(const std::string& path, std::string& error);
    void unload();

    vst::EntryProc entry() const { return entry_; }
    /// The address of any export, or null.
    void* symbol(const char* name) const;

private:
    void* handle_ = nullptr;
    vst::EntryProc entry_ = nullptr;
};

}  // namespace tarv::host
