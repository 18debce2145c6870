#pragma once

#include <string>

#include "CPlainEditor.h"
#include "Platform/Keyboard.h"

namespace tarv {

/// What is done to an editor before its picture is taken: values of its engine, attributes of its tree, and hands. The
/// first failure is kept. Paths begin at the main window, unless they begin with `ui.`.
class CScene {
public:
    explicit CScene(CPlainEditor& editor) : editor_(editor) {}

    const std::string& failure() const { return failure_; }
    CScene& wait(double seconds);

    // The engine; names of parameters below `plugin.modMain.`.
    /// Real units, but gains in dB.
    CScene& set(const std::string& param, int32_t group, int32_t element, double value);
    CScene& name(const std::string& param, int32_t element, const std::string& text);
    CScene& gain(int32_t group, int32_t band, double decibels);
    CScene& output(int32_t group, double decibels) { return set("modOutGain.gain", group, 0, decibels); }
    /// Two curves that are neither flat nor extreme, in the first two groups.
    CScene& curves();
    /// Bars at both ends.
    CScene& extreme();
    /// Eight channels, each in its group.
    CScene& eightGroups();
    /// Names of all kinds as long as they may be.
    CScene& longNames();
    CScene& endEngine();

    // The tree.
    CScene& palette(const std::string& name);
    CScene& tabletMode();
    CScene& attribute(const std::string& path, const char* name, const std::string& value);
    /// Sends an event to a view, as its own code would, with `text`.
    CScene& raise(const std::string& path, const char* event, const std::string& text);
    /// Shows these groups in both views, and behind them.
    CScene& groups(int32_t first, int32_t behindFirst, int32_t second, int32_t behindSecond);

    // Hands.
    CScene& point(const std::string& path);
    CScene& press(const std::string& path);
    CScene& click(const std::string& path, CPointerButton button = CPointerButton::Left);
    /// Of the list that is open.
    CScene& pointAtRow(int32_t row);
    CScene& type(const std::u16string& text);
    CScene& tap(int32_t key, int32_t times = 1);

private:
    void fail(const std::string& failure);

    CPlainEditor& editor_;
    std::string failure_;
};

struct CSceneRow {
    const char* name;
    void (*prepare)(CScene& scene);
};

/// All scenes, up to a row without a name.
extern const CSceneRow kScenes[];

}  // namespace tarv
