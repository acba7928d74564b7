// Reads or refuses files that other authors' programs wrote. These programs also read the results.

#include "tests/support/EqualizeCommand.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>

namespace eq {

namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr float NotANumber = std::numeric_limits<float>::quiet_NaN();

class EqualizeReading : public EqualizeCommand {
protected:
    /// Returns the samples that ffmpeg decodes from a file.
    [[nodiscard]] std::vector<float> decoded(const std::string& name) const {
        shell("ffmpeg -v quiet -y -i " + name + " -f f32le decoded.raw || true");
        const std::string bytes = contents("decoded.raw");
        std::filesystem::remove(path("decoded.raw"));
        std::vector<float> samples(bytes.size() / sizeof(float));
        std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(float));
        return samples;
    }
    /// Writes a sparse W64 file of silence with 16-bit samples. The samples take no space on the disk.
    void writeSilence(const std::string& name, int format, int channels, std::int64_t frames) const {
        writeSound(name, {44100, channels, {}, format});
        std::string bytes = contents(name);
        const auto size = static_cast<std::uint64_t>(frames * channels * 2);
        for (const auto& [position, value] :
             {std::pair{bytes.size() - 8, size + 24}, {std::size_t{16}, size + bytes.size()}})
            std::memcpy(bytes.data() + position, &value, sizeof value);
        folder.write(name, bytes);
        std::filesystem::resize_file(path(name), size + bytes.size());
    }
};

TEST_F(EqualizeCommand, HasTheSameResultWithOneThreadAndWithThree) {
    shell("ffmpeg -v error -f lavfi -i anoisesrc=d=20:a=0.5:seed=3 -ac 2 -ar 44100 in.flac");
    shell("head -c 900000 in.flac > cut.flac; ln -s /dev/full full.flac");
    for (const auto& [files, exitCode] :
         {std::pair{"in.flac out.flac", 0}, {"cut.flac out.flac", 1}, {"in.flac full.flac", 1}}) {
        const std::string arguments = std::string(files) + " --quiet --volume 3";
        const std::string three = expectRun(arguments + " --jobs 3", exitCode);
        const auto after = this->files();
        EXPECT_EQ(three, expectRun(arguments + " --jobs 1", exitCode));
        EXPECT_TRUE(after == this->files()) << files;
    }
    EXPECT_EQ(samplesOf("out.flac").size(), 20U * 44100 * 2);
}

TEST_F(EqualizeReading, ReadsAnMp3ToItsEndWithAndWithoutAHeaderFrame) {
    // The sound becomes loud late, so that an estimate of the length from the first frames is wrong.
    shell(
        "ffmpeg -v error -f lavfi -i \"aevalsrc='(0.01+0.4*gt(t,2))*sin(900*t*t)|0.3*sin(3000*t)*gt(t,1)':d=4\" s.wav");
    for (const char* const coder : {"-q:a 4 -write_xing 0", "-abr 1 -b:a 120k -write_xing 0", "-b:a 128k -write_xing 0",
                                    "-q:a 4", "-b:a 64k -ac 1 -ar 22050"}) {
        SCOPED_TRACE(coder);
        shell("ffmpeg -v error -y -i s.wav -map_metadata -1 " + std::string(coder) + " in.mp3");
        expectRun("in.mp3 out.wav", 0);
        const std::vector<float> expected = decoded("in.mp3");
        const std::vector<float> found = decoded("out.wav");
        ASSERT_EQ(found.size(), expected.size());
        for (std::size_t i = 0; i < found.size(); ++i) ASSERT_NEAR(found[i], expected[i], 2e-6) << i;
    }
    // The tag after the sound contains bytes that look like MPEG frames, but it is not sound.
    std::string picture;
    for (int i = 0; i < 729; ++i) picture += "\xFF\xFB\x90\x64";
    const std::string footer("APETAGEX\xD0\x07\0\0\x84\x0B\0\0\1\0\0\0\0\0\0\0", 24);
    folder.write("tagged.mp3",
                 contents("in.mp3") + picture + footer + std::string(8, '\0') + "TAG" + std::string(125, ' '));
    expectRun("tagged.mp3 tagged.wav", 0);
    EXPECT_TRUE(decoded("tagged.wav") == decoded("out.wav"));
    // The word "Info" in a title near the first frame is not the mark of a header frame.
    shell("ffmpeg -v error -y -i s.wav -b:a 128k -write_xing 0 -metadata title='Info about it' title.mp3");
    expectRun("title.mp3 out.wav", 0);
    // Reading continues after the damaged bytes.
    std::string damaged = contents("title.mp3");
    damaged.replace(20000, 6000, 6000, '\0');
    folder.write("hole.mp3", damaged);
    expectRun("hole.mp3 hole.wav", 0);
    EXPECT_GE(decoded("hole.wav").size() + decoded("out.wav").size() / 8, decoded("out.wav").size());
    shell("head -c 9000 in.mp3 > cut.mp3");
    expectRun("cut.mp3 out.wav", 1, {"MPEG frames are there"});
}

