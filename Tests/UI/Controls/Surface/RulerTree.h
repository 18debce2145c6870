#pragma once

#include "Tests/UI/Controls/Surface/SurfaceTree.h"

namespace tarv {

inline const std::vector<std::string> kFrequencies = {"60", "150", "400", "1000", "2500", "6000", "15000"};

/// Rulers beside the surface of bands.
class CRulerTest : public CSurfaceTest {
protected:
    static std::string gainRuler(const std::string& more = "") {
        return R"(<ui:ruler name="ruler" placement="left" ruler-size="18" image-set="shared::is.ruler"
                    color="RulerTick" min-max="ui.range" ruled-view="^surface" )" +
               more + "/>";
    }
    /// A ruler below the bands with a title for each of them.
    static std::string titleRuler(const std::vector<std::string>& titles, const std::string& more = "") {
        std::string list = "<ui:value-list-manual name=\"titles\">";
        for (const std::string& title : titles) {
            list += "<core:object name=\"content\" title=\"" + title + "\"/>";
        }
        return list + R"(</ui:value-list-manual>
                <ui:ruler name="ruler" placement="bottom" ruler-size="14" image-set="shared::is.ruler"
                    color="RulerTick" ruled-view="^surface" is-labels-linear="true" titles="^titles" )" +
               more + "/>";
    }
    std::vector<std::string> texts() {
        std::vector<std::string> all;
        for (int32_t i = 0; i < ruler().labelCount(); ++i) {
            all.push_back(ruler().label(i)->getAttrString("title").toUtf8());
        }
        return all;
    }
    CViewRect labelBox(int32_t index) { return ruler().label(index)->area().box(); }
};

}  // namespace tarv
