#include <gtest/gtest.h>

#include "ProductTree.h"

namespace tarv {

namespace {

const CObjectRow kGenerators[] = {
    {"bypass", "audio:fltgen-bypass", {}},
    {"lp1", "audio:fltgen-lphp1", {{"type", "0"}}},
    {"lp1b", "audio:fltgen-lphp1", {{"type", "1"}}},
    {"lp1c", "audio:fltgen-lphp1", {{"type", "2"}}},
    {"lp1d", "audio:fltgen-lphp1", {{"type", "3"}}},
    {"hp1", "audio:fltgen-lphp1", {{"type", "4"}}},
    {"hp1b", "audio:fltgen-lphp1", {{"type", "5"}}},
    {"hp1c", "audio:fltgen-lphp1", {{"type", "6"}}},
    {"hp1d", "audio:fltgen-lphp1", {{"type", "7"}}},
    {"lp2_rbj", "audio:fltgen-rbj", {{"type", "0"}}},
    {"lp2_rbj2", "audio:fltgen-rbj", {{"type", "0"}, {"is-type2", "true"}}},
    {"hp2_rbj", "audio:fltgen-rbj", {{"type", "1"}}},
    {"hp2_rbj2", "audio:fltgen-rbj", {{"type", "1"}, {"is-type2", "true"}}},
    {"bp2_rbj2", "audio:fltgen-rbj", {{"type", "2"}, {"is-type2", "true"}}},
    {"bp2b_rbj2", "audio:fltgen-rbj", {{"type", "3"}, {"is-type2", "true"}}},
    {"ap_rbj", "audio:fltgen-rbj", {{"type", "5"}}},
    {"ap2_rbj", "audio:fltgen-rbj", {{"type", "9"}, {"is-q", "true"}}},
    {"ls_rbj", "audio:fltgen-rbj", {{"type", "7"}}},
    {"hs_rbj", "audio:fltgen-rbj", {{"type", "8"}}},
    {"hs_rbj2", "audio:fltgen-rbj", {{"type", "8"}, {"is-type2", "true"}}},
    {"lp2_rbj_q", "audio:fltgen-rbj", {{"type", "0"}, {"is-q", "true"}}},
    {"hp2_rbj_q", "audio:fltgen-rbj", {{"type", "1"}, {"is-q", "true"}}},
    {"hp2_rbj_qi", "audio:fltgen-rbj", {{"type", "1"}, {"is-q", "true"}, {"is-inverted", "true"}}},
    {"peak_magnusB", "audio:fltgen-magnus", {{"type", "1"}}},
    {"bp2_magnusA", "audio:fltgen-magnus", {{"type", "3"}}},
    {"bp2_magnusB", "audio:fltgen-magnus", {{"type", "4"}}},
    {"peak_heq", "audio:fltgen-rbj", {{"type", "6"}, {"is-type2", "true"}, {"is-heq", "true"}}},
    {"ls_heq", "audio:fltgen-rbj", {{"type", "7"}, {"is-type2", "true"}, {"is-heq", "true"}}},
    {"hs_heq", "audio:fltgen-rbj", {{"type", "8"}, {"is-type2", "true"}, {"is-heq", "true"}}},
    {"lp2_heq", "audio:fltgen-rbj", {{"type", "0"}, {"is-type2", "true"}, {"is-heq", "true"}}},
    {"hp2_heq", "audio:fltgen-rbj", {{"type", "1"}, {"is-type2", "true"}, {"is-heq", "true"}}},
    {"firlp", "audio:fltgen-firlp", {}},
    {"firlp_abs", "audio:fltgen-firlp", {{"is-absolute", "true"}}},
    {"firlim1", "audio:fltgen-firlim", {{"type", "0"}}},
    {"firlim2", "audio:fltgen-firlim", {{"type", "1"}}},
    {"firlim3", "audio:fltgen-firlim", {{"type", "2"}}},
    {"firhilb", "audio:fltgen-firhilb", {}},
    {"hilb_apf1_6a", "audio:fltgen-apf1", {{"type", "0"}}},
    {"hilb_apf1_6b", "audio:fltgen-apf1", {{"type", "1"}}},
};

struct CSetRow {
    const char* name;
    std::vector<CAttributeRow> items;  ///< generator, adjust
};

const CSetRow kSets[] = {
    {"hp2_bessel", {{"hp2_rbj_q", "0.78740157,1.0,0.82025173"}}},
    {"hp3_bessel", {{"hp1", "0.7575758,1.0"}, {"hp2_rbj_q", "0.689655,1.0,0.975816716"}}},
    {"hp4_bessel", {{"hp2_rbj_q", "0.625,1.0,1.14552397"}, {"hp2_rbj_q", "0.69930,1.0,0.7353981"}}},
    {"hp5_bessel",
     {{"hp1", "0.666667,1.0"}, {"hp2_rbj_q", "0.5681818,1.0,1.30108895"}, {"hp2_rbj_q", "0.641025641,1.0,0.7919672"}}},
    {"hp6_bessel",
     {{"hp2_rbj_q", "0.5263158,1.0,1.442511667"},
      {"hp2_rbj_q", "0.591715976,1.0,0.8626785"},
      {"hp2_rbj_q", "0.625,1.0,0.7212558"}}},
    {"hp2_bworth", {{"hp2_rbj_q", "1.0,1.0,1.0"}}},
    {"hp3_bworth", {{"hp1", "1.0,1.0"}, {"hp2_rbj_q", "1.0,1.0,1.4142271"}}},
    {"hp4_bworth", {{"hp2_rbj_q", "1.0,1.0,0.7636826"}, {"hp2_rbj_q", "1.0,1.0,1.8526375"}}},
    {"hp5_bworth", {{"hp1", "1.0,1.0"}, {"hp2_rbj_q", "1.0,1.0,0.8768208"}, {"hp2_rbj_q", "1.0,1.0,2.29104794"}}},
    {"hp6_bworth",
     {{"hp2_rbj_q", "1.0,1.0,0.7353981"}, {"hp2_rbj_q", "1.0,1.0,1.0"}, {"hp2_rbj_q", "1.0,1.0,2.729458351"}}},
    {"lp4_lr", {{"lp2_rbj_q", ""}, {"lp2_rbj_q", ""}}},
    {"hp4_lr", {{"hp2_rbj_q", ""}, {"hp2_rbj_q", ""}}},
    {"hislope", {{"hs_rbj2", "1.0,1.0,1.0"}, {"hs_rbj2", "1.0,1.0,2.1875"}}},
};

struct CHalfBandRow {
    const char* name;
    int order;
    const char* a;  ///< null where the coefficients are designed
    const char* b;
};

const CHalfBandRow kHalfBands[] = {
    {"hbf139t100", 16, nullptr, nullptr},
    {"hbf122t100", 14, nullptr, nullptr},
    {"hbf104t100", 12, nullptr, nullptr},
    {"hbf86t100", 10, nullptr, nullptr},
    {"hbf69t100", 8, nullptr, nullptr},
    {"hbf51t100", 6, nullptr, nullptr},
    {"hbf164t50", 16, nullptr, nullptr},
    {"hbf143t50", 14, nullptr, nullptr},
    {"hbf122t50", 12, nullptr, nullptr},
    {"hbf102t50", 10, nullptr, nullptr},
    {"hbf81t50", 8, nullptr, nullptr},
    {"hbf61t50", 6, nullptr, nullptr},
    {"hbf182t33", 16, nullptr, nullptr},
    {"hbf159t33", 14, nullptr, nullptr},
    {"hbf136t33", 12, nullptr, nullptr},
    {"hbf114t33", 10, nullptr, nullptr},
    {"hbf91t33", 8, nullptr, nullptr},
    {"hbf68t33", 6, nullptr, nullptr},
    {"hbf212t20", 16, nullptr, nullptr},
    {"hbf186t20", 14, nullptr, nullptr},
    {"hbf159t20", 12, nullptr, nullptr},
    {"hbf133t20", 10, nullptr, nullptr},
    {"hbf106t20", 8, "0.035832788431062100,0.272040143396457710,0.572057197235700250,0.827124761997323770",
     "0.134090141943066930,0.424324871271868350,0.706292142138639220,0.941503094173755220"},
    {"hbf80t20", 6, "0.060297390957124358,0.412590720361056260,0.772715653742923840",
     "0.215971444560929480,0.604358626465836160,0.923886138653290720"},
    {"hbf53t20", 4, "0.120732117516754470,0.663202022419399520", "0.390362187234500670,0.890786832653498230"},
    {"hbf225t4", 8, "0.011895121747543543,0.107298815124090190,0.302691477841015800,0.624310405189227980",
     "0.047600688803108131,0.191701916664550910,0.444308384398486580,0.856804935666758530"},
    {"hbf171t4", 6, "0.020342469726993929,0.184299628014595620,0.535754127708285230",
     "0.081470965110413199,0.332445500134007090,0.816782360082087490"},
    {"hbf116t4", 4, "0.042454709865267684,0.393319893190328010", "0.170739850497499070,0.745713588720222980"},
    {"hbf62t4", 2, "0.138024994073021350", "0.584683257487323190"},
};

struct CArrayRow {
    const char* name;
    std::vector<const char*> generators;  ///< by position
};

const CArrayRow kArrays[] = {
    {"std", {"bypass", "peak_magnusB", "ls_rbj", "hs_rbj", "lp2_rbj", "hp2_rbj"}},
    {"hp1", {"bypass", "hp1", "hp1b", "hp1c", "hp1d"}},
    {"hbf-steep5", {"hbf212t20", "hbf186t20", "hbf159t20", "hbf133t20", "hbf106t20", "hbf80t20", "hbf53t20"}},
    {"hbf-soft", {"hbf225t4", "hbf171t4", "hbf116t4", "hbf62t4"}},
};

class FilterTree : public CProductTree {};

TEST_F(FilterTree, HoldsEveryGenerator) {
    for (const CObjectRow& row : kGenerators) {
        expectObject(shared(std::string("audio.flt.") + row.name), row);
    }
    const size_t all = std::size(kGenerators) + std::size(kSets) + std::size(kHalfBands);
    EXPECT_EQ(static_cast<size_t>(shared("audio.flt")->children().count()), all);
}

TEST_F(FilterTree, HoldsEverySerialSetWithItsFactors) {
    for (const CSetRow& row : kSets) {
        const CObject* set = shared(std::string("audio.flt.") + row.name);
        ASSERT_TRUE(set) << row.name;
        EXPECT_EQ(set->tag().toUtf8(), "audio:fltgen-serial");
        ASSERT_EQ(static_cast<size_t>(set->children().count()), row.items.size()) << row.name;
        for (size_t i = 0; i < row.items.size(); ++i) {
            const CObject* item = set->children()[static_cast<int32_t>(i)];
            EXPECT_EQ(item->tag().toUtf8(), "audio:fltgen-serial-item");
            EXPECT_EQ(item->getAttrString("fltgen").toUtf8(), std::string("audio.flt.") + row.items[i].name);
            EXPECT_EQ(item->getAttrString("adjust").toUtf8(), row.items[i].value) << row.name;
        }
    }
}

TEST_F(FilterTree, HoldsEveryHalfBandAndTheListedCoefficientsAsTheyStand) {
    for (const CHalfBandRow& row : kHalfBands) {
        const CObject* filter = shared(std::string("audio.flt.") + row.name);
        ASSERT_TRUE(filter) << row.name;
        EXPECT_EQ(filter->tag().toUtf8(), "audio:fltgen-hbf") << row.name;
        EXPECT_EQ(filter->getAttrInt("order"), row.order) << row.name;
        EXPECT_EQ(filter->getAttrInt("type"), 0) << row.name;
        EXPECT_EQ(filter->getAttrString("a").split(',').count() * 2, row.order) << row.name;
        EXPECT_EQ(filter->getAttrString("b").split(',').count() * 2, row.order) << row.name;
        if (row.a) {
            EXPECT_EQ(filter->getAttrString("a").toUtf8(), row.a) << row.name;
            EXPECT_EQ(filter->getAttrString("b").toUtf8(), row.b) << row.name;
        }
    }
}

TEST_F(FilterTree, HoldsEveryArrayByPosition) {
    ASSERT_EQ(static_cast<size_t>(shared("audio.fltarray")->children().count()), std::size(kArrays));
    for (const CArrayRow& row : kArrays) {
        const CObject* array = shared(std::string("audio.fltarray.") + row.name);
        ASSERT_TRUE(array) << row.name;
        EXPECT_EQ(array->tag().toUtf8(), "audio:fltgen-array");
        ASSERT_EQ(static_cast<size_t>(array->children().count()), row.generators.size()) << row.name;
        for (size_t i = 0; i < row.generators.size(); ++i) {
            const CObject* item = array->children()[static_cast<int32_t>(i)];
            EXPECT_EQ(item->tag().toUtf8(), "audio:fltgen-array-item");
            EXPECT_EQ(item->getAttrString("index").toUtf8(), std::to_string(i)) << row.name;
            EXPECT_EQ(item->getAttrString("fltgen").toUtf8(), std::string("audio.flt.") + row.generators[i]);
        }
    }
}

}  // namespace

}  // namespace tarv
