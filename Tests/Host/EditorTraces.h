// Calls of hosts that open the editor, as recorded; see CHostTrace. Of runs of blocks, idle calls and polled values the
// first few are kept, and of the playing the beginning and the end.
#pragma once

#include "CHostTrace.h"

namespace tarv::host {

// clang-format off
constexpr CHostTrace kEditorTraces[] = {
{"Ardour 7.3", "restores the session with its lane, opens the editor, plays, saves, quits",
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
3+ t0 get 0
t0 set 3 to 0.75
2+ t0 get 3
t0 set 4 to 0.709999979
3+ t0 get 4
t0 dispatch 12 index 0 value 1 opt 0
t0 dispatch 2 index 0 value 0 opt 0
t0 dispatch 24 index 0 value 1220 opt 0 bytes 1220 sum 2537575958
t0 dispatch 12 index 0 value 1 opt 0
18+ t0 dispatch 8 index 0 value 0 opt 0
18+ t0 dispatch 8 index 0 value 0 opt 0
t0 dispatch 8 index 3 value 0 opt 0
t0 get 3
t1 get 3
t1 set 3 to 0.5
t1 get 3
t1 process32 frames 1024
t1 get 3
10+ t0 dispatch 8 index 0 value 0 opt 0 | t0 get 0 | t0 get 0 | t0 get 0
t0 dispatch 8 index 10 value 0 opt 0
t1 get 3
t1 process32 frames 1024
7+ t0 get 10 | t0 dispatch 8 index 11 value 0 opt 0 | t0 get 11 | t0 get 11
t0 get 17
t1 set 3 to 0.75
t1 get 3
t1 process32 frames 1024
t1 get 3
4+ t0 dispatch 8 index 0 value 0 opt 0 | t0 get 0 | t0 get 0 | t0 get 0
t0 dispatch 8 index 4 value 0 opt 0
t1 get 3
t1 process32 frames 1024
13+ t0 get 4 | t0 dispatch 8 index 5 value 0 opt 0 | t0 get 5 | t0 get 5
t0 get 17
18+ t0 dispatch 8 index 0 value 0 opt 0 | t0 get 0 | t0 get 0 | t0 get 0
t0 dispatch 7 index 3 value 0 opt 0
t0 dispatch 6 index 3 value 0 opt 0
t1 get 3
t1 process32 frames 1024
18+ t0 dispatch 8 index 0 value 0 opt 0
18+ t0 dispatch 8 index 0 value 0 opt 0
t1 get 3
t1 process32 frames 1024
t0 dispatch 58 index 0 value 0 opt 0
7+ t0 dispatch 29 index 0 value 0 opt 0
t1 get 3
t1 process32 frames 1024
t1 get 3
t2 dispatch 14 index 0 value pointer opt 0
t1 get 3
t1 process32 frames 1024
t1 get 3
t2 dispatch 13 index 0 value 0 opt 0
t2 dispatch 19 index 0 value 0 opt 0
t1 get 3
t1 process32 frames 1024
t0 dispatch 7 index 3 value 0 opt 0
t0 dispatch 6 index 3 value 0 opt 0
t1 get 3
t1 set 3 to 0.75
t1 get 3
t1 process32 frames 1024
t0 get 3
t0 dispatch 7 index 3 value 0 opt 0
t0 dispatch 6 index 3 value 0 opt 0
t1 get 3
t1 process32 frames 1024
t2 dispatch 19 index 0 value 0 opt 0
t0 dispatch 7 index 3 value 0 opt 0
t0 dispatch 6 index 3 value 0 opt 0
t1 get 3
t1 set 3 to 0.75
t1 get 3
t1 process32 frames 1024
t0 get 3
t0 dispatch 7 index 3 value 0 opt 0
t0 dispatch 6 index 3 value 0 opt 0
t2 dispatch 19 index 0 value 0 opt 0
t1 get 3
t1 process32 frames 1024
3x t0 dispatch 7 index 3 value 0 opt 0 | t0 dispatch 6 index 3 value 0 opt 0 | t1 get 3 |
    t1 set 3 to 0.75 | t1 get 3 | t1 process32 frames 1024 | t0 get 3 |
    t0 dispatch 7 index 3 value 0 opt 0 | t0 dispatch 6 index 3 value 0 opt 0 | t1 get 3 |
    t1 process32 frames 1024 | t2 dispatch 19 index 0 value 0 opt 0
t0 dispatch 23 index 0 value 0 opt 0
t0 dispatch 3 index 0 value 0 opt 0
t1 get 3
t1 process32 frames 1024
t1 get 3
t2 dispatch 15 index 0 value 0 opt 0
t0 dispatch 12 index 0 value 0 opt 0
t0 dispatch 1 index 0 value 0 opt 0
)"},

{"Qtractor 0.9.31", "loads, opens the editor twice, quits with it open",
 "rncbc.org", "Qtractor", 2, 0, R"(
t0 dispatch 35 index 0 value 0 opt 0
t0 dispatch 0 index 0 value 0 opt 0
t0 dispatch 45 index 0 value 0 opt 0
t0 dispatch 51 index 0 value 0 opt 0 "sendVstMidiEvent"
t0 dispatch 51 index 0 value 0 opt 0 "receiveVstMidiEvent"
18+ t0 dispatch 8 index 0 value 0 opt 0 | t0 dispatch 56 index 0 value 0 opt 0 | t0 get 0
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 2048 opt 0
t0 dispatch 12 index 0 value 1 opt 0
t1 process32 frames 1024
t0 dispatch 14 index 0 value pointer opt 0
t1 process32 frames 1024
t0 dispatch 13 index 0 value 0 opt 0
2x t0 dispatch 19 index 0 value 0 opt 0
4x t1 process32 frames 1024
t0 dispatch 19 index 0 value 0 opt 0
t1 process32 frames 1024
t0 dispatch 23 index 0 value 0 opt 0
4x t1 process32 frames 1024
t0 dispatch 19 index 0 value 0 opt 0
3x t1 process32 frames 1024
t0 dispatch 23 index 0 value 0 opt 0
t0 dispatch 19 index 0 value 0 opt 0
4x t1 process32 frames 1024
t0 dispatch 19 index 0 value 0 opt 0
2x t1 process32 frames 1024
t0 dispatch 15 index 0 value 0 opt 0
8x t1 process32 frames 1024
t0 dispatch 23 index 0 value 0 opt 0
8x t1 process32 frames 1024
t0 dispatch 14 index 0 value pointer opt 0
t1 process32 frames 1024
t0 dispatch 13 index 0 value 0 opt 0
2x t0 dispatch 19 index 0 value 0 opt 0 | t1 process32 frames 1024
3x t1 process32 frames 1024
t0 dispatch 19 index 0 value 0 opt 0
t0 dispatch 15 index 0 value 0 opt 0
t0 dispatch 1 index 0 value 0 opt 0
)"},

{"Qtractor 0.9.31", "opens the editor twice, records a drag as a lane, plays it, saves",
 "rncbc.org", "Qtractor", 2, 0, R"(
t0 dispatch 35 index 0 value 0 opt 0
t0 dispatch 0 index 0 value 0 opt 0
t0 dispatch 45 index 0 value 0 opt 0
t0 dispatch 51 index 0 value 0 opt 0 "sendVstMidiEvent"
t0 dispatch 51 index 0 value 0 opt 0 "receiveVstMidiEvent"
18+ t0 dispatch 8 index 0 value 0 opt 0 | t0 dispatch 56 index 0 value 0 opt 0 | t0 get 0
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 2048 opt 0
t0 dispatch 12 index 0 value 1 opt 0
t0 dispatch 14 index 0 value pointer opt 0
3x t1 process32 frames 1024
t0 dispatch 13 index 0 value 0 opt 0
t0 dispatch 19 index 0 value 0 opt 0
t1 process32 frames 1024
t0 dispatch 19 index 0 value 0 opt 0
t0 dispatch 15 index 0 value 0 opt 0
3x t1 process32 frames 1024
t0 dispatch 14 index 0 value pointer opt 0
t0 dispatch 13 index 0 value 0 opt 0
t1 process32 frames 1024
2x t0 dispatch 19 index 0 value 0 opt 0
t0 set 4 to 0.5
t0 dispatch 19 index 0 value 0 opt 0
2x t1 process32 frames 1024
t0 set 4 to 0.600000024
t0 dispatch 19 index 0 value 0 opt 0
2x t1 process32 frames 1024
t0 set 4 to 0.699999988
t0 dispatch 19 index 0 value 0 opt 0
2x t1 process32 frames 1024
t0 set 4 to 0.75
t0 dispatch 19 index 0 value 0 opt 0
2x t1 process32 frames 1024
t0 set 4 to 0.800000012
t0 dispatch 19 index 0 value 0 opt 0
2x t1 process32 frames 1024
t0 set 4 to 0.774999976
t0 dispatch 19 index 0 value 0 opt 0
2x t1 process32 frames 1024
t0 set 4 to 0.725000024
t0 dispatch 19 index 0 value 0 opt 0
2x t1 process32 frames 1024
t0 set 4 to 0.675000012
t1 process32 frames 1024
t0 dispatch 19 index 0 value 0 opt 0
t1 process32 frames 1024
t0 set 4 to 0.600000024
t0 dispatch 19 index 0 value 0 opt 0
2x t1 process32 frames 1024
t0 set 4 to 0.524999976
t0 dispatch 19 index 0 value 0 opt 0
2x t1 process32 frames 1024
t0 set 4 to 0.449999988
t0 dispatch 19 index 0 value 0 opt 0
2x t1 process32 frames 1024
t0 set 4 to 0.349999994
t0 dispatch 19 index 0 value 0 opt 0
2x t1 process32 frames 1024
t0 dispatch 19 index 0 value 0 opt 0
2x t1 process32 frames 1024 | t1 process32 frames 1024 | t0 dispatch 23 index 0 value 0 opt 0 |
    t1 process32 frames 1024
t0 dispatch 19 index 0 value 0 opt 0
t1 process32 frames 1024
)"},

{"Qtractor 0.9.31", "restores the session, opens the editor twice, quits",
 "rncbc.org", "Qtractor", 2, 0, R"(
t0 dispatch 35 index 0 value 0 opt 0
t0 dispatch 0 index 0 value 0 opt 0
t0 dispatch 45 index 0 value 0 opt 0
t0 dispatch 51 index 0 value 0 opt 0 "sendVstMidiEvent"
t0 dispatch 51 index 0 value 0 opt 0 "receiveVstMidiEvent"
18+ t0 dispatch 8 index 0 value 0 opt 0 | t0 dispatch 56 index 0 value 0 opt 0 | t0 get 0
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 2048 opt 0
t0 dispatch 24 index 0 value 1228 opt 0 bytes 1228 sum 4098500456
t0 set 13 to 0.5
t0 set 6 to 0.5
t0 set 12 to 0.5
t0 set 10 to 0.5
t0 set 7 to 0.5
t0 set 1 to 0.5625
t0 set 8 to 0.5
t0 set 5 to 0.300000012
t0 set 16 to 0.5
2+ t0 set 14 to 0.5
t0 set 2 to 0.354167014
t0 set 17 to 0.25
t0 set 3 to 0.583333015
t0 set 11 to 0.5
t0 set 9 to 0.5
t0 set 4 to 0.600000024
t0 set 0 to 0
t0 dispatch 12 index 0 value 1 opt 0
t0 set 4 to 0.599951148
t0 dispatch 14 index 0 value pointer opt 0
t0 dispatch 13 index 0 value 0 opt 0
12x t0 dispatch 19 index 0 value 0 opt 0
t0 dispatch 15 index 0 value 0 opt 0
t0 dispatch 14 index 0 value pointer opt 0
t0 dispatch 13 index 0 value 0 opt 0
12x t0 dispatch 19 index 0 value 0 opt 0
t0 dispatch 15 index 0 value 0 opt 0
t0 dispatch 1 index 0 value 0 opt 0
)"},
};
// clang-format on

}  // namespace tarv::host
