// Imports settings of other equalizers, and compares the results with the filters of SoX and ffmpeg.

#include "tests/support/EqualizeCommand.h"

#include <algorithm>
#include <sstream>
#include <tuple>
#include <utility>

namespace eq {

namespace {

/// A filter in a text of settings. Its type is PK (peak), LSC (low shelf) or HSC (high shelf).
struct Filter {
    std::string type;
    double frequency, gain, q;
};

std::string textOf(const std::vector<Filter>& filters, double preamp = 0.0) {
    std::ostringstream text;
    text.precision(9);
    text << "Preamp: " << preamp << " dB\n";
    for (int i = 0; const auto& [type, frequency, gain, q] : filters)
        text << "Filter " << ++i << ": ON " << type << " Fc " << frequency << " Hz Gain " << gain << " dB Q " << q
             << "\n";
    return text.str();
}

/// Settings of ten filters each, as AutoEq writes them: with shelves, small Q, and gains beyond 10 dB.
// clang-format off
const std::vector<Filter> Headphones[] = {
    {{"LSC", 105, 5.5, 0.7}, {"PK", 210, -3.1, 0.62}, {"PK", 45, 1.4, 1.1}, {"PK", 1130, 2.4, 1.33},
     {"PK", 2580, -4.3, 2.14}, {"PK", 3870, 5.2, 2.9}, {"PK", 5920, -5.8, 4.7}, {"PK", 8100, 3.3, 2.2},
     {"HSC", 10000, -3.4, 0.7}, {"PK", 640, -0.9, 1.8}},
    {{"LSC", 105, 8.9, 0.7}, {"PK", 160, -4, 0.48}, {"PK", 3200, 10.9, 1.2}, {"PK", 1750, -5.6, 1.9},
     {"PK", 6100, -11.4, 3.2}, {"PK", 9000, 4.2, 3.9}, {"PK", 750, 1.9, 1.6}, {"PK", 36, -1.2, 1.9},
     {"HSC", 10000, 2.1, 0.7}, {"PK", 12400, -2.6, 2.6}},
    {{"LSC", 105, -2.4, 0.7}, {"PK", 118.6, -3.6, 0.55}, {"PK", 1424.3, -2.7, 1.38}, {"PK", 4893.2, 7.3, 1.74},
     {"PK", 2710, -1.9, 3.66}, {"PK", 8451.7, -12.1, 5.91}, {"PK", 6320.5, 2.2, 5.8}, {"PK", 38.9, 2.5, 1.02},
     {"HSC", 10000, -5.1, 0.7}, {"PK", 712.4, 0.8, 2.44}},
};
// clang-format on

double rms(const std::vector<float>& samples) {
    double sum = 0.0;
    for (const float sample : samples) sum += static_cast<double>(sample) * static_cast<double>(sample);
    return std::sqrt(sum / static_cast<double>(samples.size()));
}

/// Returns the level in dB of the difference of two sounds, relative to the expected sound.
double residueOf(std::vector<float> found, const std::vector<float>& expected) {
    EXPECT_EQ(found.size(), expected.size());
    std::ranges::transform(found, expected, found.begin(), std::minus());
    return 20.0 * std::log10(rms(found) / rms(expected));
}

/// Returns the deviation in dB that the notes of a fit state.
double statedDeviation(const std::string& notes) {
    double deviation = -1.0;
    const std::size_t place = notes.find("by up to ");
    if (place == notes.npos || std::sscanf(notes.c_str() + place, "by up to %lf dB, at", &deviation) != 1)
        ADD_FAILURE() << notes;
    return deviation;
}

class EqualizeSettings : public EqualizeCommand {
protected:
    /// Returns the largest difference in dB between the responses of "out.wav" and of ffmpeg's filters. The sound in
    /// "in.wav" must be an impulse.
    [[nodiscard]] double deviationFrom(const std::string& filters, int rate) const {
        shell("ffmpeg -v error -y -i in.wav -af '" + filters + "' -c:a pcm_f32le target.wav");
        const Sound target{rate, 1, samplesOf("target.wav")};
        const Sound fit{rate, 1, samplesOf("out.wav")};
        double largest = 0.0;
        for (int i = 0; i <= 600; ++i) {
            const double frequency = 20.0 * std::pow(1000.0, i / 600.0);
            largest = std::max(largest, std::fabs(decibelsAt(fit, frequency) - decibelsAt(target, frequency)));
        }
        return largest;
    }
    /// Runs `equalize` without OUTPUT, and expects that it succeeds. Returns its output.
    std::string settings(const std::string& options) const { return expectRun(options, 0); }
    /// Returns random peak filters within the effect's ranges at a rate. The Q of each filter is computed from a Q of
    /// the effect, so that both have the same width.
    std::vector<Filter> randomFilters(int count, int rate) {
        const auto random = [this](double from, double to) {
            return std::uniform_real_distribution<double>(from, to)(generator);
        };
        std::vector<Filter> filters;
        for (int i = 0; i < count; ++i) {
            const double frequency = 20.0 * std::pow(1000.0, random(0.001, 0.999)) * rate / 44100.0;
            const double gain = random(-10.0, 10.0);
            const double angle = 2.0 * std::numbers::pi * frequency / rate;
            const double width = std::tan(angle / 2.0 / std::pow(10.0, random(0.001, 0.999)));
            filters.push_back(
                {"PK", frequency, gain, std::sin(angle) / 2.0 / width * std::pow(10.0, -std::fabs(gain) / 40.0)});
        }
        return filters;
    }

