#include "demos/catalogue/Instrument.h"

#include <algorithm>
#include <vector>

namespace orvalo {

const InstrumentFacts& factsOf(Instrument instrument) {
    using enum Instrument;
    static const std::vector<InstrumentFacts> table = {
        {grandPiano, "grand piano", 48, 86},
        {brightPiano, "bright piano", 48, 88},
        {honkyTonk, "honky-tonk piano", 48, 84},
        {rhodes, "electric piano", 48, 82},
        {electricPiano, "tine piano", 48, 84},
        {harpsichord, "harpsichord", 48, 84},
        {clavinet, "clavinet", 43, 76},
        {celesta, "celesta", 60, 96},
        {glockenspiel, "glockenspiel", 72, 100},
        {musicBox, "music box", 60, 96},
        {vibraphone, "vibraphone", 53, 86},
        {marimba, "marimba", 45, 84},
        {xylophone, "xylophone", 60, 96},
        {tubularBells, "tubular bells", 55, 79},
        {dulcimer, "hammered dulcimer", 50, 84},
        {drawbarOrgan, "drawbar organ", 48, 80},
        {percussiveOrgan, "percussive organ", 48, 80},
        {rockOrgan, "rock organ", 48, 80},
        {churchOrgan, "church organ", 40, 84},
        {accordion, "accordion", 50, 84},
        {harmonica, "harmonica", 60, 86},
        {bandoneon, "bandoneon", 48, 82},
        {nylonGuitar, "nylon guitar", 42, 80},
        {steelGuitar, "steel guitar", 42, 80},
        {jazzGuitar, "jazz guitar", 44, 80},
        {cleanGuitar, "clean guitar", 42, 80},
        {mutedGuitar, "muted guitar", 42, 76},
        {overdrivenGuitar, "overdriven guitar", 40, 80},
        {distortionGuitar, "distorted guitar", 40, 80},
        {uprightBass, "upright bass", 28, 55},
        {fingerBass, "finger bass", 28, 55},
        {pickBass, "pick bass", 28, 55},
        {fretlessBass, "fretless bass", 28, 58},
        {slapBass, "slap bass", 28, 57},
        {synthBass, "synth bass", 28, 55},
        {rubberBass, "rubber bass", 28, 55},
        {violin, "violin", 57, 91},
        {viola, "viola", 50, 80},
        {cello, "cello", 38, 69},
        {contrabass, "contrabass", 28, 55},
        {tremoloStrings, "tremolo strings", 43, 88},
        {pizzicato, "pizzicato strings", 43, 84},
        {harp, "harp", 38, 91},
        {timpani, "timpani", 36, 60},
        {strings, "strings", 40, 86},
        {slowStrings, "slow strings", 40, 84},
        {synthStrings, "synth strings", 43, 84},
        {choirAahs, "choir", 45, 79},
        {voiceOohs, "voices", 50, 79},
        {synthVoice, "synth voice", 50, 79},
        {trumpet, "trumpet", 56, 84},
        {trombone, "trombone", 42, 72},
        {tuba, "tuba", 28, 55},
        {mutedTrumpet, "muted trumpet", 56, 84},
        {frenchHorn, "French horn", 43, 74},
        {brassSection, "brass section", 48, 80},
        {synthBrass, "synth brass", 48, 80},
        {sopranoSax, "soprano sax", 58, 84},
        {altoSax, "alto sax", 53, 80},
        {tenorSax, "tenor sax", 46, 75},
        {baritoneSax, "baritone sax", 37, 67},
        {oboe, "oboe", 60, 86},
        {bassoon, "bassoon", 36, 67},
        {clarinet, "clarinet", 52, 84},
        {piccolo, "piccolo", 72, 98},
        {flute, "flute", 62, 93},
        {recorder, "recorder", 65, 91},
        {panFlute, "pan flute", 60, 88},
        {shakuhachi, "shakuhachi", 58, 84},
        {whistle, "tin whistle", 67, 93},
        {ocarina, "ocarina", 62, 86},
        {squareLead, "square lead", 55, 88},
        {sawLead, "saw lead", 52, 86},
        {calliope, "calliope lead", 60, 88},
        {voiceLead, "voice lead", 55, 84},
        {newAgePad, "new age pad", 48, 84},
        {warmPad, "warm pad", 43, 80},
        {polySynth, "poly synth", 48, 84},
        {choirPad, "choir pad", 48, 82},
        {bowedGlass, "bowed glass", 48, 84},
        {haloPad, "halo pad", 48, 82},
        {sweepPad, "sweep pad", 43, 80},
        {crystal, "crystal", 60, 91},
        {atmosphere, "atmosphere", 48, 84},
        {sitar, "sitar", 48, 79},
        {banjo, "banjo", 48, 81},
        {shamisen, "shamisen", 50, 79},
        {koto, "koto", 48, 84},
        {kalimba, "kalimba", 53, 84},
        {bagpipe, "bagpipe", 57, 81},
        {fiddle, "fiddle", 57, 90},
        {shanai, "shanai", 57, 81},
        {steelDrums, "steel drums", 52, 84},
        {taiko, "taiko", 36, 60},
    };
    return *std::ranges::find(table, instrument, &InstrumentFacts::instrument);
}

std::string_view nameOf(Kit kit) {
    switch (kit) {
        case Kit::none:
            return "no drums";
        case Kit::standard:
            return "standard kit";
        case Kit::room:
            return "room kit";
        case Kit::power:
            return "power kit";
        case Kit::electronic:
            return "electronic kit";
        case Kit::analogue:
            return "analogue kit";
        case Kit::jazz:
            return "jazz kit";
        case Kit::brush:
            return "brush kit";
        case Kit::orchestra:
            return "orchestral drums";
    }
    return "";
}

}  // namespace orvalo
