#include "UI/Controls/Lists/CValueList.h"

#include "ValueListTree.h"

namespace tarv {
namespace {

struct ValueList : CValueListTest {
    CValueList& manual(const CTexts& attributes = {}) {
        load("", {{"ui:value-list-manual",
                   "list",
                   attributes,
                   {content("80%", "0.8"), content("100%", "1"), content("Reserve"), content("125%", "1.25")}}});
        return last();
    }
};

TEST_F(ValueList, HasTheContentChildren) {
    const CValueList& list = manual();
    EXPECT_EQ(titles(list), "80%|100%|Reserve|125%");
    EXPECT_EQ(list[0].value, 0.8);
    EXPECT_EQ(list[2].value, 2.0) << "without a value, the position";
    EXPECT_EQ(list.getAttrString("titles"), CString("80%;100%;Reserve;125%"));
}

TEST_F(ValueList, IsManualWithoutAMode) {
    EXPECT_EQ(titles(this->list({}, {content("a"), content("b")}), true), "a=0|b=1");
    EXPECT_EQ(titles(this->list({{"mode", "manual"}}, {content("a", "5")}), true), "a=5");
    EXPECT_EQ(titles(this->list({{"mode", "unheard-of"}}, {content("a", "5")}), true), "a=5");
}

TEST_F(ValueList, ContentMayBeOfTheKeyOfAList) {
    EXPECT_EQ(titles(this->list({{"mode", "manual"}},
                                {{"ui:value-list-manual", "content", {{"title", "a"}}},
                                 {"ui:value-list-manual", "content", {{"title", "b"}, {"value", "7"}}}}),
                     true),
              "a=0|b=7");
}

TEST_F(ValueList, FindsItemsByTheirValue) {
    const CValueList& list = manual();
    EXPECT_EQ(list.indexOf(1.25), 3);
    EXPECT_EQ(list.indexOf(0.1 * 8), 0) << "as a sum of reals gives it";
    EXPECT_EQ(list.indexOf(3.0), -1);
    EXPECT_EQ(text(list.itemOf(1.0)), "100%");
    EXPECT_EQ(text(list.itemOf(3.0)), "(3)") << "what is stored shows, dimmed";
    EXPECT_EQ(text(list.itemOf(0.5)), "(0.50)");
}

TEST_F(ValueList, AttributesAddAndLeaveOutItems) {
    EXPECT_EQ(titles(manual({{"is-hide-reserve", "true"}})), "80%|100%|125%");
    EXPECT_EQ(titles(manual({{"value-count", "2"}})), "80%|100%");
    EXPECT_EQ(titles(manual({{"value-count", "0"}})), "");
    EXPECT_EQ(titles(manual({{"value-count", "-1"}, {"max-capacity", "3"}})), "80%|100%|Reserve");
    EXPECT_EQ(titles(this->list({{"add-empty-value", "true"}}, {content("a", "1"), content("b", "2")}), true),
              "---=0|a=1|b=2");
    EXPECT_EQ(titles(manual({{"add-empty-value", "true"}, {"max-capacity", "2"}})), "---|80%");
    EXPECT_EQ(titles(this->list({{"add-empty-value", "true"}}), true), "---=0");
    EXPECT_EQ(titles(manual({{"value-count", "3"}, {"is-hide-reserve", "true"}})), "80%|100%|125%")
        << "what is hidden is not counted";
    EXPECT_EQ(manual({{"separator-char", ","}}).getAttrString("titles"), CString("80%,100%,Reserve,125%"));
}

TEST_F(ValueList, SendsAnEventWhenItsItemsBecomeOthers) {
    CValueList& list = manual();
    listen(list, {"values-changed"});
    EXPECT_EQ(consumed(list.setAttribute("value-count", CString("3"))), "");
    EXPECT_EQ(heard(), "list values-changed");
    EXPECT_EQ(consumed(list.setAttribute("value-count", CString("3"))), "");
    EXPECT_EQ(heard(), "") << "the same items";
    set(*list.findChild("content"), "title", "75%");
    EXPECT_EQ(heard(), "");
    CAttributeMap none;
    list.listenObject("ui.heard", "again", "update-values");
    EXPECT_EQ(consumed(object("heard").sendEvent("again", none, false)), "");
    EXPECT_EQ(heard(), "list values-changed");
    EXPECT_EQ(titles(list), "75%|100%|Reserve");
}

TEST_F(ValueList, AnotherSeparatorStandsBetweenItsTitles) {
    CValueList& list = manual();
    listen(list, {"values-changed"});
    set(list, "separator-char", "|");
    EXPECT_EQ(list.getAttrString("titles"), CString("80%|100%|Reserve|125%"));
    set(list, "separator-char", "");
    EXPECT_EQ(list.getAttrString("titles"), CString("80%;100%;Reserve;125%"));
    EXPECT_EQ(heard(), "") << "the items are the same";
}

TEST_F(ValueList, TakesItemsOfCode) {
    CValueList& list = manual();
    listen(list, {"values-changed"});
    CValueList::CItems items;
    items.append({"later", 1.0, true});
    items.append({"now", 0.0});
    EXPECT_EQ(consumed(list.setItems(items)), "");
    EXPECT_EQ(titles(list), "(later)|now");
    EXPECT_EQ(heard(), "list values-changed");
}

TEST_F(ValueList, MayBeDestroyedByWhomItNotifies) {
    CValueList& list = manual();
    listen(list, {"values-changed"});
    CHeardEvents::onEvent = [&list](const std::string&) { delete &list; };
    EXPECT_EQ(consumed(list.setAttribute("value-count", CString("1"))), "");
    EXPECT_FALSE(object("").findChild("list"));
}

TEST_F(ValueList, GivesTheRowsOfAPopup) {
    CValueList& list = manual({{"value-count", "2"}});
    CDynamicListRows rows;
    EXPECT_EQ(consumed(list.generateSubList("", rows)), "");
    ASSERT_EQ(rows.count(), 2);
    EXPECT_EQ(rows[1].text, CString("100%"));
    EXPECT_EQ(rows[1].id, CString("1"));
    EXPECT_EQ(consumed(list.generateSubList("1", rows)).substr(0, 26), "Invalid list identifier 1.");
    EXPECT_EQ(rows.count(), 2);
    CValueList::CItems items;
    items.append({"gone", 0.0, true});
    EXPECT_EQ(consumed(list.setItems(items)), "");
    CDynamicListRows dimmed;
    EXPECT_EQ(consumed(list.generateSubList("", dimmed)), "");
    EXPECT_EQ(dimmed[0].text, CString("[C1]gone[/C1]"));
}

}  // namespace
}  // namespace tarv
