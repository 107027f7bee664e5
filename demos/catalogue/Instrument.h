#pragma once

#include <string_view>

namespace orvalo {

/// The General MIDI programs that the pieces use, counted from 0.
enum class Instrument {
    none = -1,
    grandPiano = 0,
    brightPiano = 1,
    honkyTonk = 3,
    rhodes = 4,
    electricPiano = 5,
    harpsichord = 6,
    clavinet = 7,
    celesta = 8,
    glockenspiel = 9,
    musicBox = 10,
    vibraphone = 11,
    marimba = 12,
    xylophone = 13,
    tubularBells = 14,
    dulcimer = 15,
    drawbarOrgan = 16,
    percussiveOrgan = 17,
    rockOrgan = 18,
    churchOrgan = 19,
    accordion = 21,
    harmonica = 22,
    bandoneon = 23,
    nylonGuitar = 24,
    steelGuitar = 25,
    jazzGuitar = 26,
    cleanGuitar = 27,
    mutedGuitar = 28,
    overdrivenGuitar = 29,
    distortionGuitar = 30,
    uprightBass = 32,
    fingerBass = 33,
    pickBass = 34,
    fretlessBass = 35,
    slapBass = 36,
    synthBass = 38,
    rubberBass = 39,
    violin = 40,
    viola = 41,
    cello = 42,
    contrabass = 43,
    tremoloStrings = 44,
    pizzicato = 45,
    harp = 46,
    timpani = 47,
    strings = 48,
    slowStrings = 49,
    synthStrings = 50,
    choirAahs = 52,
    voiceOohs = 53,
    synthVoice = 54,
    trumpet = 56,
    trombone = 57,
    tuba = 58,
    mutedTrumpet = 59,
    frenchHorn = 60,
    brassSection = 61,
    synthBrass = 62,
    sopranoSax = 64,
    altoSax = 65,
    tenorSax = 66,
    baritoneSax = 67,
    oboe = 68,
    bassoon = 70,
    clarinet = 71,
    piccolo = 72,
    flute = 73,
    recorder = 74,
    panFlute = 75,
    shakuhachi = 77,
    whistle = 78,
    ocarina = 79,
    squareLead = 80,
    sawLead = 81,
    calliope = 82,
    voiceLead = 85,
    newAgePad = 88,
    warmPad = 89,
    polySynth = 90,
    choirPad = 91,
    bowedGlass = 92,
    haloPad = 94,
    sweepPad = 95,
    crystal = 98,
    atmosphere = 99,
    sitar = 104,
    banjo = 105,
    shamisen = 106,
    koto = 107,
    kalimba = 108,
    bagpipe = 109,
    fiddle = 110,
    shanai = 111,
    steelDrums = 114,
    taiko = 116,
};

/// Drum kits by their General MIDI (GS) programs.
enum class Kit {
    none = -1,
    standard = 0,
    room = 8,
    power = 16,
    electronic = 24,
    analogue = 25,
    jazz = 32,
    brush = 40,
    orchestra = 48,
};

/// The name and the range of an instrument.
struct InstrumentFacts {
    Instrument instrument;
    std::string_view name;
    int low;   ///< lowest MIDI key that sounds well
    int high;  ///< highest one, at least two octaves above `low`
};

/// Precondition: instrument is not none.
const InstrumentFacts& factsOf(Instrument instrument);
std::string_view nameOf(Kit kit);

}  // namespace orvalo
