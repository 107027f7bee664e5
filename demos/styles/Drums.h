#pragma once

// Keys of the General MIDI drum map, as far as the grooves use them.
namespace orvalo::drum {

constexpr int kick = 36;
constexpr int sideStick = 37;
constexpr int snare = 38;
constexpr int clap = 39;
constexpr int floorTom = 41;
constexpr int closedHat = 42;
constexpr int pedalHat = 44;
constexpr int lowTom = 45;
constexpr int openHat = 46;
constexpr int midTom = 47;
constexpr int crash = 49;
constexpr int highTom = 50;
constexpr int ride = 51;
constexpr int rideBell = 53;
constexpr int tambourine = 54;
constexpr int cowbell = 56;
constexpr int highBongo = 60;
constexpr int lowBongo = 61;
constexpr int mutedConga = 62;
constexpr int openConga = 63;
constexpr int lowConga = 64;
constexpr int highTimbale = 65;
constexpr int lowTimbale = 66;
constexpr int highAgogo = 67;
constexpr int lowAgogo = 68;
constexpr int cabasa = 69;
constexpr int maracas = 70;
constexpr int guiro = 73;
constexpr int claves = 75;
constexpr int highBlock = 76;
constexpr int lowBlock = 77;
constexpr int mutedTriangle = 80;
constexpr int openTriangle = 81;
constexpr int shaker = 82;

}  // namespace orvalo::drum
