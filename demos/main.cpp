#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "demos/Composer.h"
#include "demos/catalogue/Piece.h"
#include "demos/sound/AacFile.h"

namespace {

using orvalo::Piece;

constexpr int badUse = 2;

void printCatalogue() {
    int number = 0;
    for (const Piece& piece : orvalo::catalogue()) {
        ++number;
        const auto style = piece.style();
        std::printf("%d\t%lld\t%s\t%s\t%s %s\t%d\t%d/%d\t%d\t%s\n", number,
                    static_cast<long long>(piece.frames()), std::string(piece.title).c_str(),
                    std::string(style.name).c_str(),
                    std::string(orvalo::nameOfTonic(piece.tonic)).c_str(),
                    std::string(orvalo::nameOf(piece.mode)).c_str(), piece.tempo, piece.metre.count,
                    piece.metre.unit, piece.bars, piece.ensemble().c_str());
    }
}

/// Reads the number of a piece; absent if it is not in the catalogue.
std::optional<int> numberFrom(const char* text) {
    char* end = nullptr;
    const long number = std::strtol(text, &end, 10);
    const auto count = static_cast<long>(orvalo::catalogue().size());
    return end != text && *end == '\0' && number >= 1 && number <= count
               ? std::optional(static_cast<int>(number))
               : std::nullopt;
}

void composeFiles(const std::filesystem::path& soundFont, const std::filesystem::path& folder,
                  int first, int last) {
    std::filesystem::create_directories(folder);
    for (int number = first; number <= last; ++number) {
        const Piece& piece = orvalo::catalogue()[static_cast<std::size_t>(number) - 1];
        const std::filesystem::path file = folder / (std::to_string(number) + ".m4a");
        try {
            orvalo::writeAac(orvalo::compose(piece, soundFont), orvalo::pieceRate,
                             std::string(piece.title), file);
        } catch (const std::exception& error) {
            throw std::runtime_error("piece " + std::to_string(number) + ", \"" +
                                     std::string(piece.title) + "\": " + error.what());
        }
    }
}

int run(std::span<char*> arguments) {
    if (arguments.size() == 2 && std::string_view(arguments[1]) == "--list") {
        printCatalogue();
        return EXIT_SUCCESS;
    }
    if (arguments.size() != 5) {
        std::fputs(
            "usage: orvalo-compose SOUNDFONT FOLDER FIRST LAST\n"
            "       orvalo-compose --list\n",
            stderr);
        return badUse;
    }
    const std::optional<int> first = numberFrom(arguments[3]);
    const std::optional<int> last = numberFrom(arguments[4]);
    if (!first || !last || *first > *last) {
        std::fprintf(stderr, "orvalo-compose: the catalogue has no pieces \"%s\" to \"%s\"\n",
                     arguments[3], arguments[4]);
        return badUse;
    }
    composeFiles(arguments[1], arguments[2], *first, *last);
    return EXIT_SUCCESS;
}

}  // namespace

/// Composes the demonstration music at build time: pieces FIRST to LAST as FOLDER/<number>.m4a.
/// --list prints the catalogue, one line per piece: number, frames, title, style, key, tempo,
/// metre, bars and ensemble, separated by tabs.
int main(int argc, char** argv) {
    try {
        return run({argv, static_cast<std::size_t>(argc)});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvalo-compose: %s\n", error.what());
    }
    return EXIT_FAILURE;
}
