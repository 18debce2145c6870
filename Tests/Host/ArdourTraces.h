// Calls of Ardour, as recorded. See CHostTrace.
#pragma once

#include "CHostTrace.h"

namespace tarv::host {

// clang-format off
constexpr CHostTrace kArdourTraces[] = {
{"Ardour 7.3", "looks at the file with its scanner",
 "", "", 2400, 0, R"(
t0 dispatch 0 index 0 value 0 opt 0
t0 dispatch 58 index 0 value 0 opt 0
t0 dispatch 45 index 0 value 0 opt 0
t0 dispatch 47 index 0 value 0 opt 0
t0 dispatch 35 index 0 value 0 opt 0
t0 dispatch 51 index 0 value 0 opt 0 "receiveVstEvents"
t0 dispatch 51 index 0 value 0 opt 0 "receiveVstMidiEvent"
t0 dispatch 58 index 0 value 0 opt 0
t0 dispatch 51 index 0 value 0 opt 0 "sendVstEvents"
t0 dispatch 51 index 0 value 0 opt 0 "sendVstMidiEvent"
t0 dispatch 51 index 0 value 0 opt 0 "sendVstMidiEvents"
t0 dispatch 12 index 0 value 0 opt 0
t0 dispatch 1 index 0 value 0 opt 0
)"},

{"Ardour 7.3", "loads, sets two values, plays, saves, removes",
 "Linux Audio Systems", "Ardour", 2400, 0, R"(
t0 dispatch 0 index 0 value 0 opt 0
t0 dispatch 58 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 1024 opt 0
t0 dispatch 26 index 0 value 0 opt 0
17+ t0 dispatch 26 index 1 value 0 opt 0
18+ t0 dispatch 56 index 0 value 0 opt 0 | t0 dispatch 8 index 0 value 0 opt 0 | t0 get 0 |
    t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 51 index 0 value 0 opt 0 "bypass"
t0 dispatch 12 index 0 value 1 opt 0
18x t1 process32 frames 1024
t0 dispatch 56 index 1 value 0 opt 0
t0 dispatch 8 index 1 value 0 opt 0
t0 get 1
t0 set 1 to 0.75
t0 get 1
t0 dispatch 56 index 4 value 0 opt 0
t0 dispatch 8 index 4 value 0 opt 0
t0 get 4
t0 set 4 to 0.25
t0 get 4
10x t1 process32 frames 1024
t1 process32 frames 752
t1 process32 frames 272
42x t1 process32 frames 1024
t0 dispatch 23 index 0 value 0 opt 0
t0 dispatch 3 index 0 value 0 opt 0
35x t1 process32 frames 1024
t0 dispatch 12 index 0 value 0 opt 0
t0 dispatch 1 index 0 value 0 opt 0
)"},

{"Ardour 7.3", "restores the session, plays, removes",
 "Linux Audio Systems", "Ardour", 2400, 0, R"(
t0 dispatch 0 index 0 value 0 opt 0
t0 dispatch 58 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 1024 opt 0
t0 dispatch 26 index 0 value 0 opt 0
17+ t0 dispatch 26 index 1 value 0 opt 0
18+ t0 dispatch 56 index 0 value 0 opt 0 | t0 dispatch 8 index 0 value 0 opt 0 | t0 get 0 |
    t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 51 index 0 value 0 opt 0 "bypass"
2+ t0 get 0
t0 set 1 to 0.75
4+ t0 get 1
t0 set 4 to 0.25
14+ t0 get 4
t0 dispatch 12 index 0 value 1 opt 0
t0 dispatch 2 index 0 value 0 opt 0
t0 dispatch 24 index 0 value 1220 opt 0 bytes 1220 sum 58903604
t0 dispatch 12 index 0 value 1 opt 0
62x t1 process32 frames 1024
t1 process32 frames 752
t1 process32 frames 272
36x t1 process32 frames 1024
t0 get 1
t0 dispatch 12 index 0 value 0 opt 0
t0 dispatch 1 index 0 value 0 opt 0
)"},
};
// clang-format on

}  // namespace tarv::host
