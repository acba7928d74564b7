// Other authors' programs write the input files and examine the output files: ffmpeg, ffprobe, flac and metaflac.

#include "support/BinaryReader.h"
#include "support/BinaryWriter.h"
#include "tests/support/EqualizeCommand.h"

#include <bit>
#include <tuple>
#include <utility>

namespace eq {

namespace {

using Chunks = std::vector<std::pair<std::string, std::string>>;
using enum std::endian;

std::string number(std::uint32_t value, std::endian order = little) {
    BinaryWriter writer(order);
    writer.write(value);
    return std::string(writer.written());
}

std::string oddBytes(std::size_t size) {
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(i * i + i / 256);
    return bytes;
}

std::string container(const std::string& outer, const std::string& inner, const Chunks& chunks, std::endian order) {
    std::string body = inner;
    for (const auto& [id, contents] : chunks)
        body.append(id)
            .append(number(static_cast<std::uint32_t>(contents.size()), order))
            .append(contents)
            .append(contents.size() % 2, '\0');
    return outer + number(static_cast<std::uint32_t>(body.size()), order) + body;
}

/// Returns the chunks of a file, except the chunks of the sound itself. Expects that the header states the file's size.
Chunks descriptionsIn(const std::string& file, std::endian order = little) {
    Chunks found;
    BinaryReader reader(file.data(), file.size(), order);
    reader.skip(4);
    std::uint64_t fileSize = reader.read<std::uint32_t>();
    std::uint64_t soundSize = 0;
    reader.skip(4);
    while (reader.remaining() > 0) {
        const std::string id(reader.readBytes(4));
        const std::uint32_t size = reader.read<std::uint32_t>();
        if (id == "ds64") {
            BinaryReader sizes(reader);
            fileSize = sizes.read<std::uint64_t>();
            soundSize = sizes.read<std::uint64_t>();
        }
        const std::string contents(reader.readBytes(size == 0xFFFFFFFF ? soundSize : size));
        reader.align(2);
        if (std::string("fmt data ds64 fact JUNK COMM SSND ").find(id) == std::string::npos)
            found.emplace_back(id, contents);
    }
    EXPECT_EQ(fileSize, file.size() - 8);
    return found;
}

class EqualizeMetadata : public EqualizeCommand {
protected:
    [[nodiscard]] std::string probe(const std::string& entries, const std::string& file) const {
        return shell("ffprobe -v error -of default=noprint_wrappers=1 -show_entries " + entries + " " + file);
    }
    void makeSound(const std::string& name, const std::string& options = "") const {
        shell("ffmpeg -v error -f lavfi -i anoisesrc=duration=0.5:amplitude=0.5:seed=1 " + options + " " + name);
    }

