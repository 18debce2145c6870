#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace tarv {

/// One file of the user's data, as it lies on the disk. The copies that were kept of it are removed at both ends.
class CStoredFile {
public:
    explicit CStoredFile(const std::string& name, bool isGlobal = false)
        : path_(std::string(getenv("TARV_DATA_ROOT")) + "/user/Tarvelo/Audio Plug-Ins/" +
                (isGlobal ? "" : "Brindle XEQ/") + name) {
        removeKept();
    }
    ~CStoredFile() { removeKept(); }
    CStoredFile(const CStoredFile&) = delete;
    CStoredFile& operator=(const CStoredFile&) = delete;

    const std::string& path() const { return path_; }
    std::string content() const { return contentOf(path_); }
    /// The copy of that number, empty if there is none.
    std::string kept(int number = 1) const { return contentOf(keptPath(number)); }
    /// Turns the bits of one byte round, counted from the end, and gives what the file holds then.
    std::string damage(size_t fromEnd = 1) const {
        std::string bytes = content();
        bytes[bytes.size() - fromEnd] = static_cast<char>(~bytes[bytes.size() - fromEnd]);
        std::ofstream(path_, std::ios::binary) << bytes;
        return bytes;
    }

private:
    static std::string contentOf(const std::string& path) {
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::string keptPath(int number) const {
        return path_ + "-damaged" + (number == 1 ? std::string() : "-" + std::to_string(number));
    }
    void removeKept() const {
        for (int number = 1; std::filesystem::remove(keptPath(number)); ++number) {
        }
    }

    std::string path_;
};

}  // namespace tarv
