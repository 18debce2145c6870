// What earlier releases wrote still loads, value by value. Each folder of Tests/Golden is one release: every file has
// its values as text beside it. TARV_WRITE_GOLDEN=FOLDER writes a new release's files there; they are added, never
// replaced.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Audio/Stores/PackedStream.h"
#include "BlockText.h"
#include "Core/CompressedBlock.h"
#include "Tests/System/EngineRun.h"
#include "Tests/TestPaths.h"

namespace tarv::engine {
namespace {

namespace fs = std::filesystem;

constexpr const char* kHostPrefix = "a host's header:";  // 16 bytes

std::unique_ptr<CPlainInstance> make() {
    CError* error = nullptr;
    std::unique_ptr<CPlainInstance> instance(CPlainInstance::create(error));
    EXPECT_TRUE(instance) << (error ? error->joined().toUtf8() : "");
    delete error;
    return instance;
}

bool isGood(CError* error) {
    EXPECT_EQ(error, nullptr) << error->joined().toUtf8();
    delete error;
    return error == nullptr;
}

CByteBuffer bufferOf(const std::string& bytes) {
    CByteBuffer buffer;
    CBufferWriter writer(buffer);
    isGood(writer.write(bytes.data(), static_cast<int64_t>(bytes.size())));
    return buffer;
}

std::string textOf(const CByteBuffer& bytes) {
    std::string text;
    isGood(blockText(bytes, text));
    return text;
}

std::string readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

/// The records of a preset's text: a line that begins with two blanks, and its groups.
std::vector<std::string> recordsOf(const std::string& text) {
    std::vector<std::string> records;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.compare(0, 6, "      ") == 0 && !records.empty()) {
            records.back() += "\n" + line;
        } else if (line.compare(0, 2, "  ") == 0) {
            records.push_back(line);
        }
    }
    return records;
}

CAudioParamRegistry* routingOf(const CAudioWrapper& instance) {
    return static_cast<CAudioParamRegistry*>(instance.paramCollector()->getRegistry("TAIO"));
}

/// Every record of `stored` stands in what the instance gives back, but for one that has moved to another key. The name
/// of the instance goes with the program that is current when the bank is loaded, not with each.
void expectKept(const std::string& stored, const std::string& given, const fs::path& path, bool isBank = false) {
    for (const std::string& record : recordsOf(stored)) {
        const bool isMoved = record.compare(0, 25, "  io-params.oversampling ") == 0;
        const bool isOfInstance = isBank && record.compare(0, 16, "  instance-name ") == 0;
        EXPECT_TRUE(isMoved || isOfInstance || given.find(record + "\n") != std::string::npos) << path << ":\n"
                                                                                               << record;
    }
}

void expectProgram(const CByteBuffer& bytes, const std::string& text, const fs::path& path) {
    const auto instance = make();
    const bool isRouting = text.compare(0, 13, "preset \"TAIO:") == 0;
    if (!isRouting) {
        ASSERT_TRUE(isGood(instance->setState(bytes.data(), bytes.count(), true, true))) << path;
        CByteBuffer given;
        ASSERT_TRUE(isGood(instance->getState(given, true)));
        expectKept(text, textOf(given), path);
        return;
    }
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
    CByteBuffer stream;
    ASSERT_TRUE(isGood(reader.readCompressedData(stream, kPresetBlockId)));
    CMemoryReader preset(stream.data(), static_cast<uint32_t>(stream.count()));
    CAudioParamRegistry* registry = routingOf(*instance);
    ASSERT_TRUE(isGood(registry->activatePreset(preset))) << path;
    CByteBuffer given;
    CBufferWriter writer(given);
    ASSERT_TRUE(isGood(registry->acquirePreset(false, -1, -1, writer, true)));
    expectKept(text, textOf(given), path);
}

void expectBank(const CByteBuffer& bytes, const std::string& text, const fs::path& path) {
    const auto instance = make();
    ASSERT_TRUE(isGood(instance->setState(bytes.data(), bytes.count(), false, true))) << path;
    std::string given;
    for (int32_t i = 0; i < instance->paramRegistry()->programCount(); ++i) {
        instance->paramRegistry()->selectProgram(i);
        CByteBuffer program;
        ASSERT_TRUE(isGood(instance->getState(program, true)));
        given += textOf(program);
    }
    expectKept(text, given, path, true);
}

void expectList(const CByteBuffer& bytes, const fs::path& path) {
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
    CAudioPresetList list;
    ASSERT_TRUE(isGood(loadPacked(reader, kListBlockId, list))) << path;
    ASSERT_GT(list.count(), 0) << path;
    for (int32_t i = 0; i < list.count(); ++i) {
        CByteBuffer stream;
        CBufferWriter writer(stream);
        ASSERT_TRUE(isGood(list.preset(i).save(writer)));
        CMemoryReader preset(stream.data(), static_cast<uint32_t>(stream.count()));
        const auto instance = make();
        EXPECT_TRUE(isGood(routingOf(*instance)->activatePreset(preset))) << path;
    }
}