    const Chunks wavChunks = {
        {"JUNK", oddBytes(28)},
        {"fmt ", std::string("\1\0\1\0\x44\xAC\0\0\x88\x58\1\0\2\0\x10\0", 16)},
        {"LIST", "INFOINAM" + number(3) + std::string("T\xE9t\0", 4) + "IENG" + number(2) + "En"},
        {"bext", oddBytes(602 + 60001)},
        {"inst", oddBytes(7)},
        {"data", oddBytes(2000)},
        {"cue ", manyCues()},
        {"LIST", "adtllabl" + number(7) + number(3) + std::string("hey\0", 4)},
        {"smpl", number(0) + number(0) + number(22675) + number(60) + std::string(20, '\0')},
        {"id3 ", std::string("ID3\3\0\0\0\0\0\x0CTIT3\0\0\0\2\0\0\0b", 22)},
        {"zzzz", oddBytes(70001)},
        {"zzzz", ""},
    };
    static std::string manyCues() {
        std::string cues = number(150);
        for (std::uint32_t i = 0; i < 150; ++i)
            cues += number(i + 1) + number(i) + "data" + number(0) + number(0) + number(i);
        return cues;
    }
};

TEST_F(EqualizeMetadata, CopiesChunksByteForByteBetweenWavAndRf64AndWithinAiff) {
    folder.write("in.wav", container("RIFF", "WAVE", wavChunks, little));
    const Chunks expected = descriptionsIn(contents("in.wav"));
    ASSERT_EQ(expected.size(), 9U);
    for (const auto& [from, to] :
         {std::pair("in.wav", "a.wav"), {"a.wav", "b.rf64"}, {"b.rf64", "c.rf64"}, {"c.rf64", "d.wav"}}) {
        SCOPED_TRACE(to);
        EXPECT_EQ(expectRun(std::string(from) + " --bits 24 " + to, 0).find("note:"), std::string::npos);
        EXPECT_TRUE(descriptionsIn(contents(to)) == expected);
        EXPECT_EQ(probe("stream=duration_ts", to), "duration_ts=1000\n");
    }
    EXPECT_EQ(shell("ffprobe -v error -show_chapters d.wav | grep -c '^id='"), "150\n");

    const Chunks aiff = {{"COMM", std::string("\0\1\0\0\0\3\0\x10\x40\x0E\xAC\x44\0\0\0\0\0\0", 18)},
                         {"MARK", std::string("\0\1\0\1\0\0\0\1\3abc", 12)},
                         {"SSND", std::string(8, '\0') + oddBytes(6)},
                         {"ANNO", "one"},
                         {"ANNO", "two and more"},
                         {"APPL", oddBytes(60001)}};
    folder.write("in.aiff", container("FORM", "AIFF", aiff, big));
    EXPECT_EQ(expectRun("in.aiff out.aiff", 0).find("note:"), std::string::npos);
    EXPECT_TRUE(descriptionsIn(contents("out.aiff"), big) == descriptionsIn(contents("in.aiff"), big));
}

TEST_F(EqualizeMetadata, ReadsOtherProgramsChunksAndReportsTheLostChunks) {
    const std::string whole = container("RIFF", "WAVE", wavChunks, little);
    folder.write("in.wav", whole);
    const std::pair<const char*, const char*> rows[] = {
        {"out.flac", "the chunks bext, inst, cue, LIST, smpl, zzzz are not copied: FLAC cannot hold them\n"},
        {"out.caf", "the chunks bext, inst, cue, LIST, smpl, zzzz are not copied: CAF cannot hold them\n"},
        {"out.au", "not all titles and similar texts are copied: AU cannot hold them\n"},
    };
    for (const auto& [place, note] : rows) expectRun(std::string("in.wav ") + place, 0, {note});
    EXPECT_EQ(shell("metaflac --no-utf8-convert --export-tags-to=- out.flac | sort"),
              "IENG=En\nSUBTITLE=b\nTITLE=Tét\n");

    expectRun("- out.wav", 0, {"not copied, because they follow the sound in a pipe: cue , LIST, smpl, id3 "},
              "cat in.wav |");
    // The chunk "oddd" has an odd size and no padding, and the end of the file cuts off the chunk "bad ".
    folder.write("cut.wav", whole + "oddd" + number(1) + "x" + "good" + number(2) + "ab" + "bad " + number(9) + "abc");
    expectRun("cut.wav out.wav", 0, {"cut.wav: the chunk bad is not copied: the end of the file cuts it off"});
    const Chunks found = descriptionsIn(contents("out.wav"));
    ASSERT_EQ(found.size(), 11U);
    EXPECT_EQ((Chunks{found[9], found[10]}), (Chunks{{"oddd", "x"}, {"good", "ab"}}));

    // The chunks after an empty chunk "data" are not sound.
    const Chunks empty = {wavChunks[1], {"data", ""}, {"zzzz", "after"}};
    folder.write("empty.wav", container("RIFF", "WAVE", empty, little));
    expectRun("empty.wav out.wav", 0);
    EXPECT_TRUE(descriptionsIn(contents("out.wav")) == descriptionsIn(contents("empty.wav")));
}

TEST_F(EqualizeMetadata, KeepsTagsAndPicturesInAllFormats) {
    makeSound("in.wav", "-ar 48000");
    folder.write("sheet", "FILE x FLAC\n TRACK 01 AUDIO\n  INDEX 01 0\n");
    shell("ffmpeg -v error -f lavfi -i mandelbrot=s=301x207 -frames:v 1 -q:v 1 front.jpg;"
          "ffmpeg -v error -f lavfi -i 'nullsrc=s=320x240,geq=random(1)*255' -frames:v 1 back.png; flac -s in.wav;"
          "metaflac --no-utf8-convert --set-tag='TITLE=Grün 日本' --set-tag=ARTIST=One --set-tag=ARTIST=Two "
          "--set-tag=OWN=mine --import-picture-from='4|image/png|b||back.png' --import-cuesheet-from=sheet "
          "--import-picture-from='3|image/jpeg|a ü||front.jpg' in.flac 2> /dev/null");
    // The script prints all tags, the types and descriptions of the pictures, and the hash of each picture's bytes.
    folder.write("list", "metaflac --no-utf8-convert --export-tags-to=- $1 | sort\n"
                         "metaflac --list --block-type=PICTURE $1 | grep -E '^  (type|MIME|descr)'\n"
                         "for n in $(metaflac --list --block-type=PICTURE $1 | sed -n 's/^.*block #//p'); do\n"
                         "metaflac --block-number=$n --export-picture-to=- $1 | md5sum; done\n");
    const std::string expected = shell("sh list in.flac");
    ASSERT_NE(expected.find("a ü"), std::string::npos) << expected;

    expectRun("in.flac direct.flac", 0);
    EXPECT_EQ(shell("sh list direct.flac"), expected);
    EXPECT_EQ(shell("metaflac --export-cuesheet-to=- direct.flac | grep -c INDEX"), "1\n");
    std::string before = "in.flac";
    for (const char* const place :
         {"a.mp3", "b.ogg", "c.opus", "d.wav", "e.mp3", "f.rf64", "g.aiff", "h.opus", "end.flac"}) {
        SCOPED_TRACE(place);
        EXPECT_EQ(expectRun(before + " " + place, 0).find("no place"), std::string::npos);
        const std::string found = probe("format_tags:stream_tags=title:stream=width", place);
        for (const char* const part : {"Grün 日本", "width=301\n", "width=320\n"})
            EXPECT_NE(found.find(part), std::string::npos) << part << "\n" << found;
        before = place;
    }
    EXPECT_EQ(shell("sh list end.flac"), expected);
    shell("metaflac --set-tag=REPLAYGAIN_TRACK_GAIN=-3 in.flac");
    expectRun("in.flac out.caf", 0,
              {"ReplayGain state the loudness of the sound before",
               "the tags OWN, REPLAYGAIN_TRACK_GAIN are not copied: CAF cannot hold them",
               "pictures are not copied: CAF cannot hold them"});

    // The limit of the file's size is enough for the sound, but not for the picture.
    folder.write("out.flac", "old");
    expectRun("in.flac out.flac", 1, {}, "ulimit -f 300;");
    EXPECT_EQ(contents("out.flac"), "old");
}

TEST_F(EqualizeMetadata, CopiesMp3TagsByteForByteAndConvertsTheRichestTag) {
    makeSound("plain.mp3", "-write_xing 1 -id3v2_version 0");
    const auto frame = [](const std::string& id, const std::string& text) {
        return id + number(static_cast<std::uint32_t>(text.size()), big) + std::string(2, '\0') + text;
    };
    const std::string frames =
        frame("TIT2", std::string("\0Rich title", 11)) + frame("PRIV", std::string("me\0\1\2", 5));
    const std::string id3 =
        std::string("ID3\3\0\0\0\0\0", 9) + static_cast<char>(frames.size() + 9) + frames + std::string(9, '\0');
    const std::string items = number(9) + number(0) + std::string("Album\0", 6) + "Ape album" + number(15) + number(2) +
                              std::string("Cover Art (Front)\0x.png\0\x89PNG12345", 33);
    const auto ape = [&](std::uint32_t flags) {
        return "APETAGEX" + number(2000) + number(static_cast<std::uint32_t>(items.size()) + 32) + number(2) +
               number(flags) + std::string(8, '\0');
    };
    std::string id3v1 = "TAGOld title";
    id3v1.resize(33, ' ');
    id3v1 += "Old artist";
    id3v1.resize(127, '\0');
    id3v1 += '\xFF'; // no genre
    const std::string tail = ape(0xA0000000) + items + ape(0x80000000) + id3v1;
    folder.write("in.mp3", id3 + contents("plain.mp3") + tail);

    expectRun("in.mp3 out.mp3", 0, {"compressed with loss (MPEG"});
    const std::string output = contents("out.mp3");
    EXPECT_TRUE(output.starts_with(id3 + "\xFF"));
    EXPECT_TRUE(output.ends_with(tail));
    const std::string otherTail = id3v1 + ape(0xA0000000) + items + ape(0x80000000) +
                                  "LYRICSBEGININD00003110LYR00005hello000035LYRICS200" + id3v1;
    folder.write("other.mp3", contents("plain.mp3") + otherTail);
    expectRun("other.mp3 other-out.mp3", 0);
    EXPECT_TRUE(contents("other-out.mp3").ends_with(otherTail));
    // WAV and AIFF also contain ID3v2 tags, so they keep frames that have no equivalent in other tags.
    for (const char* const files : {"in.mp3 out.wav", "out.wav out.aiff", "out.aiff back.mp3"}) expectRun(files, 0);
    EXPECT_NE(contents("back.mp3").find(std::string("PRIV\0\0\0\5\0\0me\0\1\2", 15)), std::string::npos);
    expectRun("in.mp3 out.flac", 0, {"the tag PRIV is not copied: FLAC cannot hold it"});
    EXPECT_EQ(shell("metaflac --export-tags-to=- out.flac | sort"),
              "ALBUM=Ape album\nARTIST=Old artist\nTITLE=Rich title\n");
    EXPECT_EQ(shell("metaflac --export-picture-to=- out.flac"), "\x89PNG12345");
}

TEST_F(EqualizeMetadata, WritesTheRequestedSampleFormatAndQuality) {
    makeSound("in.wav", "-ar 48000 -c:a pcm_f32le");
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"16", "o.wav", "pcm_s16le"},    {"24", "o.aiff", "pcm_s24be"},    {"32", "o.rf64", "pcm_s32le"},
        {"float", "o.wav", "pcm_f32le"}, {"float", "o.aiff", "pcm_f32be"}, {"16", "o.flac", "flac"},
    };
    for (const auto& [bits, place, codec] : rows) {
        expectRun(std::string("in.wav ") + place + " --bits " + bits, 0);
        EXPECT_EQ(probe("stream=codec_name", place), std::string("codec_name=") + codec + "\n");
    }
    EXPECT_EQ(probe("stream=sample_fmt", "o.flac"), "sample_fmt=s16\n");
    expectRun("in.wav o.flac --bits float", 2, {"FLAC files cannot hold samples of 32 bit float"});
    expectRun("in.wav o.flac --quality 3", 0, {"--quality has no effect on"});
    expectRun("in.wav o.ogg --bits 16", 0, {"--bits has no effect on"});

