#pragma once

namespace tarv {

/// Full names of the kernels that module classes look up themselves; register...Kernels of the family comes first.
namespace KernelName {
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
