#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

#include "Core/CFileStreams.h"
#include "Tests/UI/Controls/Presets/ManagerTree.h"
#include "UI/Controls/Presets/PresetFiles.h"

namespace tarv {

/// Permissions count for this scope, also where the tests run as the system's administrator.
class CPlainUser {
public:
    CPlainUser() { (void)!seteuid(65534); }
    ~CPlainUser() { (void)!seteuid(getuid()); }
};

/// No file may grow beyond that many bytes in this scope, as on a disk that is full.
class CFullDisk {
public:
    explicit CFullDisk(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~CFullDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signal_);
    }

private:
    void (*signal_)(int);
    rlimit before_{};
};

class PresetFiles : public CManagerTest {
protected:
    void choose(const char* name) { system_.answerFileDialog(std::filesystem::path(path(name)).u16string()); }
    void sendWith(const char* event, const char* file) {
        choose(file);
        send(event);
    }
    std::string content(const char* name) const {
        std::ifstream stream(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    void write(const char* name, const std::string& bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
    }
    void writeBank(const char* name, const CAudioPresetBank& bank) const {
        CByteBuffer block;
        EXPECT_EQ(firstLine(packBank(bank, block)), "");
        EXPECT_EQ(firstLine(writeBlockFile(CString(path(name).c_str()), block)), "");
    }
    void writePreset(const char* name, const char* preset) const {
        CByteBuffer block;
        EXPECT_EQ(firstLine(packPreset(CAudioPreset(preset), block)), "");
        EXPECT_EQ(firstLine(writeBlockFile(CString(path(name).c_str()), block)), "");
    }
    std::string files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        std::string text;
        for (const std::string& name : names) {
            text += (text.empty() ? "" : " ") + name;
        }
        return text;
    }
    /// A stored bank that is selected, with its first preset.
    void selectMine() {
        EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("Mine", {"a", "b"}))), "");
        tick();
        select(banks(), 2);
        select(presets(), 0);
    }
    std::string bankIn(const char* name) const {
        CAudioPresetBank bank;
        const std::string failure = firstLine(readBankFile(CString(path(name).c_str()), bank));
        CAudioBankList banks;
        banks.insert(0, bank);
        return failure.empty() ? listed(banks) : failure;
    }
    std::string presetIn(const char* name) const {
        CAudioPreset preset;
        const std::string failure = firstLine(readPresetFile(CString(path(name).c_str()), preset));
        return failure.empty() ? preset.name().toUtf8() : failure;
    }
};

}  // namespace tarv
