// Calls of Audacity, as recorded. See CHostTrace.
#pragma once

#include "CHostTrace.h"

namespace tarv::host {

// clang-format off
constexpr CHostTrace kAudacityTraces[] = {
{"Audacity 3.2.4", "applies to a track of 44.1 kHz, removes",
 "Audacity Team", "Audacity", 2400, 1, R"(
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 512 opt 0
t0 dispatch 22 index 0 value 0 opt 0
t0 dispatch 0 index 0 value 0 opt 0
t0 dispatch 58 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 512 opt 0
t0 dispatch 45 index 0 value 0 opt 0
t0 dispatch 47 index 0 value 0 opt 0
4x t0 dispatch 49 index 0 value 0 opt 0
t0 dispatch 26 index 0 value 0 opt 0
t0 dispatch 67 index 0 value 0 opt 0
t0 dispatch 2 index 0 value 0 opt 0
t0 dispatch 68 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 44100
t0 dispatch 11 index 0 value 8192 opt 0
t0 dispatch 12 index 0 value 1 opt 0
t0 dispatch 71 index 0 value 0 opt 0
t0 dispatch 76 index 0 value 0 opt 0
t0 dispatch 67 index 0 value 0 opt 0
t0 dispatch 24 index 1 value 554 opt 0 bytes 554 sum 1042528071
t0 dispatch 68 index 0 value 0 opt 0
t0 dispatch 67 index 0 value 0 opt 0
t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 26 index 0 value 0 opt 0
t0 set 0 to 0
16+ t0 dispatch 8 index 1 value 0 opt 0 | t0 dispatch 26 index 0 value 1 opt 0 | t0 set 1 to 0.5
t0 dispatch 8 index 17 value 0 opt 0
t0 dispatch 26 index 0 value 17 opt 0
t0 set 17 to 0.25
t0 dispatch 68 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 44100
t0 dispatch 11 index 0 value 4096 opt 0
43x t0 process32 frames 4096
t0 process32 frames 272
t0 dispatch 72 index 0 value 0 opt 0
t0 dispatch 12 index 0 value 0 opt 0
t0 dispatch 1 index 0 value 0 opt 0
)"},

{"Audacity 3.2.4", "applies to a track of 96 kHz, removes",
 "Audacity Team", "Audacity", 2400, 1, R"(
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 512 opt 0
t0 dispatch 22 index 0 value 0 opt 0
t0 dispatch 0 index 0 value 0 opt 0
t0 dispatch 58 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 512 opt 0
t0 dispatch 45 index 0 value 0 opt 0
t0 dispatch 47 index 0 value 0 opt 0
4x t0 dispatch 49 index 0 value 0 opt 0
t0 dispatch 26 index 0 value 0 opt 0
t0 dispatch 67 index 0 value 0 opt 0
t0 dispatch 2 index 0 value 0 opt 0
t0 dispatch 68 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 44100
t0 dispatch 11 index 0 value 8192 opt 0
t0 dispatch 12 index 0 value 1 opt 0
t0 dispatch 71 index 0 value 0 opt 0
t0 dispatch 76 index 0 value 0 opt 0
t0 dispatch 67 index 0 value 0 opt 0
t0 dispatch 24 index 1 value 554 opt 0 bytes 554 sum 1042528071
t0 dispatch 68 index 0 value 0 opt 0
t0 dispatch 67 index 0 value 0 opt 0
t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 26 index 0 value 0 opt 0
t0 set 0 to 0
16+ t0 dispatch 8 index 1 value 0 opt 0 | t0 dispatch 26 index 0 value 1 opt 0 | t0 set 1 to 0.5
t0 dispatch 8 index 17 value 0 opt 0
t0 dispatch 26 index 0 value 17 opt 0
t0 set 17 to 0.25
t0 dispatch 68 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 96000
t0 dispatch 11 index 0 value 4096 opt 0
46x t0 process32 frames 4096
t0 process32 frames 3584
t0 dispatch 72 index 0 value 0 opt 0
t0 dispatch 12 index 0 value 0 opt 0
t0 dispatch 1 index 0 value 0 opt 0
)"},

{"Audacity 3.2.4", "loads in real time, moves a slider, plays, saves, removes",
 "Audacity Team", "Audacity", 2400, 1, R"(
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 512 opt 0
t0 dispatch 22 index 0 value 0 opt 0
t0 dispatch 0 index 0 value 0 opt 0
t0 dispatch 58 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 512 opt 0
t0 dispatch 45 index 0 value 0 opt 0
t0 dispatch 47 index 0 value 0 opt 0
4x t0 dispatch 49 index 0 value 0 opt 0
t0 dispatch 26 index 0 value 0 opt 0
t0 dispatch 67 index 0 value 0 opt 0
t0 dispatch 2 index 0 value 0 opt 0
t0 dispatch 68 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 44100
t0 dispatch 11 index 0 value 8192 opt 0
t0 dispatch 12 index 0 value 1 opt 0
t0 dispatch 71 index 0 value 0 opt 0
18+ t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 23 index 1 value 0 opt 0
18+ t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 23 index 1 value 0 opt 0
18+ t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 76 index 0 value 0 opt 0
t0 dispatch 67 index 0 value 0 opt 0
t0 dispatch 24 index 1 value 554 opt 0 bytes 554 sum 1042528071
t0 dispatch 68 index 0 value 0 opt 0
t0 dispatch 26 index 0 value 0 opt 0
t0 set 0 to 0
16+ t0 dispatch 26 index 0 value 1 opt 0 | t0 set 1 to 0.5
t0 dispatch 26 index 0 value 17 opt 0
t0 set 17 to 0.25
t0 dispatch 76 index 0 value 0 opt 0
t0 dispatch 67 index 0 value 0 opt 0
t0 dispatch 24 index 1 value 554 opt 0 bytes 554 sum 1042528071
t0 dispatch 68 index 0 value 0 opt 0
t0 dispatch 67 index 0 value 0 opt 0
t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 26 index 0 value 0 opt 0
t0 set 0 to 0
16+ t0 dispatch 8 index 1 value 0 opt 0 | t0 dispatch 26 index 0 value 1 opt 0 | t0 set 1 to 0.5
t0 dispatch 8 index 17 value 0 opt 0
t0 dispatch 26 index 0 value 17 opt 0
t0 set 17 to 0.25
t0 dispatch 68 index 0 value 0 opt 0
18+ t0 dispatch 8 index 0 value 0 opt 0
18+ t0 dispatch 8 index 0 value 0 opt 0
18+ t0 dispatch 8 index 0 value 0 opt 0 | t0 get 0 | t0 dispatch 7 index 0 value 0 opt 0 |
    t0 dispatch 7 index 0 value 0 opt 0 | t0 dispatch 6 index 0 value 0 opt 0
18+ t0 dispatch 8 index 0 value 0 opt 0 | t0 get 0 | t0 dispatch 7 index 0 value 0 opt 0 |
    t0 dispatch 7 index 0 value 0 opt 0 | t0 dispatch 6 index 0 value 0 opt 0
2x t0 dispatch 8 index 0 value 0 opt 0 | t0 dispatch 8 index 1 value 0 opt 0 |
    t0 dispatch 8 index 2 value 0 opt 0 | t0 dispatch 8 index 3 value 0 opt 0 |
    t0 dispatch 26 index 0 value 3 opt 0 | t0 set 3 to 0.714999974
3+ t0 dispatch 8 index 0 value 0 opt 0 | t0 get 0 | t0 dispatch 7 index 0 value 0 opt 0 |
    t0 dispatch 7 index 0 value 0 opt 0 | t0 dispatch 6 index 0 value 0 opt 0
t0 dispatch 8 index 3 value 0 opt 0
14+ t0 dispatch 7 index 3 value 0 opt 0 | t0 dispatch 7 index 3 value 0 opt 0 |
    t0 dispatch 6 index 3 value 0 opt 0 | t0 dispatch 8 index 4 value 0 opt 0 | t0 get 4
2x t0 dispatch 7 index 17 value 0 opt 0
t0 dispatch 6 index 17 value 0 opt 0
3+ t0 dispatch 8 index 0 value 0 opt 0 | t0 get 0 | t0 dispatch 7 index 0 value 0 opt 0 |
    t0 dispatch 7 index 0 value 0 opt 0 | t0 dispatch 6 index 0 value 0 opt 0
t0 dispatch 8 index 3 value 0 opt 0
14+ t0 dispatch 7 index 3 value 0 opt 0 | t0 dispatch 7 index 3 value 0 opt 0 |
    t0 dispatch 6 index 3 value 0 opt 0 | t0 dispatch 8 index 4 value 0 opt 0 | t0 get 4
2x t0 dispatch 7 index 17 value 0 opt 0
t0 dispatch 6 index 17 value 0 opt 0
t0 dispatch 76 index 0 value 0 opt 0
t0 dispatch 67 index 0 value 0 opt 0
t0 dispatch 24 index 1 value 554 opt 0 bytes 554 sum 1042528071
t0 dispatch 68 index 0 value 0 opt 0
t0 dispatch 67 index 0 value 0 opt 0
t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 26 index 0 value 0 opt 0
t0 set 0 to 0
2+ t0 dispatch 8 index 1 value 0 opt 0 | t0 dispatch 26 index 0 value 1 opt 0 | t0 set 1 to 0.5
t0 dispatch 8 index 3 value 0 opt 0
t0 dispatch 26 index 0 value 3 opt 0
t0 set 3 to 0.714999974
13+ t0 dispatch 8 index 4 value 0 opt 0 | t0 dispatch 26 index 0 value 4 opt 0 | t0 set 4 to 0.5
t0 dispatch 8 index 17 value 0 opt 0
t0 dispatch 26 index 0 value 17 opt 0
t0 set 17 to 0.25
t0 dispatch 68 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 44100
t0 dispatch 11 index 0 value 512 opt 0
80x t1 process32 frames 512 | t1 process32 frames 512 | t1 process32 frames 512 |
    t1 process32 frames 512 | t1 process32 frames 157
t0 dispatch 72 index 0 value 0 opt 0
t0 dispatch 12 index 0 value 0 opt 0
18+ t0 dispatch 8 index 0 value 0 opt 0 | t0 get 0
t0 dispatch 23 index 1 value 0 opt 0
18+ t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 23 index 1 value 0 opt 0
t0 dispatch 1 index 0 value 0 opt 0
)"},

{"Audacity 3.2.4", "restores the project, plays, removes",
 "Audacity Team", "Audacity", 2400, 1, R"(
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 512 opt 0
t0 dispatch 22 index 0 value 0 opt 0
t0 dispatch 0 index 0 value 0 opt 0
t0 dispatch 58 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 512 opt 0
t0 dispatch 45 index 0 value 0 opt 0
t0 dispatch 47 index 0 value 0 opt 0
4x t0 dispatch 49 index 0 value 0 opt 0
t0 dispatch 26 index 0 value 0 opt 0
t0 dispatch 67 index 0 value 0 opt 0
t0 dispatch 2 index 0 value 0 opt 0
t0 dispatch 68 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 44100
t0 dispatch 11 index 0 value 8192 opt 0
t0 dispatch 12 index 0 value 1 opt 0
t0 dispatch 71 index 0 value 0 opt 0
18+ t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 23 index 1 value 0 opt 0
18+ t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 23 index 1 value 0 opt 0
t0 dispatch 67 index 0 value 0 opt 0
t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 26 index 0 value 0 opt 0
t0 set 0 to 0
2+ t0 dispatch 8 index 1 value 0 opt 0 | t0 dispatch 26 index 0 value 1 opt 0 | t0 set 1 to 0.5
t0 dispatch 8 index 3 value 0 opt 0
t0 dispatch 26 index 0 value 3 opt 0
t0 set 3 to 0.714999974
13+ t0 dispatch 8 index 4 value 0 opt 0 | t0 dispatch 26 index 0 value 4 opt 0 | t0 set 4 to 0.5
t0 dispatch 8 index 17 value 0 opt 0
t0 dispatch 26 index 0 value 17 opt 0
t0 set 17 to 0.25
t0 dispatch 68 index 0 value 0 opt 0
t0 dispatch 10 index 0 value 0 opt 44100
t0 dispatch 11 index 0 value 512 opt 0
80x t1 process32 frames 512 | t1 process32 frames 512 | t1 process32 frames 512 |
    t1 process32 frames 512 | t1 process32 frames 157
t0 dispatch 72 index 0 value 0 opt 0
t0 dispatch 12 index 0 value 0 opt 0
t0 dispatch 1 index 0 value 0 opt 0
)"},
};
// clang-format on

}  // namespace tarv::host
