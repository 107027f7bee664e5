#include "demos/styles/Drums.h"
#include "demos/styles/Styles.h"

namespace orvalo {

using enum Role;
using enum Playing;

Style choraleStyle() {
    return {
        .name = "chorale",
        .cells = 2,
        .loose = 8,
        .reverb = 84,
        .dynamics = {"4687", "37958", "57"},
        .majorProgressions = {"1,4 1,5 6:m,4 5", "1,5 6:m,3:m 4,1 4,5", "1 2:m,5 1,4 1,5"},
        .minorProgressions = {"1,4 5:M,1 6,4 5:M", "1,7 6,3 4,1 5:M", "1 4,1 2:o,5:M 1"},
        .grooves = {},
        .layers = {{.role = bass,
                    .playing = bassLine,
                    .patterns = {"R---R---", "R---5-r-", "R-3-R-3-"},
                    .swell = 40},
                   {.role = comp,
                    .playing = chords,
                    .patterns = {"X---x---", "X-x-x-x-", "X---x-x-"},
                    .voices = 4,
                    .open = true,
                    .held = 98,
                    .swell = 40},
                   {.role = pad,
                    .playing = chords,
                    .patterns = {"x---x---"},
                    .where = ".x.x",
                    .voices = 3,
                    .octave = 1,
                    .swell = 50},
                   {.role = lead,
                    .playing = melody,
                    .patterns = {"X-x-X---", "X---x-x-", "X-x-x-x-", "X-----x-"},
                    .where = ".x"}},
    };
}

Style voiceSoloStyle() {
    return {
        .name = "solo voice",
        .cells = 4,
        .loose = 14,
        .reverb = 96,
        .dynamics = {"48364", "3697", "57385"},
        .majorProgressions = {"1 1 4 5"},
        .minorProgressions = {"1 1 7 1", "1 4 7 1"},
        .grooves = {},
        .layers = {{.role = lead,
                    .playing = melody,
                    .patterns = {"X-------x-x-x---", "X---x-xxX-------", "X-----------x---",
                                 "x-x-X---....x-x-"},
                    .held = 97,
                    .swell = 55,
                    .swellBars = 1,
                    .spread = 0},
                   {.role = pad,
                    .playing = ostinato,
                    .patterns = {"1---------------"},
                    .where = ".x",
                    .level = 60,
                    .swell = 40,
                    .spread = 20},
                   {.role = bass,
                    .playing = ostinato,
                    .patterns = {"1---------------"},
                    .octave = -1,
                    .level = 70}},
    };
}

Style doowopStyle() {
    return {
        .name = "doo-wop",
        .cells = 3,
        .loose = 9,
        .reverb = 50,
        .dynamics = {"5687", "6"},
        .majorProgressions = {"1 6:m 4 5:D", "1 6:m 2:m7 5:D"},
        .minorProgressions = {"1 6 4 5:D"},
        .grooves = {{.lines = {{drum::kick, "X....xX....."},
                               {drum::snare, "...X.....X.g"},
                               {drum::closedHat, "xooxooxooxoo"}},
                     .fill = {{drum::kick, "X.....X....."}, {drum::snare, "...X..xxxXxX"}}}},
        .layers = {{.role = bass,
                    .playing = bassLine,
                    .patterns = {"R----rr-35-a", "R-----5--a-a", "R-r3-35-5a--"}},
                   {.role = comp,
                    .playing = chords,
                    .patterns = {"xooxooxooxoo", "123432123432"},
                    .held = 80},
                   {.role = pad,
                    .playing = chords,
                    .patterns = {"X-----------", "X--x--X-----", "..xX----..xX"},
                    .voices = 3,
                    .swell = 45},
                   {.role = lead,
                    .playing = melody,
                    .patterns = {"X-----x-xX--", "X--x-xX-----", "...x-xX--x--", "X-----------"}}},
    };
}

}  // namespace orvalo
