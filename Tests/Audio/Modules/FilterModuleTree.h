#pragma once

#include "Audio/Modules/CModFilter.h"
#include "Tests/Audio/Graph/GraphTree.h"
#include "Tests/Audio/Modules/CTestGen.h"

namespace tarv {

/// One-pole low-pass as the kernels run it: v += (x - v) k.
struct COnePole {
    double k;
    double v = 0.0;
    double next(double x) { return v += (x - v) * k; }
};

/// A generator of one-pole sections, one for each gain, with the coefficient k (the first design number if empty).
inline CTestNode poles(const std::string& name, const std::string& gains, const std::string& k = "",
                       CTestAttributes more = {}) {
    CTestAttributes attributes = {{"type", "5"}, {"gains", gains}};
    attributes.emplace_back(k.empty() ? "use-values" : "numerators", k.empty() ? "true" : k);
    attributes.insert(attributes.end(), more.begin(), more.end());
    return {"test:gen", name, attributes};
}

/// The array "arr" of generators of these names, from position 0.
inline CTestNode arrayNode(const std::vector<std::string>& names) {
    CTestNode array{"audio:fltgen-array", "arr"};
    for (size_t i = 0; i < names.size(); ++i) {
        array.children.push_back(
            {"audio:fltgen-array-item", "item", {{"index", std::to_string(i)}, {"fltgen", "audio." + names[i]}}});
    }
    return array;
}

/// The filter "f" with the parameters count, index and, on demand, freq.
inline CTestNode filterNode(const std::string& count, const std::string& index, const std::string& freq = "",
                            CTestAttributes more = {}) {
    CTestNode node{"audio:modFilter", "f", {{"gen-array", "audio.arr"}}};
    node.attributes.insert(node.attributes.end(), more.begin(), more.end());
    node.children = {allocNode("count", 0), allocNode("index", 1), numberNode("index", index)};
    if (!count.empty()) {
        node.children.push_back(numberNode("count", count));
    }
    if (!freq.empty()) {
        node.children.push_back(allocNode("freq", 2));
        node.children.push_back(numberNode("freq", freq));
    }
    return node;
}

class CFilter : public CGraphTree {
public:
    explicit CFilter(const std::vector<CTestNode>& definitions) : CGraphTree(definitions) {
        EXPECT_EQ(build("f"), "");
        start();
    }
    const CModFilterModule& module() const { return as<CModFilter>().module(0); }
};

}  // namespace tarv
