#pragma once

#include <filesystem>

#include "Core/CompressedBlock.h"
#include "Tests/Audio/Parameters/ParamTree.h"
#include "Tests/Audio/Stores/StoredBytes.h"

namespace tarv {

inline std::string textOf(const CByteBuffer& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<size_t>(bytes.count())};
}

/// First line of a failure, which it consumes; "" for success.
inline std::string firstLine(CError* error) {
    const std::string all = consumed(error);
    return all.substr(0, all.find('\r'));
}

template <class T>
std::string savedBytes(const T& stored) {
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    EXPECT_EQ(firstLine(stored.save(writer)), "");
    return textOf(bytes);
}

/// A compressed block of that id.
inline std::string packed(const std::string& bytes, uint32_t id) {
    CByteBuffer plain;
    CByteBuffer block;
    CBufferWriter plainWriter(plain);
    EXPECT_EQ(firstLine(plainWriter.write(bytes.data(), static_cast<int64_t>(bytes.size()))), "");
    CBufferWriter writer(block);
    EXPECT_EQ(firstLine(writer.writeCompressedData(plain, id)), "");
    return textOf(block);
}

/// A file with these bytes, deleted with the object.
class CStoredFile {
public:
    explicit CStoredFile(const std::string& bytes);
    ~CStoredFile() { std::filesystem::remove(path_); }
    CStoredFile(const CStoredFile&) = delete;
    CStoredFile& operator=(const CStoredFile&) = delete;
    std::string path() const { return path_.string(); }

private:
    std::filesystem::path path_;
};

/// Two registries over the parameters of a small product, with a history: "TAEQ", the master over plugin.modMain, and
/// "TAIO" over its io-params. Parameters by their names behind "plugin.modMain.":
///   eq.gains 0,0,0 in -99..99; eq.pair 1*2 in -9..9; out.mute 0 in 0..1; oversampling 1 in 0..4 (single group);
///   io-params.in-routing 1,2 in 0..16 (single group); io-params.group-names "1,2,3" (single group);
///   instance-name "Unnamed" (persistent); preset-name "Default" (global); io-params.solo 0 in 0..1 (no flag).
class CPresetTree {
public:
    explicit CPresetTree(const std::vector<std::string>& romPresets = {}, const std::string& undoCountMax = "32");

    CAudioParamRegistry& master() { return *tree_.root().findObjectOf<CAudioParamRegistry>("plugin.TAEQ"); }
    CAudioParamRegistry& routing() { return *tree_.root().findObjectOf<CAudioParamRegistry>("plugin.TAIO"); }
    CTestHistory& history() { return *tree_.root().findObjectOf<CTestHistory>("plugin.history"); }
    CAudioParamCollector& collector() { return tree_.collector(); }
    CAudioEnv& env() { return tree_.env(); }
    CAudioParam& param(const std::string& name) { return *collector().findParam(("plugin.modMain." + name).c_str()); }
    double value(const std::string& name, int32_t group = 0, int32_t element = 0, int32_t index = 0) {
        return param(name).value(group, element, index);
    }
    std::string text(const std::string& name, int32_t element = 0) { return param(name).text(0, element).toUtf8(); }
    void set(const std::string& name, double value, int32_t group = 0, int32_t element = 0) {
        param(name).setValue(group, element, value);
    }
    /// Every group of every parameter as a text.
    std::string state();
    /// state(), the programs with their names and what they hold, and which is the current one.
    std::string everything();

    std::string activate(CAudioParamRegistry& registry, const std::string& bytes, const CPresetRequest& request = {});
    std::string activateBank(const std::string& bytes, const CPresetRequest& request = {});
    /// A preset as the registry writes it, bare.
    std::string acquire(CAudioParamRegistry& registry, int32_t index = -1, bool fromRom = false, int32_t group = -1);
    std::string acquireBank(bool fromRom = false);
    std::string programs();
    /// Labels of the history, the position marked by a star before it.
    std::string labels();

private:
    CStoredFile romFile_;
    CParamTree tree_;
};

}  // namespace tarv
