// Calls of Qtractor, as recorded. See CHostTrace.
#pragma once

#include "CHostTrace.h"

namespace tarv::host {

// clang-format off
constexpr CHostTrace kQtractorTraces[] = {
{"Qtractor 0.9.31", "looks at the file with its scanner",
 "", "", 2, 0, R"(
t0 dispatch 35 index 0 value 0 opt 0
t0 dispatch 0 index 0 value 0 opt 0
t0 dispatch 45 index 0 value 0 opt 0
t0 dispatch 51 index 0 value 0 opt 0 "sendVstEvents"
t0 dispatch 51 index 0 value 0 opt 0 "sendVstMidiEvent"
t0 dispatch 51 index 0 value 0 opt 0 "sendVstTimeInfo"
t0 dispatch 51 index 0 value 0 opt 0 "receiveVstEvents"
t0 dispatch 51 index 0 value 0 opt 0 "receiveVstMidiEvent"
t0 dispatch 51 index 0 value 0 opt 0 "receiveVstTimeInfo"
t0 dispatch 51 index 0 value 0 opt 0 "offline"
t0 dispatch 51 index 0 value 0 opt 0 "plugAsChannelInsert"
t0 dispatch 51 index 0 value 0 opt 0 "plugAsSend"
t0 dispatch 51 index 0 value 0 opt 0 "mixDryWet"
t0 dispatch 51 index 0 value 0 opt 0 "midiProgramNames"
t0 dispatch 1 index 0 value 0 opt 0
)"},

{"Qtractor 0.9.31", "loads, moves two sliders, plays, saves, quits",
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
t0 dispatch 48 index 0 value 0 opt 0
t0 dispatch 47 index 0 value 0 opt 0
t0 dispatch 49 index 0 value 0 opt 0
18+ t0 dispatch 7 index 0 value 0 opt 0 | t0 dispatch 6 index 0 value 0 opt 0
t1 process32 frames 1024
18+ t0 dispatch 7 index 0 value 0 opt 0 | t0 dispatch 6 index 0 value 0 opt 0
827x t1 process32 frames 1024
t0 set 2 to 0.599999964
3x t1 process32 frames 1024
t0 set 2 to 0.599999964
t0 dispatch 7 index 2 value 0 opt 0
t0 dispatch 6 index 2 value 0 opt 0
49x t1 process32 frames 1024
t0 set 4 to 0.399999976
t1 process32 frames 1024
t0 set 4 to 0.399999976
t0 dispatch 7 index 4 value 0 opt 0
t0 dispatch 6 index 4 value 0 opt 0
1769x t1 process32 frames 1024
18+ t0 get 0
t0 dispatch 23 index 0 value 0 opt 0
531x t1 process32 frames 1024
t0 dispatch 1 index 0 value 0 opt 0
)"},

{"Qtractor 0.9.31", "restores the session, plays, removes",
 "rncbc.org", "Qtractor", 2, 0, R"(
t0 dispatch 35 index 0 value 0 opt 0
t0 dispatch 0 index 0 value 0 opt 0
t0 dispatch 45 index 0 value 0 opt 0
t0 dispatch 51 index 0 value 0 opt 0 "sendVstMidiEvent"
t0 dispatch 51 index 0 value 0 opt 0 "receiveVstMidiEvent"
18+ t0 dispatch 8 index 0 value 0 opt 0 | t0 dispatch 56 index 0 value 0 opt 0 | t0 get 0
t0 dispatch 10 index 0 value 0 opt 48000
t0 dispatch 11 index 0 value 2048 opt 0
t0 dispatch 24 index 0 value 1220 opt 0 bytes 1220 sum 1121275601
t0 set 12 to 0.5
t0 set 0 to 0
t0 set 10 to 0.5
t0 set 8 to 0.5
t0 set 7 to 0.5
t0 set 15 to 0.5
t0 set 1 to 0.5
t0 set 14 to 0.5
t0 set 3 to 0.5
t0 set 2 to 0.600000024
t0 set 4 to 0.400000006
t0 set 11 to 0.5
t0 set 6 to 0.5
t0 set 5 to 0.5
t0 set 17 to 0.25
t0 set 9 to 0.5
t0 set 13 to 0.5
t0 set 16 to 0.5
t0 dispatch 12 index 0 value 1 opt 0
146x t1 process32 frames 1024
t0 dispatch 12 index 0 value 0 opt 0
t0 dispatch 1 index 0 value 0 opt 0
)"},
};
// clang-format on

}  // namespace tarv::host
