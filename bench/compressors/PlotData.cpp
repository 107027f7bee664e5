#include "bench/compressors/PlotData.h"

#include <fstream>
#include <stdexcept>
#include <string>

namespace orvalo::bench {

namespace {

/// A file of points whose x values ascend in equal steps.
class Table {
  public:
    Table(const std::vector<Measuring>& all, const std::filesystem::path& file) : stream_(file) {
        stream_ << "x";
        for (const auto& one : all) {
            stream_ << "\t\"" << one.contender().name << '"';
        }
        stream_ << '\n';
        if (!stream_) {
            throw std::runtime_error(file.string() + " cannot be written");
        }
    }

    void add(double x, const std::vector<double>& values) {
        stream_ << x;
        for (const double value : values) {
            stream_ << '\t' << value;
        }
        stream_ << '\n';
    }

    /// A column for each contender: value(contender, row), at first, first + step, ...
    void addColumns(const std::vector<std::vector<double>>& columns, double first, double step) {
        for (std::size_t row = 0; row < columns.front().size(); ++row) {
            std::vector<double> values;
            values.reserve(columns.size());
            for (const auto& column : columns) {
                values.push_back(column[row]);
            }
            add(first + step * static_cast<double>(row), values);
        }
    }

  private:
    std::ofstream stream_;
};

template <typename Measure>
auto each(const std::vector<Measuring>& all, Measure measure) {
    std::vector<decltype(measure(all.front()))> results;
    results.reserve(all.size());
    for (const auto& one : all) {
        results.push_back(measure(one));
    }
    return results;
}

}  // namespace

void writePlotData(const std::vector<Measuring>& all, const std::filesystem::path& folder) {
    Table curve(all, folder / "curve.dat");
    for (int level = -50; level <= 0; level += 2) {
        curve.add(level, each(all, [&](const Measuring& one) { return one.curve(level); }));
    }
    constexpr double start = -100.0;
    constexpr double step = 1000.0 * Measuring::stepSeconds;
    Table attack(all, folder / "attack.dat");
    attack.addColumns(each(all, [](const Measuring& one) { return one.gains(-20.0, 0.0); }), start,
                      step);
    Table release(all, folder / "release.dat");
    release.addColumns(each(all, [](const Measuring& one) { return one.gains(0.0, -20.0); }), start,
                       step);
    Table distortion(all, folder / "thd.dat");
    for (const double frequency :
         {30.0, 50.0, 70.0, 100.0, 150.0, 200.0, 300.0, 500.0, 1000.0, 2000.0, 5000.0}) {
        distortion.add(frequency, each(all, [&](const Measuring& one) {
                           return one.distortion(frequency, true);
                       }));
    }
    constexpr std::size_t bands = 240;
    constexpr double width = 0.5 * Effect::rate / bands / 1000.0;
    Table alias(all, folder / "alias.dat");
    alias.addColumns(each(all, [](const Measuring& one) { return one.spectrumAtSpeed(bands); }),
                     0.5 * width, width);
    Table overshoot(all, folder / "overshoot.dat");
    for (int level = -12; level <= 6; ++level) {
        overshoot.add(level, each(all, [&](const Measuring& one) { return one.overshoot(level); }));
    }
    Table link(all, folder / "link.dat");
    for (int difference = 0; difference <= 40; difference += 2) {
        link.add(difference,
                 each(all, [&](const Measuring& one) { return one.linkError(difference); }));
    }
}

}  // namespace orvalo::bench
