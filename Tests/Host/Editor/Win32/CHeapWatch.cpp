// The heap as a library of Windows calls it: through the table of its imports.

#include "Tests/Host/Editor/CHeapWatch.h"

#include <windows.h>

#include <cstdlib>
#include <string>

namespace tarv::host {

namespace {

thread_local bool isWatching = false;
thread_local int64_t callCount = 0;

void note() {
    callCount += isWatching ? 1 : 0;
}

void* seenMalloc(size_t size) {
    note();
    return std::malloc(size);
}

void* seenCalloc(size_t count, size_t size) {
    note();
    return std::calloc(count, size);
}

void* seenRealloc(void* block, size_t size) {
    note();
    return std::realloc(block, size);
}

void seenFree(void* block) {
    if (block) {
        note();
    }
    std::free(block);
}

LPVOID WINAPI seenHeapAlloc(HANDLE heap, DWORD flags, SIZE_T size) {
    note();
    return HeapAlloc(heap, flags, size);
}

BOOL WINAPI seenHeapFree(HANDLE heap, DWORD flags, LPVOID block) {
    note();
    return HeapFree(heap, flags, block);
}

struct CSeenCall {
    const char* name;
    uintptr_t address;
};

uintptr_t replacement(const std::string& name) {
    const CSeenCall kCalls[] = {{"malloc", reinterpret_cast<uintptr_t>(&seenMalloc)},
                                {"calloc", reinterpret_cast<uintptr_t>(&seenCalloc)},
                                {"realloc", reinterpret_cast<uintptr_t>(&seenRealloc)},
                                {"free", reinterpret_cast<uintptr_t>(&seenFree)},
                                {"HeapAlloc", reinterpret_cast<uintptr_t>(&seenHeapAlloc)},
                                {"HeapFree", reinterpret_cast<uintptr_t>(&seenHeapFree)}};
    for (const CSeenCall& call : kCalls) {
        if (name == call.name) {
            return call.address;
        }
    }
    return 0;
}

/// Both tables of a file that the library imports from: the names, and the addresses that the loader has filled in.
void replaceIn(uint8_t* base, const IMAGE_IMPORT_DESCRIPTOR& file) {
    const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + file.OriginalFirstThunk);
    auto* addresses = reinterpret_cast<IMAGE_THUNK_DATA*>(base + file.FirstThunk);
    for (; names->u1.AddressOfData != 0; ++names, ++addresses) {
        if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) {
            continue;
        }
        const auto* import = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
        if (const uintptr_t seen = replacement(reinterpret_cast<const char*>(import->Name))) {
            DWORD former = 0;
            VirtualProtect(addresses, sizeof(*addresses), PAGE_READWRITE, &former);
            addresses->u1.Function = seen;
            VirtualProtect(addresses, sizeof(*addresses), former, &former);
        }
    }
}

}  // namespace

const bool CHeapWatch::kSeesHeap = true;

void CHeapWatch::prepare(const CPluginLibrary& library) {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCSTR>(library.entry()), &module);
    auto* base = reinterpret_cast<uint8_t*>(module);
    const auto& header =
        *reinterpret_cast<const IMAGE_NT_HEADERS*>(base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const IMAGE_DATA_DIRECTORY& imports = header.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto* file = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress); file->Name != 0;
         ++file) {
        replaceIn(base, *file);
    }
}

CHeapWatch::CHeapWatch() {
    callCount = 0;
    isWatching = true;
}

CHeapWatch::~CHeapWatch() {
    isWatching = false;
}

int64_t CHeapWatch::calls() const {
    return callCount;
}

}  // namespace tarv::host
