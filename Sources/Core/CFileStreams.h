#pragma once

#include "Core/CStreams.h"
#include "Platform/File.h"

namespace tarv {

/// Sharing with others while a file is open, as bits of `flags`. No bit: exclusive.
inline constexpr uint32_t kShareWrite = 1;
inline constexpr uint32_t kShareRead = 2;

/// Reads an existing file. Names use `/`.
class CFileReader : public CPosInputStream {
public:
    CFileReader() = default;
    ~CFileReader() override;
    [[nodiscard]] CError* open(const CString& name, uint32_t flags);
    [[nodiscard]] CError* close() override;
    [[nodiscard]] CError* consume(int64_t count) override;
    [[nodiscard]] CError* read(void* buffer, int64_t count) override;
    [[nodiscard]] CError* readStreamed(void* buffer, int64_t& count) override;
    [[nodiscard]] CError* getPosition(int64_t& position) override;
    [[nodiscard]] CError* setPosition(int64_t position) override;
    [[nodiscard]] CError* getSize(int64_t& size) override;

private:
    CFile file_;
    CString name_;
};

/// Writes a file: made anew, or behind what it holds with `append`. Names use `/`.
class CFileWriter : public CPosOutputStream {
public:
    CFileWriter() = default;
    ~CFileWriter() override;
    [[nodiscard]] CError* open(const CString& name, bool append, uint32_t flags = 0);
    [[nodiscard]] CError* close();
    [[nodiscard]] CError* write(const void* buffer, int64_t count) override;
    [[nodiscard]] CError* getPosition(int64_t& position) override;
    [[nodiscard]] CError* setPosition(int64_t position) override;
    [[nodiscard]] CError* getSize(int64_t& size) override;

private:
    CFile file_;
    CString name_;
};

}  // namespace tarv
