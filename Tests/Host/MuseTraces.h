// Calls of MuSE, as recorded. See CHostTrace.
#pragma once

#include "CHostTrace.h"

namespace tarv::host {

// clang-format off
constexpr CHostTrace kMuseTraces[] = {
{"MuSE 4.1", "looks at the file with its scanner",
 "MusE", "NativeVST", 2300, 0, R"(
t0 dispatch 35 index 0 value 0 opt 0
t0 dispatch 0 index 0 value 0 opt 0
t0 dispatch 45 index 0 value 0 opt 0
t0 dispatch 47 index 0 value 0 opt 0
t0 dispatch 48 index 0 value 0 opt 0
t0 dispatch 49 index 0 value 0 opt 0
t0 dispatch 58 index 0 value 0 opt 0
t0 dispatch 51 index 0 value 0 opt 0 "receiveVstEvents"
t0 dispatch 51 index 0 value 0 opt 0 "sendVstEvents"
t0 dispatch 51 index 0 value 0 opt 0 "sendVstMidiEvent"
t0 dispatch 51 index 0 value 0 opt 0 "sendVstTimeInfo"
t0 dispatch 51 index 0 value 0 opt 0 "receiveVstMidiEvent"
t0 dispatch 51 index 0 value 0 opt 0 "receiveVstTimeInfo"
t0 dispatch 51 index 0 value 0 opt 0 "offline"
t0 dispatch 51 index 0 value 0 opt 0 "plugAsChannelInsert"
t0 dispatch 51 index 0 value 0 opt 0 "plugAsSend"
t0 dispatch 51 index 0 value 0 opt 0 "mixDryWet"
t0 dispatch 51 index 0 value 0 opt 0 "midiProgramNames"
t0 dispatch 51 index 0 value 0 opt 0 "receiveVstEvents"
t0 dispatch 1 index 0 value 0 opt 0
)"},

{"MuSE 4.1", "loads, runs, saves, removes",
 "MusE", "NativeVST", 2300, 2, R"(
t0 dispatch 0 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 1024 opt 0
t0 dispatch 12 index 0 value 1 opt 0
18+ t0 get 0
18+ t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 1024 opt 0
t0 dispatch 12 index 0 value 1 opt 0
t0 dispatch 71 index 0 value 0 opt 0
2703x t1 process32 frames 1024 in place
t0 dispatch 23 index 0 value 0 opt 0
1317x t1 process32 frames 1024 in place
t0 dispatch 72 index 0 value 0 opt 0
t0 dispatch 12 index 0 value 0 opt 0
t0 dispatch 1 index 0 value 0 opt 0
)"},

{"MuSE 4.1", "restores the project, runs, removes",
 "MusE", "NativeVST", 2300, 2, R"(
t0 dispatch 0 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 1024 opt 0
t0 dispatch 12 index 0 value 1 opt 0
18+ t0 get 0
18+ t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 1024 opt 0
t0 dispatch 12 index 0 value 1 opt 0
t0 dispatch 71 index 0 value 0 opt 0
t0 dispatch 24 index 0 value 1202 opt 0 bytes 1202 sum 4138261837
1023x t1 process32 frames 1024 in place
t0 dispatch 72 index 0 value 0 opt 0
t0 dispatch 12 index 0 value 0 opt 0
t0 dispatch 1 index 0 value 0 opt 0
)"},
};
// clang-format on

}  // namespace tarv::host
