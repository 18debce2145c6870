#pragma once

namespace tarv {

/// Full names of all kernels. Each name is written here alone: what registers a kernel and what looks one up use the
/// constant. The suffix Init makes a state block, Update makes one that keeps another one's history, Gain multiplies
/// the output by the operation's immediate.
namespace KernelName {

// Common kernels, in the order of CCommonKernel.
constexpr const char* kCopy = "com.tarvelo.qplex.copy";
constexpr const char* kAddc = "com.tarvelo.qplex.addc";
constexpr const char* kAddcid = "com.tarvelo.qplex.addcid";
constexpr const char* kAdd2 = "com.tarvelo.qplex.add2";
constexpr const char* kAdd2i = "com.tarvelo.qplex.add2i";
constexpr const char* kAdd3 = "com.tarvelo.qplex.add3";
constexpr const char* kAdd4 = "com.tarvelo.qplex.add4";
constexpr const char* kSub2 = "com.tarvelo.qplex.sub2";
constexpr const char* kMax2 = "com.tarvelo.qplex.max2";
constexpr const char* kMax2i = "com.tarvelo.qplex.max2i";
constexpr const char* kMax3 = "com.tarvelo.qplex.max3";
constexpr const char* kMax4 = "com.tarvelo.qplex.max4";
constexpr const char* kMin2 = "com.tarvelo.qplex.min2";
constexpr const char* kMin3 = "com.tarvelo.qplex.min3";
constexpr const char* kMin4 = "com.tarvelo.qplex.min4";
constexpr const char* kMix = "com.tarvelo.qplex.mix";
constexpr const char* kMix2 = "com.tarvelo.qplex.mix2";
constexpr const char* kMixb = "com.tarvelo.qplex.mixb";
constexpr const char* kAdd2mul = "com.tarvelo.qplex.add2mul";
constexpr const char* kAdd3mul = "com.tarvelo.qplex.add3mul";
constexpr const char* kMulc = "com.tarvelo.qplex.mulc";
constexpr const char* kMulci = "com.tarvelo.qplex.mulci";
constexpr const char* kMul2 = "com.tarvelo.qplex.mul2";
constexpr const char* kMul2i = "com.tarvelo.qplex.mul2i";
constexpr const char* kMul2addi = "com.tarvelo.qplex.mul2addi";
constexpr const char* kAbs = "com.tarvelo.qplex.abs";
constexpr const char* kSqrt = "com.tarvelo.qplex.sqrt";
constexpr const char* kFill0 = "com.tarvelo.qplex.fill0";
constexpr const char* kFillc = "com.tarvelo.qplex.fillc";
constexpr const char* kFilld = "com.tarvelo.qplex.filld";
constexpr const char* kXfadei = "com.tarvelo.qplex.xfadei";
constexpr const char* kXfade = "com.tarvelo.qplex.xfade";

// Filter sections: biquads.
constexpr const char* kBiquadInit = "com.tarvelo.qplex.fltbiqi";
constexpr const char* kBiquadUpdate = "com.tarvelo.qplex.fltbiqu";
constexpr const char* kBiquadCommon = "com.tarvelo.qplex.fltbiqcommon";
constexpr const char* kBiquadCommonGain = "com.tarvelo.qplex.fltbiqcommong";
constexpr const char* kBiquadLowPass = "com.tarvelo.qplex.fltbiqlp";
constexpr const char* kBiquadLowPassGain = "com.tarvelo.qplex.fltbiqlpg";
constexpr const char* kBiquadHighPass = "com.tarvelo.qplex.fltbiqhp";
constexpr const char* kBiquadHighPassGain = "com.tarvelo.qplex.fltbiqhpg";
constexpr const char* kBiquadBandPass = "com.tarvelo.qplex.fltbiqbp";
constexpr const char* kBiquadBandPassGain = "com.tarvelo.qplex.fltbiqbpg";
constexpr const char* kBiquadNotch = "com.tarvelo.qplex.fltbiqnotch";
constexpr const char* kBiquadNotchGain = "com.tarvelo.qplex.fltbiqnotchg";

// Filter sections: one to four one-pole stages.
constexpr const char* kOnePoleInit = "com.tarvelo.qplex.fltlphp1i";
constexpr const char* kOnePoleUpdate = "com.tarvelo.qplex.fltlphp1u";
constexpr const char* kLowPass1 = "com.tarvelo.qplex.fltlp1a";
constexpr const char* kLowPass1Gain = "com.tarvelo.qplex.fltlp1ag";
constexpr const char* kLowPass2 = "com.tarvelo.qplex.fltlp1b";
constexpr const char* kLowPass2Gain = "com.tarvelo.qplex.fltlp1bg";
constexpr const char* kLowPass3 = "com.tarvelo.qplex.fltlp1c";
constexpr const char* kLowPass3Gain = "com.tarvelo.qplex.fltlp1cg";
constexpr const char* kLowPass4 = "com.tarvelo.qplex.fltlp1d";
constexpr const char* kLowPass4Gain = "com.tarvelo.qplex.fltlp1dg";
constexpr const char* kHighPass1 = "com.tarvelo.qplex.flthp1a";
constexpr const char* kHighPass1Gain = "com.tarvelo.qplex.flthp1ag";
constexpr const char* kHighPass2 = "com.tarvelo.qplex.flthp1b";
constexpr const char* kHighPass2Gain = "com.tarvelo.qplex.flthp1bg";
constexpr const char* kHighPass3 = "com.tarvelo.qplex.flthp1c";
constexpr const char* kHighPass3Gain = "com.tarvelo.qplex.flthp1cg";
constexpr const char* kHighPass4 = "com.tarvelo.qplex.flthp1d";
constexpr const char* kHighPass4Gain = "com.tarvelo.qplex.flthp1dg";

// Filter sections: half-band pairs by their order.
constexpr const char* kHalfBand2Init = "com.tarvelo.qplex.flthbf2i";
constexpr const char* kHalfBand2Update = "com.tarvelo.qplex.flthbf2u";
constexpr const char* kHalfBand2 = "com.tarvelo.qplex.flthbf2";
constexpr const char* kHalfBand2Gain = "com.tarvelo.qplex.flthbf2g";
constexpr const char* kHalfBand4Init = "com.tarvelo.qplex.flthbf4i";
constexpr const char* kHalfBand4Update = "com.tarvelo.qplex.flthbf4u";
constexpr const char* kHalfBand4 = "com.tarvelo.qplex.flthbf4";
constexpr const char* kHalfBand4Gain = "com.tarvelo.qplex.flthbf4g";
constexpr const char* kHalfBand6Init = "com.tarvelo.qplex.flthbf6i";
constexpr const char* kHalfBand6Update = "com.tarvelo.qplex.flthbf6u";
constexpr const char* kHalfBand6 = "com.tarvelo.qplex.flthbf6";
constexpr const char* kHalfBand6Gain = "com.tarvelo.qplex.flthbf6g";
constexpr const char* kHalfBand8Init = "com.tarvelo.qplex.flthbf8i";
constexpr const char* kHalfBand8Update = "com.tarvelo.qplex.flthbf8u";
constexpr const char* kHalfBand8 = "com.tarvelo.qplex.flthbf8";
constexpr const char* kHalfBand8Gain = "com.tarvelo.qplex.flthbf8g";
constexpr const char* kHalfBand10Init = "com.tarvelo.qplex.flthbf10i";
constexpr const char* kHalfBand10Update = "com.tarvelo.qplex.flthbf10u";
constexpr const char* kHalfBand10 = "com.tarvelo.qplex.flthbf10";
constexpr const char* kHalfBand10Gain = "com.tarvelo.qplex.flthbf10g";
constexpr const char* kHalfBand12Init = "com.tarvelo.qplex.flthbf12i";
constexpr const char* kHalfBand12Update = "com.tarvelo.qplex.flthbf12u";
constexpr const char* kHalfBand12 = "com.tarvelo.qplex.flthbf12";
constexpr const char* kHalfBand12Gain = "com.tarvelo.qplex.flthbf12g";
constexpr const char* kHalfBand14Init = "com.tarvelo.qplex.flthbf14i";
constexpr const char* kHalfBand14Update = "com.tarvelo.qplex.flthbf14u";
constexpr const char* kHalfBand14 = "com.tarvelo.qplex.flthbf14";
constexpr const char* kHalfBand14Gain = "com.tarvelo.qplex.flthbf14g";
constexpr const char* kHalfBand16Init = "com.tarvelo.qplex.flthbf16i";
constexpr const char* kHalfBand16Update = "com.tarvelo.qplex.flthbf16u";
constexpr const char* kHalfBand16 = "com.tarvelo.qplex.flthbf16";
constexpr const char* kHalfBand16Gain = "com.tarvelo.qplex.flthbf16g";

// Filter sections: the level-dependent biquad and the six all-passes.
constexpr const char* kHeqInit = "com.tarvelo.qplex.fltheqi";
constexpr const char* kHeqUpdate = "com.tarvelo.qplex.flthequ";
constexpr const char* kHeq = "com.tarvelo.qplex.fltheq";
constexpr const char* kAllpassInit = "com.tarvelo.qplex.fltapf1_6i";
constexpr const char* kAllpassUpdate = "com.tarvelo.qplex.fltapf1_6u";
constexpr const char* kAllpass = "com.tarvelo.qplex.fltapf1_6";
constexpr const char* kAllpassGain = "com.tarvelo.qplex.fltapf1_6g";

// Transforms and spectra.
constexpr const char* kRdftF = "com.tarvelo.qplex.rdftf";
constexpr const char* kRdftI = "com.tarvelo.qplex.rdfti";
constexpr const char* kRdftM = "com.tarvelo.qplex.rdftm";
constexpr const char* kRdftMa = "com.tarvelo.qplex.rdftma";
constexpr const char* kRdftSqr = "com.tarvelo.qplex.rdftsqr";

// Convolution.
constexpr const char* kConvAcquire = "com.tarvelo.qplex.convacquire";
constexpr const char* kConvMult = "com.tarvelo.qplex.convmult";
constexpr const char* kConvMultAdd = "com.tarvelo.qplex.convmultadd";

// Kernels that a module class registers.
constexpr const char* kMetaTube = "com.tarvelo.qplex.metatube";
constexpr const char* kMetaTubeInit = "com.tarvelo.qplex.metatubei";
constexpr const char* kMetaTubeClear = "com.tarvelo.qplex.metatubec";
constexpr const char* kInterp2 = "com.tarvelo.qplex.interp2";
constexpr const char* kDecim2 = "com.tarvelo.qplex.decim2";
constexpr const char* kDecim2s = "com.tarvelo.qplex.decim2s";
constexpr const char* kMsEnc = "com.tarvelo.qplex.msenc";
constexpr const char* kMsDec = "com.tarvelo.qplex.msdec";
constexpr const char* kDenorm = "com.tarvelo.qplex.denorm";
constexpr const char* kDenormN = "com.tarvelo.qplex.denormn";

}  // namespace KernelName

}  // namespace tarv