TEST_F(EqualizeReading, PutsEachChannelOnItsSpeakerInEveryFormat) {
    std::size_t channels = 2;
    for (const char* const layout : {"3.0", "quad", "5.0", "5.1", "6.1", "7.1"}) {
        ++channels;
        std::string tones;
        for (std::size_t c = 0; c < channels; ++c) tones += "|0.3*sin(2*PI*t*" + std::to_string(20 + 10 * c) + ")";
        shell("ffmpeg -v error -y -f lavfi -i \"aevalsrc='" + tones.substr(1) + "':s=48000:d=0.5:c=" + layout +
              "\" -bitexact in.wav && ffmpeg -v error -y -i in.wav -c:a libvorbis -q:a 8 in.ogg");
        // clang-format off
        for (const auto& [from, to] : {std::pair("in.wav", "a.ogg"), {"in.ogg", "b.wav"}, {"a.ogg", "c.flac"},
                {"c.flac", "d.opus"}, {"d.opus", "e.caf"}, {"e.caf", "f.ogg"}, {"f.ogg", "g.rf64"}}) {
            // clang-format on
            expectRun(std::string(from) + " " + to, 0);
            const std::vector<float> samples = decoded(to);
            for (std::size_t c = 0; c < channels; ++c) {
                std::complex<double> sum = 0.0; // of the tone of this channel
                for (std::size_t i = 6000; i < 18000; i += 8)
                    sum += std::polar(1.0, 2.0 * std::numbers::pi * static_cast<double>((2 + c) * i) / 4800.0) *
                           static_cast<double>(samples.at(i * channels + c));
                EXPECT_NEAR(std::abs(sum) / 1500.0, 0.15, 0.05) << layout << ", " << to << ", channel " << c;
            }
        }
    }
    shell("ffmpeg -v error -y -f lavfi -i aevalsrc='0|0|0:c=2.1:d=1' -bitexact low.wav");
    shell("ffmpeg -v quiet -i low.wav low.flac");
    for (const char* const name : {"low.wav", "low.flac"})
        expectFailure(1, std::string(name) + " out.ogg", "cannot hold the speakers");
}

