// Runs `equalize` in pipes. Other authors' programs write its input and read its output.

#include "tests/support/EqualizeCommand.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace eq {

namespace {

class EqualizePipes : public EqualizeCommand {
protected:
    /// Returns a hash of the samples that ffmpeg decodes from a file, and their size in bytes.
    [[nodiscard]] std::string heard(const std::string& name) const {
        return shell("ffmpeg -v error -i " + name + " -map 0:a -f f32le - | tee raw | md5sum && wc -c < raw");
    }
    void makeSound(const std::string& name, const std::string& options) const {
        shell("ffmpeg -v error -f lavfi -i anoisesrc=d=1:a=0.5:r=48000:seed=7 " + options + " " + name);
    }
};

TEST_F(EqualizePipes, WritesTheSameSoundIntoAPipeAsIntoAFile) {
    makeSound("in.wav", "-ac 2 -c:a pcm_f32le");
    for (const std::string format : {"wav", "au", "flac", "ogg", "opus", "mp3"}) {
        SCOPED_TRACE(format);
        shell("k=" + format + R"(; equalize() { "$EQ" --quiet --band 3:gain=6 "$@"; }
              equalize in.wav file.$k && TMPDIR=/nowhere equalize in.wav - --format $k < /dev/null | cat > pipe.$k &&
              sox -n -r 48000 -c 2 -b 32 -e float -t wav - synth 0.5 sine 440 2> said |
              equalize - - --format $k | ffmpeg -v error -i - -f null -)");
        EXPECT_EQ(heard("pipe." + format), heard("file." + format));
    }
    // The samples are equal to the bit, and only the header differs.
    const std::string pipe = contents("pipe.wav");
    const std::string file = contents("file.wav");
    const std::size_t sound = pipe.find("data");
    EXPECT_EQ(pipe.substr(sound, 8), "data\xFF\xFF\xFF\xFF");
    EXPECT_EQ(pipe.substr(0, 8), "RIFF\xFF\xFF\xFF\xFF");
    EXPECT_EQ(pipe.find("PEAK"), std::string::npos) << "this chunk contains the time";
    EXPECT_TRUE(pipe.substr(sound + 8) == file.substr(file.find("data") + 8, pipe.size() - sound - 8));
    EXPECT_EQ(contents("pipe.au").substr(8, 4), "\xFF\xFF\xFF\xFF");
    shell("sox pipe.wav -n stat 2>&1 | grep 'Length.* 1.000000'");
    shell("flac -ts pipe.flac && metaflac --show-total-samples pipe.flac | grep -x 48000");
    shell("\"$EQ\" --quiet pipe.mp3 again.wav");
    EXPECT_EQ(SndfileHandle(path("again.wav")).frames(), 48000);
    // A file has a padding byte after a sound with an odd number of bytes, but a pipe has none.
    shell(R"(sox -n -r 48000 -c 1 -b 8 odd.wav synth 1001s sine 99
          "$EQ" --quiet odd.wav - | tail -c +45 | wc -c | grep -x 1001)");
}

TEST_F(EqualizePipes, ReadsTheSameSoundFromAPipeAsFromAFile) {
    makeSound("s.wav", "-ac 2 -c:a pcm_s24le -metadata title='A title'");
    for (const std::string name : {"a.wav", "a.au", "a.flac", "a.ogg", "a.opus", "a.mp3", "a.aiff", "a.caf"}) {
        SCOPED_TRACE(name);
        const bool isSpooled = name == "a.aiff" || name == "a.caf";
        shell("k=" + name + R"(; ffmpeg -v error -i s.wav $k; "$EQ" --quiet $k file.wav --bits float && mkfifo f
              cat $k > f & "$EQ" --bits float f pipe.wav 2> said; cat said; rm f)");
        EXPECT_EQ(contents("said").find("was copied into a temporary file") != std::string::npos, isSpooled);
        // libmpg123 rounds one in several thousand samples differently after it has scanned the file.
        if (name == "a.mp3")
            shell("for k in pipe file; do sox -D -V1 $k.wav -b 8 $k.raw; done; cmp pipe.raw file.raw");
        else
            EXPECT_TRUE(contents("pipe.wav") == contents("file.wav")) << contents("said");
    }
    const std::string expected = heard("s.wav");
    for (const std::string writer :
         {"ffmpeg -v error -i s.wav -c:a pcm_s24le -f wav -", "ffmpeg -v error -i s.wav -f au -c:a pcm_s24be -",
          "sox s.wav -t wav - 2> said", "flac -sc --until=48000 s.wav", "sox s.wav -t au - 2> said"}) {
        shell(writer + " | \"$EQ\" --quiet - out.wav --bits float");
        EXPECT_EQ(heard("out.wav"), expected) << writer;
    }
    // Reading begins at the current position of standard input.
    shell("{ echo text; cat s.wav; } > late; { head -c 5 > said; \"$EQ\" --quiet - out.wav --bits float; } < late");
    // The length of an MP3 stream without a header frame is unknown.
    shell(R"(ffmpeg -v error -y -i s.wav -write_xing 0 -b:a 192k b.mp3; "$EQ" --quiet b.mp3 f.flac
          cat b.mp3 | "$EQ" --quiet - - --format flac > p.flac)");
    EXPECT_EQ(heard("p.flac"), heard("f.flac"));
    // The sound of an MP3 stream in a pipe starts at the same sample as in a file.
    shell(R"(cat a.mp3 | "$EQ" --quiet - - --format mp3 > p.mp3; "$EQ" --quiet a.mp3 f.mp3
          for k in f p; do ffmpeg -v error -i $k.mp3 -af atrim=0.1:0.9 -f s16le $k.raw; done
          cmp -n 100000 f.raw p.raw)");
    // A run that reads its input twice copies the pipe into a temporary file.
    expectRun("- out.wav --normalize -6.0206 --bits float", 0, {"because it is read twice"}, "cat s.wav |");
    shell("sox out.wav -n stat 2>&1 | grep 'Maximum amplitude.*0.500\\|Minimum amplitude.*-0.500'");
}

TEST_F(EqualizePipes, AppendsOnlySoundToStandardOutput) {
    makeSound("in.wav", "-c:a pcm_s16le");
    for (const std::string place :
         {"- ", "/dev/stdout ", "/dev/fd/1 ", "/dev/fd/7 7>&1 --format caf ", "link --format aiff "}) {
        SCOPED_TRACE(place);
        const std::string said = shell("printf before > out; ln out second; ln -sf /dev/fd/1 link; mkdir -p tmp; "
                                       "TMPDIR=tmp \"$EQ\" in.wav --list 2> said >> out " +
                                       place + "; cat said; ls -A tmp");
        EXPECT_TRUE(contents("out").starts_with("before")) << said;
        EXPECT_TRUE(contents("out") == contents("second"));
        const bool isSpooled = place.find("--format") != std::string::npos;
        EXPECT_EQ(said.find("waits in a temporary file in tmp") != std::string::npos, isSpooled) << said;
        EXPECT_NE(said.find("band1.freq"), std::string::npos);
        shell("tail -c +7 out > sound; rm second");
        EXPECT_EQ(heard("sound"), heard("in.wav"));
    }
    expectRun("in.wav other.dat --format flac", 0);
    EXPECT_TRUE(contents("other.dat").starts_with("fLaC"));

    expectFailure(2, "in.wav - >> in.wav", "would be written while it is read");
    expectFailure(2, "in.wav - --plot /dev/stdout", "is used twice");
    expectFailure(2, "in.wav - --format nix", "there is no audio format 'nix'");
    expectFailure(2, "--suffix x -", "has no name for an output");
    expectFailure(2, "--suffix x --format flac in.wav", "--format is for one OUTPUT");
    expectInOrder(shell(R"(for files in 'in.wav -' '- out.wav'; do
                           script -qec "'$EQ' $files" /dev/null; test $? = 2 || exit 1; done)"),
                  {"is a terminal, which shows no sound", "is a terminal, which has no sound"});
}

TEST_F(EqualizePipes, FailsWhenInputOrOutputIsIncomplete) {
    makeSound("in.wav", "-c:a pcm_s16le -ac 2");
    for (const std::string format : {"wav", "au", "flac", "ogg", "opus", "mp3", "caf"}) {
        expectFailure(1, "in.wav - > /dev/full --format " + format, "No space left on device");
        expectInOrder(shell("for reader in 'head -c 9' true; do \"$EQ\" in.wav - --format " + format +
                            " | $reader > /dev/null; done; true"),
                      {"roken pipe"});
    }
    expectRun("in.wav -", 1, {}, "exec >&-;");
    shell("for k in flac ogg opus mp3; do ffmpeg -v error -i in.wav in.$k; done; cat in.ogg in.ogg > chain.ogg");
    const std::string end = std::to_string(std::filesystem::file_size(path("in.ogg")));
    // clang-format off
    const std::pair<const char*, std::string> rows[] = {
        {"head -c 50000 in.wav", "the file ends early"}, {"head -c 20000 in.flac", "the file ends early"},
        {"head -c -99 in.ogg", "its last Ogg page is cut off"}, {"head -c -99 in.opus", "its last Ogg page is cut off"},
        {"head -c 9000 in.mp3", "the file ends early"}, {"cat chain.ogg", "divide the file at byte " + end},
        {"cat /dev/zero", "no known audio format"}, {"true", "no known audio format"}};
    // clang-format on
    for (const auto& [feed, message] : rows) expectRun("- out.wav", 1, {message}, std::string(feed) + " |");
    expectRun("- - --format flac", 1, {"not a readable audio file"}, "head -c 44 in.wav |");
    expectRun("- - --format flac", 1, {"cannot hold 0 frames"}, "sox -n -r 8000 -c 1 -t wav - trim 0 0 |");
    EXPECT_FALSE(std::filesystem::exists(path("out.wav")));
}

TEST_F(EqualizePipes, CopiesTagsThatPrecedeTheSound) {
    makeSound("s.flac", "-metadata title=Tét -metadata artist=Someone -metadata mood=calm");
    shell(R"sh(ffmpeg -v error -f lavfi -i color=red:s=64x64:d=0.04 -frames:v 1 p.png
          metaflac --import-picture-from=p.png --set-tag="LONG=$(head -c 90000 /dev/zero | tr '\0' x)" s.flac)sh");
    for (const std::string format : {"flac", "ogg", "opus", "mp3", "wav"}) {
        SCOPED_TRACE(format);
        shell("k=" + format +
              R"(; "$EQ" --quiet s.flac file.$k && cat s.flac | "$EQ" --quiet - - --format $k > pipe.$k)");
        const auto tags = [&](const std::string& name) {
            return shell("ffprobe -v error -show_entries stream=codec_name,width:stream_tags:format_tags " + name +
                         "." + format + " | cut -c 1-80 | grep -v encoder | sort");
        };
        EXPECT_EQ(tags("pipe").find("=calm\n") == std::string::npos, format == "wav"); // ffprobe does not read "id3 "
        EXPECT_EQ(tags("pipe"), tags("file"));
        EXPECT_EQ(heard("pipe." + format), heard("file." + format));
    }
    // The pages of Ogg are numbered without a gap, and their checksums are right.
    EXPECT_EQ(shell("ogginfo pipe.ogg | grep -ci 'warning\\|hole' || true"), "0\n");
    // Tags after the sound are not copied, and a note names them.
    shell("ffmpeg -v error -i s.flac -write_id3v1 1 -map 0:a t.mp3");
    expectRun("- out.flac", 0, {"not copied, because they follow the sound in a pipe: tags of MP3"}, "cat t.mp3 |");
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(EqualizePipes, NeedsNoMoreMemoryForALongStream) {
    shell("sox -n -r 48000 -c 2 -b 16 head.wav trim 0 0; ffmpeg -v error -f lavfi -i sine=d=9 s.mp3");
    const auto peak = [this](const std::string& feed, const std::string& format, int megabytes) {
        const std::string line = "cd '" + folder.path().string() +
                                 "'; { head -c 40 head.wav; printf '\\377\\377\\377\\377'; " + feed + " | head -c " +
                                 std::to_string(megabytes) + "M; } | '" + program + "' --quiet - - --format " + format +
                                 " | cat > /dev/null";
        const pid_t child = fork();
        if (child == 0) {
            execl("/bin/bash", "bash", "-c", line.c_str(), nullptr);
            _exit(127);
        }
        int status = 0;
        rusage usage = {};
        EXPECT_EQ(wait4(child, &status, 0, &usage), child);
        EXPECT_EQ(status, 0) << line;
        return usage.ru_maxrss; // in KiB, of the largest program
    };
    const long reference = peak("cat /dev/zero", "wav", 4);
    EXPECT_LT(peak("cat /dev/zero", "wav", 150), reference + 1024);
    EXPECT_LT(peak("cat /dev/zero", "flac", 60), peak("cat /dev/zero", "flac", 4) + 1024);
    EXPECT_LT(reference, 32 * 1024);
}
#endif

/// Returns the bytes with up to four changes in the first 160 bytes. Cuts off the end of one file in eight.
std::string damaged(std::string bytes, std::mt19937& random) {
    const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random()) % limit; };
    const std::string telling("\x00\xFF\x7F\x80\x01", 5);
    for (std::size_t change = 1 + below(4); change > 0; --change)
        bytes[below(std::min<std::size_t>(bytes.size(), 160))] =
            change % 2 == 0 ? static_cast<char>(random() & 0xFFU) : telling[below(telling.size())];
    if (below(8) == 0) bytes.resize(below(bytes.size()));
    return bytes;
}

