#include "bench/compressors/Contenders.h"

namespace orvalo::bench {

Settings joined(Settings settings, const Settings& changes) {
    for (const auto& [symbol, value] : changes) {
        settings[symbol] = value;
    }
    return settings;
}

std::vector<Contender> contenders() {
    const Settings ours{{"threshold", -20.0F}, {"ratio", 4.0F},     {"knee", 0.0F},
                        {"attack", 10.0F},     {"release", 120.0F}, {"makeup", 0.0F}};
    const Settings oursFast{{"attack", 0.1F}, {"release", 45.0F}};
    const Settings oursCeiling{
        {"threshold", -6.0F}, {"ratio", 20.0F}, {"attack", 0.1F}, {"release", 5.0F}};
    const Settings lsp{{"al", 0.1F},   {"cr", 4.0F},  {"kn", 1.0F}, {"at", 10.0F},
                       {"rt", 120.0F}, {"scm", 0.0F}, {"scr", 0.0F}};
    return {
        {"Orvalo", "urn:tessaly:orvalo", ours, oursFast, oursCeiling},
        {"Orvalo, adaptive", "urn:tessaly:orvalo", joined(ours, {{"adaptive", 1.0F}}), oursFast,
         oursCeiling},
        {"Orvalo, fourfold", "urn:tessaly:orvalo", joined(ours, {{"oversampling", 2.0F}}), oursFast,
         oursCeiling},
        {"Orvalo, all new on",
         "urn:tessaly:orvalo",
         joined(ours, {{"adaptive", 1.0F},
                       {"oversampling", 2.0F},
                       {"look_ahead", 1.0F},
                       {"sc_highpass", 30.0F},
                       {"sc_lowpass", 18000.0F},
                       {"ceiling_on", 1.0F},
                       {"ceiling", 0.0F},
                       {"link", 99.9F}}),
         oursFast,
         {{"ratio", 1.0F}, {"ceiling", -6.0F}}},
        {"x42 darc",
         "http://gareus.org/oss/lv2/darc#stereo",
         {{"threshold", -20.0F}, {"Ratio", 0.75F}, {"attack", 0.01F}, {"release", 0.12F}},
         {{"attack", 0.001F}, {"release", 0.045F}},
         {{"threshold", -10.0F}, {"Ratio", 1.0F}, {"attack", 0.001F}, {"release", 0.03F}}},
        {"x42 dpl",
         "http://gareus.org/oss/lv2/dpl#stereo",
         {{"threshold", -10.0F}, {"release", 0.12F}},
         {{"release", 0.045F}},
         {{"threshold", -6.0F}, {"truepeak", 1.0F}}},
        {"ZamCompX2",
         "urn:zamaudio:ZamCompX2",
         {{"thr", -20.0F}, {"rat", 4.0F}, {"kn", 0.0F}, {"att", 10.0F}, {"rel", 120.0F}},
         {{"att", 0.1F}, {"rel", 45.0F}},
         {{"thr", -6.0F}, {"rat", 20.0F}, {"att", 0.1F}, {"rel", 1.0F}}},
        {"LSP compressor",
         "http://lsp-plug.in/plugins/lv2/compressor_stereo",
         lsp,
         {{"at", 0.1F}, {"rt", 45.0F}},
         {{"al", 0.5F}, {"cr", 100.0F}, {"at", 0.0F}, {"rt", 1.0F}}},
    };
}

std::vector<std::pair<std::string, Settings>> additions() {
    return {{"RMS", {{"detector", 1.0F}}},
            {"one filter", {{"sc_highpass", 100.0F}}},
            {"hold", {{"hold", 20.0F}}},
            {"adaptive smoothing", {{"adaptive", 1.0F}}},
            {"look-ahead", {{"look_ahead", 5.0F}}},
            {"separate channels", {{"link", 50.0F}}},
            {"mid and side", {{"stereo_mode", 1.0F}}},
            {"ceiling", {{"ceiling_on", 1.0F}}},
            {"twofold oversampling", {{"oversampling", 1.0F}}},
            {"fourfold oversampling", {{"oversampling", 2.0F}}}};
}

}  // namespace orvalo::bench
