#pragma once

#include <string>

#include "Platform/File.h"

namespace tarv {

enum class CDataRoot : uint8_t {
    kUser,    ///< application data of the user
    kCommon,  ///< application data of all users
};

/// Folder below which application data lies, with `/` and none at its end. Elsewhere than on Windows the environment
/// variable TARV_DATA_ROOT puts both below one folder, so that a test writes nowhere else.
[[nodiscard]] CPlatformError dataRootPath(CDataRoot root, std::u16string& path);

/// Never touches the current folder, which belongs to the host.
bool folderExists(const char16_t* path);
/// One level; a folder that exists is a success.
[[nodiscard]] CPlatformError makeFolder(const char16_t* path);
/// All levels in turn.
[[nodiscard]] CPlatformError makeFolders(const char16_t* path);
/// Removes a file.
[[nodiscard]] CPlatformError removeFile(const char16_t* path);

}  // namespace tarv