TEST_F(EqualizeReading, ReadsToTheEndOfTheFileIfTheHeaderHasNoLength) {
    shell("ffmpeg -v error -f lavfi -i 'anoisesrc=d=1:a=0.5:r=44100' -ac 2 -c:a pcm_s16le s.wav");
    const std::vector<float> expected = decoded("s.wav");
    const std::string ffmpeg = "ffmpeg -v error -i s.wav -f ";
    const std::pair<std::string, const char*> writers[] = {
        {ffmpeg + "wav -", "p.wav"},         {ffmpeg + "wav -rf64 always -", "p.rf64"},
        {ffmpeg + "aiff -", "p.aiff"},       {ffmpeg + "au -", "p.au"},
        {ffmpeg + "caf -", "p.caf"},         {ffmpeg + "w64 -", "p.w64"},
        {ffmpeg + "flac -", "p.flac"},       {"sox s.wav -t wav -", "sox.wav"},
        {"sox s.wav -t aiff -", "sox.aiff"}, {"cat s.wav | sox -t wav - -t wav -", "sox2.wav"},
    };
    for (const auto& [command, name] : writers) {
        SCOPED_TRACE(command);
        shell(command + " | cat > " + name);
        const std::string said = expectRun(std::string(name) + " out.wav", 0);
        // A FLAC stream contains no size of its data, and sox fills in the size that its input states.
        const bool isNoted = said.find("header does not state the length") != std::string::npos;
        const bool isKnown = command.starts_with("sox") || command.starts_with("cat");
        EXPECT_TRUE(isKnown || isNoted == (name != std::string("p.flac")));
        EXPECT_TRUE(decoded("out.wav") == expected);
        std::filesystem::remove(path("out.wav"));
    }
    expectRun("/dev/stdin out.wav", 0, {}, ffmpeg + "wav - |");
    EXPECT_TRUE(decoded("out.wav") == expected);
    std::filesystem::remove(path("out.wav"));
    // A size of 0 means that the writer never filled in the size, unless only chunks follow.
    std::string zero = contents("s.wav");
    zero.replace(zero.find("data") + 4, 4, 4, '\0');
    folder.write("zero.wav", zero);
    expectRun("zero.wav zero.wav", 0);
    EXPECT_TRUE(decoded("zero.wav") == expected);
    folder.write("empty.wav", zero.substr(0, zero.find("data") + 8) + std::string("note\4\0\0\0text", 12));
    expectRun("empty.wav out.wav", 0, {": 0 frames"});
    // In a pipe, the library of sox appends a second header to files of these formats.
    shell("sox s.wav -t caf - | cat > unsure.caf; sox s.wav -t w64 - | cat > unsure.w64");
    for (const char* const name : {"unsure.caf", "unsure.w64"})
        expectFailure(1, std::string(name) + " out.wav", "never filled in");
}

TEST_F(EqualizeReading, ReadsAnAuFileWithMoreThanTwoGiB) {
    // The first sample is not a number. The failure at this sample shows quickly that the sound was found, so the test
    // does not equalize 2 GiB.
    const std::string header(".snd\0\0\0\x18\xA0\0\0\0\0\0\0\6\0\0\xAC\x44\0\0\0\2\x7F\xC0\0\0", 28);
    folder.write("long.au", header);
    const std::pair<std::uint64_t, const char*> rows[] = {
        {0xA0000000, "channel 1 has a sample that is not a number at 0:00.000"},
        {0xA0000008, "and other data after it"},
        {0x9FFFFFF8, "the file ends early"},
    };
    for (const auto& [size, message] : rows) {
        std::filesystem::resize_file(path("long.au"), header.size() - 4 + size);
        expectRun("long.au out.wav", 1, {message});
    }
}