// One run of `equalize` processes all files of a format, and another run processes all pipes.
TEST_F(EqualizePipes, HasTheSameResultForDamagedHeadersInPipesAndInFiles) {
#if defined __SANITIZE_ADDRESS__ || defined __SANITIZE_THREAD__
    // A sanitizer reserves more address space than any limit, and the test takes longer.
    constexpr int Count = 100;
    const std::string limits = "ulimit -t 300;";
#else
    constexpr int Count = 300;
    const std::string limits = "ulimit -t 60; ulimit -v 8000000;";
#endif
    std::signal(SIGPIPE, SIG_IGN);
    shell("sox -n -r 44100 -c 2 -b 16 s.wav synth 0.02 sine 440");
    for (const std::string format : {"wav", "rf64", "w64", "aiff", "au", "caf", "flac", "ogg", "mp3"}) {
        SCOPED_TRACE(format);
        shell("test " + format + " = wav || \"$EQ\" --quiet s.wav s." + format +
              "; rm -rf in fifo out out2; mkdir fifo");
        const std::string whole = contents("s." + format);
        std::mt19937 random(20);
        std::map<std::string, std::string> sounds; // in the order in which the shell expands fifo/*
        for (int i = 0; i < Count; ++i) {
            const std::string name = std::to_string(1000 + i) + "." + format;
            folder.write("in/" + name, sounds[name] = damaged(whole, random));
            ASSERT_EQ(mkfifo(path("fifo/" + name).c_str(), 0600), 0);
        }
        const std::string sum = "files: " + std::to_string(Count) + ", written: ";
        const std::string said = expectRun("--block 512 --jobs 2 --output-dir out in/*", 1, {sum}, limits);
        EXPECT_EQ(said.find("written: 0,"), std::string::npos) << said;
        if (format != "wav" && format != "au" && format != "flac" && format != "mp3") continue;

        std::thread feeder([&] {
            for (const auto& [name, bytes] : sounds) std::ofstream(path("fifo/" + name), std::ios::binary) << bytes;
        });
        expectRun("--block 512 --jobs 1 --output-dir out2 fifo/*", 1, {sum}, limits);
        for (const auto& [name, bytes] : sounds) // releases the feeder if the command has ended early
            static_cast<void>(open(path("fifo/" + name).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        feeder.join();
        // In a pipe, `equalize` recognises MPEG only by its first bytes, so the results of damaged files may differ.
        EXPECT_EQ(format != "mp3" ? shell("diff -rq out out2 2>&1 || true") : "", "");
    }
}

} // namespace

} // namespace eq
