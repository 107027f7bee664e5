#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

#include "tests/platform/audio/file/AudioFixtures.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {
namespace {

constexpr std::size_t kFrames = 50001;
constexpr std::size_t kPriming = 1024;

std::string number(std::size_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<char>(value >> shift & 0xFFU));
    }
    return bytes;
}

std::string box(const std::string& kind, const std::string& content) {
    return number(8 + content.size()) + kind + content;
}

std::size_t numberAt(const std::string& bytes, std::size_t place) {
    std::size_t value = 0;
    for (std::size_t index = 0; index < 4; ++index) {
        value = value << 8U | static_cast<unsigned char>(bytes[place + index]);
    }
    return value;
}

// Renames a box, so that readers skip it.
void hide(std::string& bytes, const std::string& kind) {
    const auto place = bytes.rfind(kind);
    ASSERT_NE(place, std::string::npos) << kind;
    bytes.replace(place, 4, "free");
}

// An encoder's iTunSMPB note of its priming and padding.
std::string note(std::size_t priming, std::size_t padding, std::size_t frames) {
    std::array<char, 128> text{};
    std::snprintf(text.data(), text.size(), " 00000000 %08zX %08zX %016zX 00000000 00000000",
                  priming, padding, frames);
    const auto free =
        box("mean", number(0) + "com.apple.iTunes") + box("name", number(0) + "iTunSMPB");
    const auto entry = box("----", free + box("data", number(1) + number(0) + text.data()));
    const auto handler = box(
        "hdlr", number(0) + number(0) + "mdirappl" + number(0) + number(0) + std::string(1, '\0'));
    return box("udta", box("meta", number(0) + handler + box("ilst", entry)));
}

class EditListTest : public ::testing::Test {
  protected:
    EditListTest() : path_(folder_.path() / "a.m4a"), original_(risingSines(44100.0, 2, kFrames)) {
        writeEncoded(path_, original_, 44100.0, {"-b:a", "192k"});
        bytes_ = bytesOf(path_);
    }

    // The header is the last box, so it can grow.
    void addToHeader(const std::string& more) {
        const auto place = bytes_.rfind("moov") - 4;
        bytes_.replace(place, 4, number(numberAt(bytes_, place) + more.size()));
        bytes_ += more;
    }

    // Other encoders count whole packets there.
    void stateWholePackets() {
        const auto place = bytes_.rfind("mdhd") + 4 + 16;
        const auto packets = (numberAt(bytes_, place) + 1023) / 1024;
        bytes_.replace(place, 4, number(packets * 1024));
    }

    void setEdits(const std::vector<std::array<std::size_t, 2>>& edits) {
        std::string content = number(0) + number(edits.size());
        for (const auto& [duration, start] : edits) {
            content += number(duration) + number(start) + number(0x10000);
        }
        // In the track, before its media: the header and its track grow.
        hide(bytes_, "edts");
        const auto more = box("edts", box("elst", content));
        for (const auto* kind : {"moov", "trak"}) {
            const auto place = bytes_.rfind(kind) - 4;
            bytes_.replace(place, 4, number(numberAt(bytes_, place) + more.size()));
        }
        bytes_.insert(bytes_.rfind("mdia") - 4, more);
    }

    std::shared_ptr<AVAudioFile> written() const {
        writeBytes(path_, bytes_);
        return open(path_);
    }

    const TemporaryFolder folder_;
    const std::filesystem::path path_;
    const Channels original_;
    std::string bytes_;
};

TEST_F(EditListTest, ANoteStatesPrimingAndPaddingWithoutAnEditList) {
    hide(bytes_, "edts");
    hide(bytes_, "udta");
    stateWholePackets();
    addToHeader(note(kPriming, 175, kFrames));
    const auto file = written();
    EXPECT_EQ(file->length(), static_cast<std::int64_t>(kFrames));
    const auto heard = readOn(*file);
    EXPECT_EQ(bestLag(original_, heard, 0, 2000), 0);
    EXPECT_EQ(bestLag(original_, heard, kFrames - 2000, kFrames), 0);
}

TEST_F(EditListTest, ANoteMakesACoarseEditListExact) {
    hide(bytes_, "udta");
    stateWholePackets();
    addToHeader(note(kPriming, 175, kFrames));
    EXPECT_EQ(written()->length(), static_cast<std::int64_t>(kFrames));
}

TEST_F(EditListTest, AnEditListOverridesAContradictoryNote) {
    hide(bytes_, "udta");
    setEdits({{500, kPriming}});
    addToHeader(note(kPriming, 175, kFrames));
    EXPECT_EQ(written()->length(), 22050);
}

TEST_F(EditListTest, WithoutEditListAndNoteAllMediaPlays) {
    hide(bytes_, "edts");
    EXPECT_EQ(written()->length(), static_cast<std::int64_t>(kFrames + kPriming));
}

TEST_F(EditListTest, AnEditBeginsAndEndsAtAnyFrame) {
    setEdits({{200, kPriming + 10000}});
    const auto file = written();
    EXPECT_EQ(file->length(), 8820);
    EXPECT_GT(agreement(original_, readOn(*file), 10000, 18000, -10000), 25.0);
}

TEST_F(EditListTest, EmptyEditsAreSilenceAndEditsPlayInOrder) {
    const auto plain = readOn(*written());
    setEdits({{100, 0xFFFFFFFF}, {200, kPriming + 20000}, {300, kPriming}});
    const auto file = written();
    ASSERT_EQ(file->length(), 4410 + 8820 + 13230);
    for (int pass = 0; pass < 2; ++pass) {
        const auto heard = readOn(*file, 1000);
        for (std::size_t channel = 0; channel < 2; ++channel) {
            const auto& got = heard[channel];
            const auto& all = plain[channel];
            EXPECT_TRUE(std::all_of(got.begin(), got.begin() + 4410,
                                    [](float sample) { return sample == 0.0F; }));
            EXPECT_TRUE(std::equal(got.begin() + 4410, got.begin() + 13230, all.begin() + 20000));
            EXPECT_TRUE(std::equal(got.begin() + 13230, got.end(), all.begin()));
        }
        file->setFramePosition(0);
    }
}

TEST_F(EditListTest, AHeaderThatStatesMoreThanItsPacketsIsRefused) {
    const auto place = bytes_.rfind("mdhd") + 4 + 16;
    bytes_.replace(place, 4, number(0x7FFFFFFF));
    writeBytes(path_, bytes_);
    EXPECT_EQ(refusalOf(path_), path_.string() + ": the file is shorter than it states");
}

}  // namespace
}  // namespace orvalo::testing