    std::mt19937 generator{19};
};

TEST_F(EqualizeSettings, ImportsPeakFiltersThatEqualThoseOfSoxAtEachRate) {
    for (const int rate : {44100, 48000}) {
        double worst = -1000.0;
        // SoX computes with integers of 32 bits, so that float samples would lose precision.
        Sound sound = noise(rate, 1, 20000, SF_FORMAT_WAV | SF_FORMAT_PCM_32);
        for (float& sample : sound.samples) sample *= 0.02F; // boosts add up, and SoX clips
        writeSound("in.wav", sound);
        // Ten filters need three effects, because an effect has four bands.
        for (int run = 0; run < 20; ++run) {
            const std::vector<Filter> filters = randomFilters(10, rate);
            folder.write("in.txt", textOf(filters));
            equalize("--quiet --import in.txt");
            std::ostringstream effects;
            effects.precision(9);
            for (const Filter& filter : filters)
                effects << " equalizer " << filter.frequency << " " << filter.q << "q " << filter.gain;
            shell("sox -V1 in.wav sox.wav" + effects.str());
            const std::vector<float> expected = samplesOf("sox.wav");
            ASSERT_LT(*std::ranges::max_element(expected), 0.9F) << "SoX clipped";
            worst = std::max(worst, residueOf(samplesOf("out.wav"), expected));
        }
        EXPECT_LT(worst, -120.0) << rate << " Hz";
        RecordProperty("residue at " + std::to_string(rate), std::to_string(worst));
    }
    const std::vector<float> aligned = samplesOf("out.wav");
    std::vector<float> late = equalized("--quiet --import in.txt --keep-latency");
    ASSERT_EQ(late.size(), aligned.size() + 3 * 2048);
    EXPECT_TRUE(std::equal(aligned.begin(), aligned.end(), late.begin() + 3 * 2048));
}

TEST_F(EqualizeSettings, ImportsTheSameSettingsThatItExports) {
    writeSound("in.wav", noise(48000, 1, 10));
    for (const std::string input : {"", " in.wav"}) {
        for (int round = 0; round < 20; ++round) {
            std::ostringstream options;
            options.precision(9);
            for (int index = 0; index < 13; ++index)
                options << " --set " << index << "=" << std::uniform_real_distribution<float>(0.0F, 1.0F)(generator);
            const std::string quiet = "--quiet --list --json" + input;
            const std::string list = settings(quiet + options.str() + " --export out.txt");
            EXPECT_EQ(settings(quiet + " --import out.txt"), list) << contents("out.txt");
        }
        // The settings also stay the same for more bands than an effect has, and in a preset that an import saves.
        folder.write("in.txt", textOf(randomFilters(9, input.empty() ? 44100 : 48000), -7.25));
        const std::string list = settings("--quiet --list --import in.txt --export out.txt" + input);
        EXPECT_NE(list.find("effect 3 of 3:"), std::string::npos) << list;
        EXPECT_EQ(settings("--quiet --list --import out.txt" + input), list);
        shell("head -n 6 out.txt | tail -n +2 > four.txt");
        const std::string four = settings("--quiet --list --import four.txt --save-preset a.preset" + input);
        EXPECT_EQ(settings("--quiet --list --preset a.preset" + input), four) << contents("a.preset");
    }
}

TEST_F(EqualizeSettings, FitsFiltersWithoutAnExactFormAndMeasuresTheDeviation) {
    const std::map<std::string, const char*> ffmpegNames = {
        {"PK", "equalizer"}, {"LSC", "lowshelf"}, {"HSC", "highshelf"}};
    int good = 0;
    for (const std::vector<Filter>& filters : Headphones) {
        const int rate = &filters == &Headphones[1] ? 48000 : 44100;
        folder.write("in.txt", textOf(filters, -6.5));
        writeSound("in.wav", impulse(rate, 1 << 16, 0.5F));
        expectFailure(1, "--import in.txt in.wav out.wav",
                      "no exact form in this effect; --fit approximates the whole file");
        const std::string said = run("--import in.txt --list").said;
        // Filter i is in line i + 2, because line 1 is the Preamp.
        for (std::size_t i = 0; i < filters.size(); ++i) {
            const double leastQ = std::pow(10.0, -std::fabs(filters[i].gain) / 40.0);
            const bool isExact = filters[i].type == "PK" && std::fabs(filters[i].gain) <= 10.0 && filters[i].q > leastQ;
            EXPECT_EQ(said.find("line " + std::to_string(i + 2) + ", ") == std::string::npos, isExact) << i << said;
        }

        const std::string notes = equalize("--import in.txt --fit");
        std::ostringstream chain;
        chain.precision(9);
        chain << "volume=-6.5dB:precision=double";
        for (const auto& [type, frequency, gain, q] : filters)
            chain << "," << ffmpegNames.at(type) << "=f=" << frequency << ":t=q:w=" << q << ":g=" << gain << ":r=f64";
        const double largest = deviationFrom(chain.str(), rate);
        EXPECT_NEAR(largest, statedDeviation(notes), 0.02);
        good += largest <= 1.5 ? 1 : 0;
        RecordProperty("deviation " + std::to_string(&filters - Headphones), std::to_string(largest));
    }
    EXPECT_GE(good, 2);
}

TEST_F(EqualizeSettings, WarnsOfPoorFitsAndSavesAFitAsAPreset) {
    folder.write("in.txt", textOf(Headphones[0], -6));
    const std::string notes = expectRun("--import in.txt --fit --bands 4 --save-preset a.preset --plot a.svg --list", 0,
                                        {"warning: more than 2 dB"});
    EXPECT_EQ(settings("--quiet --list --preset a.preset"), notes.substr(notes.find("index")));
    for (const char* const name : {"Target", "Fit, volume \u22126.0 dB", "Difference"})
        EXPECT_NE(contents("a.svg").find(name), std::string::npos) << name;
    const std::string first = contents("a.preset");
    settings("--import in.txt --fit --bands 4 --save-preset a.preset");
    EXPECT_EQ(contents("a.preset"), first);
    folder.write("in.txt", textOf(Headphones[2], -6));
    expectFailure(1, "--import in.txt --fit --bands 1 --list", "dB, more than 6 dB; a higher number of --bands");
    settings("--import in.txt --fit --bands 1 --force --list");
    expectFailure(2, "--import in.txt --fit --save-preset b.preset", "a preset has 4 bands");

    // A text with an exact form is not fitted, except to fewer bands.
    folder.write("in.txt", textOf(randomFilters(5, 44100)));
    EXPECT_EQ(settings("--quiet --import in.txt --fit --list"), settings("--quiet --import in.txt --list"));
    settings("--import in.txt --fit --bands 4 --force --save-preset b.preset");

    // The level of a curve becomes a part of the volume, and the fit ignores the curve below 20 Hz.
    folder.write("in.txt", "GraphicEQ: 10 -84; 20 -9; 200 -9; 1000 -3; 5000 -9; 20000 -9\nPreamp: 1,5 dB");
    expectFailure(1, "--import in.txt --list", "no exact form");
    const std::string curve = settings("--import in.txt --fit --list");
    double volume = 0.0;
    std::sscanf(curve.substr(curve.find("dB  ", curve.find("volume"))).c_str(), "dB %*f %lf", &volume);
    EXPECT_LT(statedDeviation(curve), 0.6) << curve;
    EXPECT_NEAR(volume, -7.5, 0.6) << curve;
}

TEST_F(EqualizeSettings, ReadsTheVariantsOfTexts) {
    const std::string expected = "Preamp: -3.5 dB\nFilter 1: ON PK Fc 63.8 Hz Gain -8.6 dB Q 5\n";
    const std::string rewText =
        "Filter Settings file\n\nRoom EQ V5.20\nDated: Jan 1, 2024 10:00:00 AM\n\nNotes:\n\nEqualiser: "
        "Generic\nLeft\nFilter  1: ON  None\nFilter  2: OFF PK Fc x\nFilter  3: ON  Modal\tFc\t 63.8 Hz  Gain  "
        "\u22128.60 dB  Q  5.00  T60 target   300 ms\nFilter  4: ON  PK       Fc   100.0 Hz  Gain   0.00 dB  Q 50.0\n"
        "Preamp: -3.5 dB";
    const std::string texts[] = {
        expected,
        "\xEF\xBB\xBFPREAMP: -3,5 DB\r\nfilter 1: on pk fc 63,8 hz gain -8,60 db q 5,00\r\n",
        "# Preamp: -9 dB\n\nPreamp:-2dB # and\nFilter: ON PEQ Fc 63.8Hz Gain -8.6dB Q 5\nPreamp: -1.5",
        rewText,
        "Channel: all\nDevice: all\nPreamp: -3.5 dB\nFilter12:ON PK Gain -8.6 dB Q 0.5e1 Fc 0.0638 kHz",
    };
    for (const std::string& text : texts) {
        folder.write("in.txt", text);
        settings("--quiet --import in.txt --export out.txt");
        EXPECT_EQ(contents("out.txt"), "# Exact at a sampling rate of 44100 Hz.\n" + expected) << text;
    }
    // Options of the command line replace single values, and an imported band keeps its frequency.
    settings("--import in.txt --volume -12 --band 1:gain=2 --band 2:gain=1,q=2 --set 0=0.5 --export out.txt");
    expectInOrder(contents("out.txt"), {"Preamp: 0 dB\n", "Fc 63.8 Hz Gain 2 dB Q ", "Fc 200 Hz Gain 1 dB Q "});
    // At frequencies well below the rate, a bandwidth of one octave equals a Q of the square root of two.
    folder.write("in.txt", "Filter: ON PK Fc 100 Hz Gain 6 dB BW Oct 1");
    settings("--quiet --import in.txt --export out.txt");
    expectInOrder(contents("out.txt"), {"Q 1.4141"});
}

TEST_F(EqualizeSettings, RefusesLinesWithTheirNumberAndTheReason) {
    const std::tuple<std::string, std::string, std::string> rows[] = {
        {"Filter 1: PK Fc 100 Hz Gain 1 dB Q 2", "", "in.txt:2: 'PK' is neither ON nor OFF"},
        {"Filter 1: ON", "", "in.txt:2: the type of the filter is missing"},
        {"Filter 1: ON PX Fc 100 Hz", "", "in.txt:2: 'PX' is not a type of filter"},
        {"Filter 1: ON LP Fc 100 Hz", "--fit", "in.txt:2: filters of the type 'LP' are not possible"},
        {"Filter 1: ON PK Fc 1.000,5 Hz Gain 1 dB Q 2", "", "in.txt:2: Fc: '1.000,5' is not a number"},
        {"Filter 1: ON PK Fc 100 Hz Q 2", "", "in.txt:2: Gain is missing"},
        {"Filter 1: ON PK Fc 100 Hz Gain 2 dB", "", "in.txt:2: Q is missing"},
        {"Filter 1: ON PK Fc 100 Hz Gain 2 dB Q", "", "in.txt:2: the number of Q is missing"},
        {"Filter 1: ON PK Fc 100 Hz Gain 2 dB Q 0", "", "in.txt:2: Q is too small"},
        {"Filter 1: ON PK Fc 100 Hz Gain 2 dB Q 2 Hz", "", "in.txt:2: 'Hz' is not understood"},
        {"Filter 1 ON PK Fc 100 Hz Gain 2 dB Q 2", "", "in.txt:2: there is no colon after 'Filter'"},
        {"Filter 1: ON LS 300 dB Fc 100 Hz Gain 6 dB", "--fit", "in.txt:2: the slope is too steep"},
        {"Channel: L", "--fit", "in.txt:2: 'Channel' is not possible: all channels and devices are equalized alike"},
        {"Copy: L=R", "--fit", "in.txt:2: 'Copy' is not possible: it mixes channels"},
        {"include: other.txt", "--fit", "in.txt:2: 'include' is not possible: it reads another file"},
        {"GraphicEQ: 100 1; 50 2", "--fit", "in.txt:2: GraphicEQ: 50 Hz does not follow 100 Hz"},
        {"Preamp: -14.5 dB", "", "in.txt:2: Preamp -14.5 dB is not from -12 to 12 dB; --volume sets another"},
        {"Nothing", "", "in.txt: there is no filter that is on"},
        {"Filter: ON PK Fc 100 Hz Gain 10.5 dB Q 2", "", "line 2, PK Fc 100 Hz Gain 10.5 dB Q 2: the gain must be -10"},
        {"Filter: ON PK Fc 19 Hz Gain 1 dB Q 2", "", "the frequency must be 20.00 to 20000.00 Hz at a rate of 44100"},
        {"Filter: ON PK Fc 100 Hz Gain 8 dB Q .62", "", "Q must be 0.631 to 6.309 at this frequency and gain"},
        {"Filter: ON PK Fc 22050 Hz Gain 8 dB Q 1", "--fit", "in.txt:2: PK at 22050 Hz is not possible: its middle"},
    };
    for (const auto& [line, options, message] : rows) {
        folder.write("in.txt", "# A comment\n" + line + "\n");
        expectFailure(1, "--import in.txt --list " + options, message);
    }
    folder.write("in.txt", "Preamp: -14.5 dB\nFilter: ON PK Fc 100 Hz Gain 2 dB Q 2");
    settings("--import in.txt --volume -12 --list");
    folder.write("in.txt", "\xFF\xFEP");
    expectFailure(1, "--import in.txt --list", "UTF-16");
    expectFailure(1, "--import none.txt --list", "none.txt: No such file");
    expectFailure(2, "--fit --list", "--fit, --bands and --force need --import");
    expectFailure(2, "--import in.txt --bands 3 --list", "--bands and --force need --fit");
    expectFailure(2, "--import in.txt --preset in.txt --list", "--import and --preset cannot be used together");
    expectFailure(2, "--volume 1 --suffix x --export a.txt in.wav", "are for one file");
}

/// Compares each kind of shelf with ffmpeg's shelf of the same middle frequency and width.
TEST_F(EqualizeSettings, FitsEachKindOfShelf) {
    writeSound("in.wav", impulse(44100, 1 << 15));
    // A slope of 12 dB per octave is S = 1, which equals a Q of 0.7071. The ratio between the middle frequency and the
    // corner frequency is 10^(|gain| / (80 S)).
    const double octaves = std::pow(10.0, 6.0 / 80.0);
    const std::pair<const char*, std::string> rows[] = {
        {"LSC Fc 400 Hz Gain 6 dB Q 0.6", "lowshelf=f=400:t=q:w=0.6:g=6"},
        {"LS Q Fc 400 Hz Gain 6 dB Q 0.6", "lowshelf=f=400:t=q:w=0.6:g=6"},
        {"HSC 6 dB Fc 2000 Hz Gain -6 dB", "highshelf=f=2000:t=s:w=0.5:g=-6"},
        {"HS Fc 2000 Hz Gain -6 dB", "highshelf=f=2000:t=s:w=0.9:g=-6"},
        {"LS 12dB Fc 400 Hz Gain 6 dB", "lowshelf=f=" + std::to_string(400 * octaves) + ":t=s:w=1:g=6"},
        {"HS Fc 2000 Hz Gain -6 dB Q 0.70710678", "highshelf=f=" + std::to_string(2000 / octaves) + ":t=s:w=1:g=-6"},
    };
    for (const auto& [line, filter] : rows) {
        folder.write("in.txt", std::string("Filter: ON ") + line);
        const std::string notes = equalize("--import in.txt --fit --bands 6");
        const double largest = deviationFrom(filter + ":r=f64", 44100);
        EXPECT_LT(largest, 0.5) << line;
        EXPECT_NEAR(largest, statedDeviation(notes), 0.01) << line;
    }
}

TEST_F(EqualizeSettings, WritesAFilterChainThatPipewireReads) {
    folder.write("in.txt", textOf(randomFilters(6, 44100), -6));
    settings("--quiet --import in.txt --export out.txt");
    settings("--quiet --import in.txt --export out.CONF");
    shell("spa-json-dump out.CONF > out.json");
    std::string chain = contents("out.json");
    std::erase_if(chain, [](char c) { return c == ' ' || c == '\n'; });
    expectInOrder(chain,
                  {R"("label":"mixer","control":{"Gain1":0.501187)", R"({"output":"volume:Out","input":"band1:In"})",
                   R"({"output":"band5:Out","input":"band6:In"}],"inputs":["volume:In1"],"outputs":["band6:Out"])"});
    std::istringstream text(contents("out.txt"));
    int filters = 0;
    for (std::string line; std::getline(text, line);) {
        char frequency[32], gain[32], q[32];
        if (std::sscanf(line.c_str(), "Filter %*d: ON PK Fc %31s Hz Gain %31s dB Q %31s", frequency, gain, q) != 3)
            continue;
        const std::string name = "\"name\":\"band" + std::to_string(++filters) + "\",\"label\":\"bq_peaking\"";
        expectInOrder(chain,
                      {name + ",\"control\":{\"Freq\":" + frequency + ",\"Q\":" + q + ",\"Gain\":" + gain + "}"});
    }
    EXPECT_EQ(filters, 6);
}

} // namespace

} // namespace eq