TEST_F(EqualizeReading, RefusesFilesThatItCannotReadOrWriteCompletely) {
    for (const char* const name : {"out.flac", "out.mp3", "out.sds", "out.wav", "out.aiff", "out.au", "out.voc"})
        folder.write(name, "old");
    writeSound("none.wav", {44100, 1, {}, Pcm16});
    for (const char* const place : {"out.flac", "out.mp3"})
        expectFailure(1, std::string("none.wav ") + place, "cannot hold 0 frames");
    expectRun("--keep-latency none.wav kept.flac", 0);
    EXPECT_EQ(decoded("kept.flac").size(), 2048U);

    shell("ffmpeg -v error -f lavfi -i sine=d=1 a.ogg && ffmpeg -v error -f lavfi -i sine=d=1:r=48000 b.opus\n"
          "cat a.ogg a.ogg > chain.ogg; cat b.opus a.ogg > chain.opus; head -c -9 a.ogg > cut.ogg");
    expectFailure(1, "chain.ogg out.wav",
                  "divide the file at byte " + std::to_string(std::filesystem::file_size(path("a.ogg"))));
    expectFailure(1, "chain.opus out.wav", "several Ogg streams");
    expectFailure(1, "cut.ogg out.wav", "its last Ogg page is cut off");

    // The search for the sound ends at a chunk whose stated size is larger than any file.
    const std::string hugeChunk = "junk" + std::string(12, '\0') + std::string(8, '\xFF') + std::string(100, '\0');
    folder.write("huge.w64", "riff" + std::string(12, '\0') + "\xC8" + std::string(7, '\0') + "wave" +
                                 std::string(12, '\0') + hugeChunk);
    expectRun("huge.w64 out.wav", 1, {}, "ulimit -t 5;");

    // These failures are quick, because the length is known before the sound is read.
    constexpr int W64 = SF_FORMAT_W64 | SF_FORMAT_PCM_16;
    constexpr std::int64_t MostForWav = (std::int64_t{1} << 32) / 4;
    writeSilence("sds.w64", W64, 1, (1 << 21));
    expectFailure(1, "sds.w64 out.sds", "has 2097152 frames, and this file format can hold only 2097151");
    writeSilence("long.w64", W64, 2, MostForWav);
    for (const char* const place : {"out.wav", "out.aiff", "out.au", "out.voc"}) {
        expectRun(std::string("long.w64 ") + place, 1, {"too long for this file format"}, "ulimit -t 2;");
        EXPECT_EQ(contents(place), "old");
    }
}

TEST_F(EqualizeReading, ReportsChannelAndTimeOfASampleThatIsNotFinite) {
    for (const auto& [bad, what] : {std::pair(NotANumber, "not a number"), {-Infinity, "infinite"}}) {
        Sound sound = noise(8000, 2, 8000 * 70);
        sound.samples[8000 * 61 * 2 + 8 * 2 + 1] = bad;
        writeSound("in.wav", sound);
        folder.write("out.wav", "old");
        expectFailure(1, "in.wav out.wav",
                      std::string("channel 2 has a sample that is ") + what + " at 1:01.001; use --replace-nan");
        expectInOrder(equalize("--replace-nan"), {"1 sample was not a number or infinite, and replaced by 0"});
        sound.samples[8000 * 61 * 2 + 8 * 2 + 1] = 0.0F;
        EXPECT_TRUE(readSound("out.wav").samples == sound.samples);
    }
    writeSound("in.wav", {44100, 1, std::vector<float>(5000, 3e38F)});
    expectFailure(1, "in.wav out.wav --volume 12", "too far beyond full scale");
}

TEST_F(EqualizeReading, ReportsSamplesBeyondFullScaleForEveryKindOfFormat) {
    std::vector<float> samples(4000, 1.0F);
    writeSound("full.wav", {44100, 1, samples});
    samples[2000] = -2.0F;
    writeSound("in.wav", {44100, 1, samples});
    const std::pair<std::string, const char*> rows[] = {
        {"out.wav", "1 sample was beyond full scale, which the format keeps; the highest is 6.02 dB above it"},
        {"out.flac", "1 sample was clipped to full scale; the highest is 6.02 dB above it"},
        {"out.ogg", "1 sample was beyond full scale, and players may clip; the highest is 6.02 dB above it"},
        {"out.mp3", "1 sample was beyond full scale, and players may clip; the highest is 6.02 dB above it"},
    };
    for (const auto& [place, note] : rows) {
        expectRun("in.wav " + place, 0, {note});
        EXPECT_EQ(run("full.wav " + place).said.find("full scale"), std::string::npos) << place;
    }
}

} // namespace

} // namespace eq
