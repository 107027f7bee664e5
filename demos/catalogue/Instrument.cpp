#include "demos/catalogue/Instrument.h"

#include <algorithm>
#include <vector>

namespace orvalo {

const InstrumentFacts& factsOf(Instrument instrument) {
    using enum Instrument;
    static const std::vector<InstrumentFacts> table = {
        {grandPiano, "grand piano", 48, 86, 100},
        {brightPiano, "bright piano", 48, 88, 96},
        {honkyTonk, "honky-tonk piano", 48, 84, 92},
        {rhodes, "electric piano", 48, 82, 104},
        {electricPiano, "tine piano", 48, 84, 96},
        {harpsichord, "harpsichord", 48, 84, 92},
        {clavinet, "clavinet", 43, 76, 96},
        {celesta, "celesta", 60, 96, 104},
        {glockenspiel, "glockenspiel", 72, 100, 84},
        {musicBox, "music box", 60, 96, 104},
        {vibraphone, "vibraphone", 53, 86, 104},
        {marimba, "marimba", 45, 84, 112},
        {xylophone, "xylophone", 60, 96, 96},
        {tubularBells, "tubular bells", 55, 79, 88},
        {dulcimer, "hammered dulcimer", 50, 84, 100},
        {drawbarOrgan, "drawbar organ", 48, 80, 84},
        {percussiveOrgan, "percussive organ", 48, 80, 84},
        {rockOrgan, "rock organ", 48, 80, 80},
        {churchOrgan, "church organ", 40, 84, 88},
        {accordion, "accordion", 50, 84, 84},
        {harmonica, "harmonica", 60, 86, 92},
        {bandoneon, "bandoneon", 48, 82, 88},
        {nylonGuitar, "nylon guitar", 42, 80, 108},
        {steelGuitar, "steel guitar", 42, 80, 104},
        {jazzGuitar, "jazz guitar", 44, 80, 108},
        {cleanGuitar, "clean guitar", 42, 80, 100},
        {mutedGuitar, "muted guitar", 42, 76, 104},
        {overdrivenGuitar, "overdriven guitar", 40, 80, 84},
        {distortionGuitar, "distorted guitar", 40, 80, 80},
        {uprightBass, "upright bass", 28, 55, 118},
        {fingerBass, "finger bass", 28, 55, 110},
        {pickBass, "pick bass", 28, 55, 108},
        {fretlessBass, "fretless bass", 28, 58, 112},
        {slapBass, "slap bass", 28, 57, 104},
        {synthBass, "synth bass", 28, 55, 100},
        {rubberBass, "rubber bass", 28, 55, 100},
        {violin, "violin", 57, 91, 100},
        {viola, "viola", 50, 80, 100},
        {cello, "cello", 38, 69, 104},
        {contrabass, "contrabass", 28, 55, 110},
        {tremoloStrings, "tremolo strings", 43, 88, 96},
        {pizzicato, "pizzicato strings", 43, 84, 110},
        {harp, "harp", 38, 91, 108},
        {timpani, "timpani", 36, 60, 108},
        {strings, "strings", 40, 86, 96},
        {slowStrings, "slow strings", 40, 84, 96},
        {synthStrings, "synth strings", 43, 84, 88},
        {choirAahs, "choir", 45, 79, 104},
        {voiceOohs, "voices", 50, 79, 104},
        {synthVoice, "synth voice", 50, 79, 96},
        {trumpet, "trumpet", 56, 84, 92},
        {trombone, "trombone", 42, 72, 96},
        {tuba, "tuba", 28, 55, 112},
        {mutedTrumpet, "muted trumpet", 56, 84, 92},
        {frenchHorn, "French horn", 43, 74, 100},
        {brassSection, "brass section", 48, 80, 92},
        {synthBrass, "synth brass", 48, 80, 88},
        {sopranoSax, "soprano sax", 58, 84, 92},
        {altoSax, "alto sax", 53, 80, 96},
        {tenorSax, "tenor sax", 46, 75, 96},
        {baritoneSax, "baritone sax", 37, 67, 96},
        {oboe, "oboe", 60, 86, 92},
        {bassoon, "bassoon", 36, 67, 100},
        {clarinet, "clarinet", 52, 84, 96},
        {piccolo, "piccolo", 72, 98, 84},
        {flute, "flute", 62, 93, 96},
        {recorder, "recorder", 65, 91, 92},
        {panFlute, "pan flute", 60, 88, 96},
        {shakuhachi, "shakuhachi", 58, 84, 96},
        {whistle, "tin whistle", 67, 93, 88},
        {ocarina, "ocarina", 62, 86, 92},
        {squareLead, "square lead", 55, 88, 76},
        {sawLead, "saw lead", 52, 86, 76},
        {calliope, "calliope lead", 60, 88, 84},
        {voiceLead, "voice lead", 55, 84, 88},
        {newAgePad, "new age pad", 48, 84, 92},
        {warmPad, "warm pad", 43, 80, 96},
        {polySynth, "poly synth", 48, 84, 88},
        {choirPad, "choir pad", 48, 82, 96},
        {bowedGlass, "bowed glass", 48, 84, 96},
        {haloPad, "halo pad", 48, 82, 92},
        {sweepPad, "sweep pad", 43, 80, 92},
        {crystal, "crystal", 60, 91, 88},
        {atmosphere, "atmosphere", 48, 84, 92},
        {sitar, "sitar", 48, 79, 100},
        {banjo, "banjo", 48, 81, 96},
        {shamisen, "shamisen", 50, 79, 100},
        {koto, "koto", 48, 84, 104},
        {kalimba, "kalimba", 53, 84, 112},
        {bagpipe, "bagpipe", 57, 81, 76},
        {fiddle, "fiddle", 57, 90, 92},
        {shanai, "shanai", 57, 81, 80},
        {steelDrums, "steel drums", 52, 84, 100},
        {taiko, "taiko", 36, 60, 110},
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
