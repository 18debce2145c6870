#pragma once

#include <cstdint>

namespace tarv::host {

/// Every call that a host made to one effect, in its order, as Tools/HostRecorder wrote it down and its `condense`
/// shortened it: nothing is added or left out. A line is "tTHREAD CALL"; calls of a loop are joined by '|' behind
/// "TIMESx" (the same again) or "TIMES+" (each index one more each time). A line that ends in '|' goes on in the next.
struct CHostTrace {
    const char* host;
    const char* what;
    // What the host answered.
    const char* vendor;
    const char* product;
    int32_t masterVersion;
    int32_t processLevel;  ///< while blocks run
    const char* calls;
};

// clang-format off
constexpr CHostTrace kHostTraces[] = {
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
