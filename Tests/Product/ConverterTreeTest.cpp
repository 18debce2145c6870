#include <gtest/gtest.h>

#include "ProductTree.h"

namespace tarv {

namespace {

const CObjectRow kConverters[] = {
    {"gain", "audio:cvt-gain", {{"decimals", "1"}, {"zero-point", "0.5"}, {"label", "dB"}}},
    {"enum", "audio:cvt-enum", {}},
    {"enum-dec", "audio:cvt-enum", {{"state-names", "0;1;2;3;4;5;6;7;8;9"}}},
    {"enum-mode", "audio:cvt-enum", {{"state-names", "Mode 0;Mode 1"}}},
    {"enum-delay-time-mode", "audio:cvt-enum", {{"state-names", "Msec;Meter;Foot"}}},
    {"enum-enable", "audio:cvt-enum", {{"state-names", "Off;On"}}},
    {"enum-leveler-mode", "audio:cvt-enum", {{"state-names", "Maximum;Minimum"}}},
    {"enum-noisegen", "audio:cvt-enum", {{"state-names", "Off;Uniform;Gaussian"}}},
    {"enum-sensefunc", "audio:cvt-enum", {{"state-names", "V.High;High;Medium;Low;V.Low"}}},
    {"enum-spectype", "audio:cvt-enum", {{"state-names", "RT Avg;Max;Avg"}}},
    {"enum-blocksize", "audio:cvt-enum", {{"state-names", "64;128;256;512;1024;2048;4096;8192;16384;32768"}}},
    {"enum-dither-bits", "audio:cvt-enum", {{"state-names", "8;9;10;11;12;13;14;15;16;17;18;19;20;21;22;23;24"}}},
    {"enum-dither-noise", "audio:cvt-enum", {{"state-names", "TPDF;Gauss"}}},
    {"enum-dither-shaping", "audio:cvt-enum", {{"state-names", "Off;Equal;Classic"}}},
    {"enum-satlfm", "audio:cvt-enum", {{"state-names", "Precise;Pumping"}}},
    {"enum-msmod", "audio:cvt-enum", {{"state-names", "Encode;Decode;Inline"}}},
    {"enum-beeper", "audio:cvt-enum", {{"state-names", "Beep;Noise;Mute"}}},
    {"enum-tarvgate", "audio:cvt-enum", {{"state-names", "Fall;Cutoff A|CutA;Cutoff B|CutB"}}},
    {"freq", "audio:cvt-freq", {{"label", "Hz"}}},
    {"real", "audio:cvt-real", {{"decimals", "2"}}},
    {"percent", "audio:cvt-percent", {{"label", "%"}}},
    {"phase", "audio:cvt-real", {{"decimals", "1"}, {"lable", "Deg"}}},
    {"real-threshold", "audio:cvt-real", {{"decimals", "1"}}},
    {"time", "audio:cvt-time", {{"label", "ms"}}},
    {"timelog", "audio:cvt-time", {{"label", "ms"}, {"is-log", "true"}}},
    {"time-sec", "audio:cvt-time", {{"label", "ms"}, {"scale", "1.0"}}},
    {"time-exact", "audio:cvt-time", {{"label", "ms"}, {"is-exact", "true"}, {"is-precise", "true"}}},
    {"ratio", "audio:cvt-ratio", {}},
    {"ratio2", "audio:cvt-ratio", {{"decimals", "2"}}},
    {"text", "audio:cvt-text", {}},
    {"bw", "audio:cvt-bw", {{"label", "Oct"}}},
    {"enum-filters-std",
     "audio:cvt-enum",
     {{"state-names", "Off;Peaking;Lo-shelf|Lo-shlf;Hi-shelf|Hi-shlf;Lo-pass;Hi-pass"}}},
    {"enum-filters-lp1", "audio:cvt-enum", {{"state-names", "Off;LP-6dB;LP-12dB;LP-18dB;LP-24dB"}}},
    {"enum-filters-hp1", "audio:cvt-enum", {{"state-names", "Off;HP-6dB;HP-12dB;HP-18dB;HP-24dB"}}},
    {"enum-filters-hbf-steep1",
     "audio:cvt-enum",
     {{"state-names", "-139/0.01;-122/0.01;-104/0.01;-86/0.01;-69/0.01;-51/0.01"}}},
    {"enum-filters-hbf-steep2",
     "audio:cvt-enum",
     {{"state-names", "-164/0.02;-143/0.02;-122/0.02;-102/0.02;-81/0.02;-61/0.02"}}},
    {"enum-filters-hbf-steep3",
     "audio:cvt-enum",
     {{"state-names", "-182/0.03;-159/0.03;-136/0.03;-114/0.03;-91/0.03;-68/0.03"}}},
    {"enum-filters-hbf-steep5",
     "audio:cvt-enum",
     {{"state-names", "-212/0.05;-186/0.05;-159/0.05;-133/0.05;-106/0.05;-80/0.05;-53/0.05"}}},
    {"enum-filters-hbf-soft", "audio:cvt-enum", {{"state-names", "-225/0.25;-171/0.25;-116/0.25;-62/0.25"}}},
    {"enum-mscoder", "audio:cvt-enum", {{"state-names", "Encoder;Decoder"}}},
    {"enum-mspairs", "audio:cvt-enum", {{"state-names", "---;MS1;MS2;MS3;MS4"}}},
    {"enum-oversampling", "audio:cvt-enum", {{"state-names", "Auto;1x;2x;4x;8x"}}},
    {"enum-sat", "audio:cvt-enum", {{"state-names", "Direct;Multipl"}}},
    {"enum-crunch-attack", "audio:cvt-enum", {{"state-names", "Type 1;Type 2;Type 3"}}},
    {"enum-dcfilter",
     "audio:cvt-enum",
     {{"state-names",
       "-6 dB/oct|-6;-12 soft|-12sft;-12 steep|-12stp;-18 soft|-18sft;-18 steep|-18stp;-24 soft|-24sft;-24 "
       "steep|-24stp;-30 soft|-30sft;-30 steep|-30stp;-36 soft|-36sft;-36 steep|-36stp"}}},
    {"enum-xover", "audio:cvt-enum", {{"state-names", "-6;-12;-24"}}},
    {"enum-polycomp-ops", "audio:cvt-enum", {{"state-names", "MVar;MRes;DVar;DRes;SVar;SRes;QVar;QRes"}}},
    {"enum-polycomp-opd", "audio:cvt-enum", {{"state-names", "<1>;1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;16;17;18;19"}}},
    {"enum-polycomp-opcount",
     "audio:cvt-enum",
     {{"state-names", "0;1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;16;17;18;19;20"}}},
    {"enum-polycomp-vouts", "audio:cvt-enum", {{"state-names", "<G>;1;2;3;4;5;6;7;8;9;10;11;12;13"}}},
    {"enum-metercorr", "audio:cvt-enum", {{"state-names", "Left;Right;S Left;S Right"}}},
    {"enum-paramfltmb",
     "audio:cvt-enum",
     {{"state-names", "1/3 oct;1/2 oct;2/3 oct;3/4 oct;1 oct;1.5 oct;2 oct;2.5 oct"}}},
};

class ConverterTree : public CProductTree {};

TEST_F(ConverterTree, HoldsEveryConverterInOrderAndNoOther) {
    const CObject* converters = shared("audio.paramcvt");
    ASSERT_TRUE(converters);
    ASSERT_EQ(converters->children().count(), static_cast<int32_t>(std::size(kConverters)));
    for (int32_t i = 0; i < converters->children().count(); ++i) {
        expectObject(converters->children()[i], kConverters[i]);
    }
}

}  // namespace

}  // namespace tarv
