#include "Tests/Audio/Presets/PresetTree.h"

#include <stdlib.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "Audio/Presets/CAudioParamUndo.h"

namespace tarv {

namespace {

constexpr struct {
    const char* definition;
    const char* name;
} kParams[] = {
    {"gains", "eq.gains"},
    {"pair", "eq.pair"},
    {"mute", "out.mute"},
    {"oversampling", "oversampling"},
    {"in-routing", "io-params.in-routing"},
    {"group-names", "io-params.group-names"},
    {"instance-name", "instance-name"},
    {"preset-name", "preset-name"},
    {"solo", "io-params.solo"},
};

std::vector<CTestNode> definitions() {
    const std::pair<std::string, std::string> storable{"is-storable", "true"};
    const std::pair<std::string, std::string> single{"is-single-group", "true"};
    const std::pair<std::string, std::string> text{"data-type", "string"};
    return {
        paramNode("gains", "real", "-99", "99", "0,0,0", {storable}),
        paramNode("pair", "real real", "-9 -9", "9 9", "1*2", {{"element-size", "2"}, storable}),
        paramNode("mute", "enum", "0", "1", "0", {storable}),
        paramNode("oversampling", "enum", "0", "4", "1", {storable, single}),
        paramNode("in-routing", "enum", "0", "16", "1,2", {storable, single}),
        paramNode("group-names", "text", "", "", "1,2,3", {text, storable, single}),
        paramNode("instance-name", "text", "", "", "Unnamed", {text, {"is-persistent", "true"}, single}),
        paramNode("preset-name", "text", "", "", "Default", {text, {"is-global", "true"}, single}),
        paramNode("solo", "enum", "0", "1", "0", {single}),
    };
}

std::vector<CTestNode> instance(const std::string& romFile, const std::string& undoCountMax) {
    const CTestAttributes common = {{"param-collector", "^param-collector"},
                                    {"param-undo", "^history"},
                                    {"group-names-param", "plugin.modMain.io-params.group-names"}};
    CTestAttributes routing = {
        {"hierarchy", "plugin.modMain.io-params"}, {"id", "TAIO"}, {"preset-naming", "Routing preset"}};
    CTestAttributes master = {
        {"hierarchy", "plugin.modMain"}, {"id", "TAEQ"},    {"preset-naming", "Master preset"},
        {"is-master", "true"},           {"file", romFile}, {"preset-name-param", "plugin.modMain.preset-name"}};
    routing.insert(routing.end(), common.begin(), common.end());
    master.insert(master.end(), common.begin(), common.end());
    return {{"audio:param-undo", "history", {{"undo-count-max", undoCountMax}}},
            {"audio:param-registry", "TAIO", routing},
            {"audio:param-registry", "TAEQ", master}};
}

void print(std::ostream& out, const CAudioParam& param) {
    CLockScope scope(param.lock());
    const CAudioParamData& data = param.userData();
    out << param.fullName().toUtf8();
    int32_t groups = data.groupCount();
    while (groups > 0 && data.elementCount(groups - 1) == 0)
        --groups;
    for (int32_t group = 0; group < groups; ++group) {
        out << " |";
        for (int32_t i = 0; i < data.elementCount(group) * data.elementSize(); ++i) {
            const int32_t element = i / data.elementSize();
            data.isString() ? out << ' ' << data.text(group, element).toUtf8()
                            : out << ' ' << data.value(group, element, i % data.elementSize());
        }
    }
    out << '\n';
}

}  // namespace

CStoredFile::CStoredFile(const std::string& bytes) {
    std::string pattern = (std::filesystem::temp_directory_path() / "tarv-stored-XXXXXX").string();
    const int file = mkstemp(pattern.data());
    EXPECT_GE(file, 0);
    close(file);
    path_ = pattern;
    std::ofstream(path_, std::ios::binary) << bytes;
}

CPresetTree::CPresetTree(const std::vector<std::string>& romPresets, const std::string& undoCountMax)
    : romFile_(romPresets.empty() ? "" : packed(storedBank("A name of its own", romPresets), kBankBlockId)),
      tree_(definitions(), instance(romFile_.path(), undoCountMax)) {
    for (const auto& row : kParams)
        collector().define(("plugin.modMain." + std::string(row.name)).c_str(), tree_.info(row.definition));
    collector().closeCollection();
}

std::string CPresetTree::state() {
    std::ostringstream out;
    for (const auto& row : kParams)
        print(out, param(row.name));
    return out.str();
}

std::string CPresetTree::everything() {
    // Reads the programs through the registry; a capture on the way changes no value.
    std::string all = state() + programs() + '\n';
    for (int32_t i = 0; i < master().programCount(); ++i)
        all += acquire(master(), i == master().currentProgram() ? -1 : i);
    return all;
}

std::string CPresetTree::activate(CAudioParamRegistry& registry, const std::string& bytes,
                                  const CPresetRequest& request) {
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.size()));
    return firstLine(registry.activatePreset(reader, request));
}

std::string CPresetTree::activateBank(const std::string& bytes, const CPresetRequest& request) {
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.size()));
    return firstLine(master().activateBank(reader, request));
}

std::string CPresetTree::acquire(CAudioParamRegistry& registry, int32_t index, bool fromRom, int32_t group) {
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    EXPECT_EQ(firstLine(registry.acquirePreset(fromRom, index, group, writer, false)), "");
    return textOf(bytes);
}

std::string CPresetTree::acquireBank(bool fromRom) {
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    EXPECT_EQ(firstLine(master().acquireBank(fromRom, writer, false)), "");
    return textOf(bytes);
}

std::string CPresetTree::programs() {
    std::string names;
    for (int32_t i = 0; i < master().programCount(); ++i) {
        names += i > 0 ? "," : "";
        names += (i == master().currentProgram() ? "*" : "") + master().programName(i).toUtf8();
    }
    return names;
}

std::string CPresetTree::labels() {
    int32_t position = 0;
    std::string all;
    const auto labels = history().getStepLabels(&position);
    for (int32_t i = 0; i < labels.count(); ++i) {
        all += i > 0 ? "," : "";
        all += (i == position ? "*" : "") + labels[i].toUtf8();
    }
    return all;
}

}  // namespace tarv