    for (const char* const place : {"o.mp3", "o.ogg", "o.opus"}) {
        std::vector<std::size_t> sizes;
        for (const char* const quality : {"--quality 0", "--quality 5", "", "--quality 10"}) {
            expectRun(std::string("in.wav ") + place + " " + quality, 0);
            sizes.push_back(contents(place).size());
        }
        EXPECT_LT(sizes[0] * 12 / 10, sizes[1]) << place;
        EXPECT_LT(sizes[1] * 12 / 10, sizes[2]) << place;
        EXPECT_EQ(sizes[2], sizes[3]) << place;
    }
    EXPECT_NEAR(std::stod(probe("stream=bit_rate", "o.mp3").substr(9)), 320000.0, 1.0);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(EqualizeMetadata, ReplacesNoFileIfTheOutputLacksFrames) {
    makeSound("in.wav");
    folder.write("out.wav", "old");
    // LD_PRELOAD cannot contain a path with a blank.
    std::filesystem::create_symlink(EQ_LOSING_SNDFILE, path("losing.so"));
    for (const char* const place : {"out.wav", "new.flac", "new.aiff"})
        expectRun(std::string("in.wav ") + place, 1, {"12000 frames, channels: 1, 48000 Hz instead of 24000"},
                  "export LD_PRELOAD=./losing.so;");
    EXPECT_EQ(contents("out.wav"), "old");
    EXPECT_EQ(files().size(), 3U);
}
#endif

} // namespace

} // namespace eq
