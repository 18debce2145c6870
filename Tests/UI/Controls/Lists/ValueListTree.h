#pragma once

#include "Tests/UI/Controls/ControlEditor.h"
#include "UI/Controls/Lists/CValueListAudio.h"

namespace tarv {

/// Value lists beside the bridges of the routing.
struct CValueListTest : CControlEditor {
    static CTestNode content(const char* title, const char* value = nullptr) {
        CTestNode node{"content", "content", {{"title", title}}};
        if (value) {
            node.attributes.emplace_back("value", value);
        }
        return node;
    }
    void addBridges() {
        for (const char* name :
             {"in-channel-names", "group-names", "in-routing", "out-routing", "grouping", "ms-pairs"}) {
            addBridge(std::string(name) + "-bridge", std::string("io-params.") + name);
        }
    }
    CValueList& list(const CTexts& attributes, const std::vector<CTestNode>& children = {}) {
        load("", {{"ui:value-list", "list", attributes, children}});
        return last();
    }
    /// Made by the last call of `list`.
    CValueList& last() {
        const auto& all = object("").children();
        return dynamic_cast<CValueList&>(*all[all.count() - 1]);
    }
    std::string failure(const CTexts& attributes, const std::vector<CTestNode>& children = {}) {
        return tryLoad("", {{"ui:value-list", "list", attributes, children}});
    }
    /// Titles, those that are dimmed in parentheses; with `hasValues` also "=value".
    static std::string titles(const CValueList& list, bool hasValues = false) {
        std::string all;
        for (int32_t i = 0; i < list.count(); ++i) {
            all += (i > 0 ? "|" : "") + text(list[i]);
            if (hasValues) {
                all += "=" + CString::fromDouble(list[i].value, 0).toUtf8();
            }
        }
        return all;
    }
    static std::string text(const CValueList::CItem& item) {
        const std::string title = item.title.toUtf8();
        return item.isDimmed ? "(" + title + ")" : title;
    }
    void setNumbers(const char* bridgeName, int32_t group, std::vector<double> values) {
        EXPECT_EQ(consumed(bridge(bridgeName).setValues(group, 0, values.data(), static_cast<int32_t>(values.size()))),
                  "");
        system_.pump();
    }
    void setTexts(const char* param, const std::vector<const char*>& texts) {
        CTextList list;
        for (const char* text : texts) {
            list.append(text);
        }
        EXPECT_EQ(consumed(client().setTexts((std::string("plugin.modMain.") + param).c_str(), 0, 0, list)), "");
        system_.pump();
    }
    CAudioInterfaceClient& client() { return dynamic_cast<CAudioInterfaceClient&>(object("interface-client")); }
    void setHostChannels(int32_t inputs, int32_t outputs) {
        instance().interfaceBase()->setIoCounts(inputs, outputs, 0);
        system_.pump();
    }
};

}  // namespace tarv
