#include "demos/styles/Drums.h"
#include "demos/styles/Styles.h"

namespace orvalo {

using enum Role;
using enum Playing;

Style swingStyle() {
    return {
        .name = "swing",
        .cells = 3,
        .loose = 9,
        .dynamics = {"6", "5678", "6687"},
        .majorProgressions = {"1:M7 6:D 2:m7 5:D", "1:6 1:D 4:6 4:m6 1:6 6:D 2:m7 5:D",
                              "3:m7 6:D 2:m7 5:D"},
        .minorProgressions = {"1:m6 2:h,5:D 1:m6 2:h,5:D", "1:m7 4:D 2:h 5:D"},
        .grooves = {{.lines = {{drum::ride, "X..X.xX..X.x"},
                               {drum::pedalHat, "...x.....x.."},
                               {drum::kick, "o..g..o..g.?"},
                               {drum::snare, ".....?..g..?"}},
                     .fill = {{drum::ride, "X..X.x......"},
                              {drum::snare, "..g..xX.xx.X"},
                              {drum::kick, "o.....x..X.."},
                              {drum::highTom, ".......x..x."}}}},
        .layers = {{.role = bass,
                    .playing = bassLine,
                    .patterns = {"R--w--w--a--", "R--w--5--a--", "R--w--w-wa--"}},
                   {.role = comp,
                    .playing = chords,
                    .patterns = {"X-...o......", "..o...X-....", ".....x-..o..", "X--..x-....."},
                    .held = 80},
                   {.role = pad,
                    .playing = chords,
                    .patterns = {"o-----------"},
                    .where = "..x.",
                    .voices = 3,
                    .level = 75},
                   {.role = lead,
                    .playing = melody,
                    .patterns = {"X-xx-xX--..x", "..xX-xx-xX--", "X--x-xx-....", "x-xx-xx-xX--"}}},
    };
}

Style jazzWaltzStyle() {
    return {
        .name = "jazz waltz",
        .cells = 3,
        .loose = 9,
        .dynamics = {"5676", "6"},
        .majorProgressions = {"1:M7 4:M7 3:m7 6:m7 2:m7 5:D 1:M7 5:D", "1:M9 2:m7 3:m7 2:m7"},
        .minorProgressions = {"1:m7 4:m7 7:D 3:M7 6:M7 2:h 5:D 1:m6"},
        .grooves = {{.lines = {{drum::ride, "X..X.xX.."},
                               {drum::pedalHat, "...x....."},
                               {drum::kick, "o.......g"},
                               {drum::snare, ".....g..?"}},
                     .fill = {{drum::ride, "X..X....."}, {drum::snare, "..x.xxX.x"}}}},
        .layers = {{.role = bass,
                    .playing = bassLine,
                    .patterns = {"R-----5--", "R--w--a--", "R-------a"}},
                   {.role = comp,
                    .playing = chords,
                    .patterns = {"..o--x---", "...X--x--", "X----x---"}},
                   {.role = pad,
                    .playing = chords,
                    .patterns = {"o--------"},
                    .where = ".x",
                    .voices = 3,
                    .level = 75,
                    .swell = 40},
                   {.role = lead,
                    .playing = melody,
                    .patterns = {"X----xx--", "X-xx-xx--", "X--------", "..xx-xX--"}}},
    };
}

Style jazzBalladStyle() {
    return {
        .name = "jazz ballad",
        .cells = 3,
        .loose = 14,
        .reverb = 56,
        .dynamics = {"4576", "5685"},
        .majorProgressions = {"1:M9 6:m9 2:m9 5:D9", "4:M9 4:m6 3:m7 6:D 2:m9 5:D9 1:M9 5:D"},
        .minorProgressions = {"1:m9 4:D9 2:h 5:D", "1:m9 6:M7 2:h 5:D"},
        .grooves = {{.lines = {{drum::snare, "o-.gg.o-.gg."},
                               {drum::pedalHat, "...o.....o.."},
                               {drum::kick, "o.....g....."},
                               {drum::ride, "o..o.oo..o.o"}},
                     .fill = {}}},
        .layers = {{.role = bass,
                    .playing = bassLine,
                    .patterns = {"R-----5--a--", "R-----w--a--"}},
                   {.role = comp,
                    .playing = chords,
                    .patterns = {"X-----o-----", "o--1-2x---4-"},
                    .voices = 5,
                    .strum = 16},
                   {.role = pad,
                    .playing = chords,
                    .patterns = {"o-----------"},
                    .voices = 4,
                    .open = true,
                    .level = 80,
                    .swell = 60},
                   {.role = lead,
                    .playing = melody,
                    .patterns = {"X-----x--x-x", "X--------...", "...x-xX-----", "x-xX-----x-x"}}},
    };
}

Style bigBandStyle() {
    return {
        .name = "big band",
        .cells = 3,
        .loose = 6,
        .dynamics = {"5798", "69588", "4679"},
        .majorProgressions = {"1:6 6:D 2:m7 5:D", "1:6 1:D 4:6 #4:o7 1:6 6:D 2:D 5:D"},
        .minorProgressions = {"1:m6 4:m7 2:h 5:D"},
        .grooves = {{.lines = {{drum::ride, "X..X.xX..X.x"},
                               {drum::pedalHat, "...X.....X.."},
                               {drum::kick, "x..o..x..o.."},
                               {drum::snare, ".....g..X..?"}},
                     .fill = {{drum::crash, "X..........."},
                              {drum::snare, "..XX.XXxxX.X"},
                              {drum::kick, "X....X...X.."},
                              {drum::floorTom, "......xxX..."}}}},
        .layers = {{.role = bass,
                    .playing = bassLine,
                    .patterns = {"R--w--w--a--", "R--3--5--a--"}},
                   {.role = comp,
                    .playing = chords,
                    .patterns = {"X-....x--..X......X-........", "..X..X......", "X-.....x..X.",
                                 ".....X--...."},
                    .held = 75},
                   {.role = pad,
                    .playing = chords,
                    .patterns = {"X--------...............", "x-----------"},
                    .where = ".x.x",
                    .swell = 65},
                   {.role = lead,
                    .playing = melody,
                    .patterns = {"X-xX-xX--...", "..xX-xx-xX--", "X--X--x-xX-x", "X-----...x-x"}}},
    };
}

}  // namespace orvalo