TEST(Golden, WhatReleasesWroteLoadsWithItsValues) {
    int32_t files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(kSourceFolder) / "Tests/Golden")) {
        const fs::path& path = entry.path();
        if (!entry.is_regular_file() || path.extension() == ".txt" || path.extension() == ".md") {
            continue;
        }
        ++files;
        const CByteBuffer bytes = bufferOf(readFile(path));
        const std::string text = readFile(path.string() + ".txt");
        EXPECT_EQ(textOf(bytes), text) << path;
        if (text.compare(0, 6, "preset") == 0) {
            expectProgram(bytes, text, path);
        } else if (text.compare(0, 4, "bank") == 0) {
            expectBank(bytes, text, path);
        } else {
            expectList(bytes, path);
        }
    }
    EXPECT_GE(files, 7);
}

void setTexts(CPlainInstance& instance, const char* param, const std::vector<const char*>& texts) {
    for (size_t i = 0; i < texts.size(); ++i) {
        instance.paramCollector()->findParam(param)->setText(
            0, static_cast<int32_t>(i), CString::fromUtf8(texts[i], std::char_traits<char>::length(texts[i])));
    }
}

/// A session in which every stored parameter stands somewhere else than at its default.
void fill(CPlainInstance& instance) {
    for (int32_t group = 0; group < 8; ++group) {
        for (int32_t band = 0; band < 10; ++band) {
            apply(instance, {kGains, group, band, factorOf(-11.7 + 2.3 * band + 0.37 * group)});
            apply(instance, {kFreqs, group, band, 25.0 * std::pow(2.0, band) + 3.125 * group});
        }
        apply(instance, {kOutGain, group, 0, factorOf(-6.5 + group)});
        apply(instance, {kMute, group, 0, group % 3 == 1 ? 1.0 : 0.0});
        apply(instance, {kInRouting, 0, group, static_cast<double>((group * 5 + 3) % 17)});
        apply(instance, {kOutRouting, 0, group, static_cast<double>((group * 7 + 2) % 17)});
        apply(instance, {kGrouping, 0, group, static_cast<double>(7 - group)});
        apply(instance, {kPairs, 0, group, static_cast<double>((group + 1) % 5)});
    }
    apply(instance, {kBandCount, 0, 0, 10.0});
    apply(instance, {kOversampling, 0, 0, 4.0});
    setTexts(instance, "plugin.modMain.io-params.group-names",
             {"Voice", "Größe", "Бас", "低音", "קול", "", "7", "a:b"});
    setTexts(instance, "plugin.modMain.io-params.in-channel-names", {"Left", "Right", "Centre", "LFE"});
    setTexts(instance, "plugin.modMain.instance-name", {"Bus 3 \"drums\""});
}

void writeGolden(const fs::path& folder, const std::string& name, const std::string& bytes) {
    ASSERT_FALSE(fs::exists(folder / name)) << "a release's files are never replaced";
    std::ofstream(folder / name, std::ios::binary) << bytes;
    std::ofstream(folder / (name + ".txt"), std::ios::binary) << textOf(bufferOf(bytes));
}

std::string stateOf(CPlainInstance& instance, bool isProgram) {
    CByteBuffer chunk;
    isGood(instance.getState(chunk, isProgram));
    return {reinterpret_cast<const char*>(chunk.data()), static_cast<size_t>(chunk.count())};
}

TEST(Golden, WriteWhenAskedTo) {
    const char* folder = std::getenv("TARV_WRITE_GOLDEN");
    if (!folder) {
        return;
    }
    fs::create_directories(folder);
    const auto instance = make();
    writeGolden(folder, "default.preset", stateOf(*instance, true));
    for (int32_t i = 0; i < 7; i += 2) {
        instance->paramRegistry()->selectProgram(i);
        fill(*instance);
    }
    instance->paramRegistry()->renameProgram(6, CString::fromUtf8("Mastering: l\xc3\xa4uter", 18));
    writeGolden(folder, "full.preset", stateOf(*instance, true));
    writeGolden(folder, "full.bank", stateOf(*instance, false));
    writeGolden(folder, "project-program.chunk", kHostPrefix + stateOf(*instance, true));
    writeGolden(folder, "project-bank.chunk", kHostPrefix + stateOf(*instance, false));
    CByteBuffer routing;
    CBufferWriter writer(routing);
    ASSERT_TRUE(isGood(routingOf(*instance)->acquirePreset(false, -1, -1, writer, true)));
    writeGolden(folder, "routing.preset",
                {reinterpret_cast<const char*>(routing.data()), static_cast<size_t>(routing.count())});
    CResourceMap::CRange range;
    for (const auto& [resource, name] :
         {std::pair("FactoryROM.cbf", "factory.bank"), std::pair("AppDataGlobal_routing-presets", "routing.list")}) {
        ASSERT_TRUE(CResourceMap::find(resource, range));
        writeGolden(folder, name, {reinterpret_cast<const char*>(range.bytes), range.size});
    }
}

}  // namespace
}  // namespace tarv::engine
