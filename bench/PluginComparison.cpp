// Measures the time per stereo frame of this project's LV2 plug-in and of the fastest open-source equalizers that are
// LV2 plug-ins, with four active bands and the same loader. The label of each run shows the measured gains at the four
// frequencies, which prove that the bands are active. Plug-ins that are not installed are left out.

#include <benchmark/benchmark.h>
#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <lv2/urid/urid.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <vector>

namespace eq {

namespace {

constexpr int Frames = 1024;
constexpr double Rate = 44100;
constexpr int Bands = 4;
constexpr double Frequencies[Bands] = {80, 400, 2500, 9000};
constexpr double Gains[Bands] = {4, -5, 6, -2};

/// The two channels of one call.
struct Stereo {
    std::vector<float> left = std::vector<float>(Frames);
    std::vector<float> right = std::vector<float>(Frames);
};

/// Returns a number for a URI, the same number in every call. LV2 plug-ins require this function of a host.
LV2_URID numberOf(LV2_URID_Map_Handle, const char* uri) {
    static std::map<std::string, LV2_URID> numbers;
    return numbers.try_emplace(uri, static_cast<LV2_URID>(numbers.size() + 1)).first->second;
}

struct NodeDeleter {
    void operator()(LilvNode* node) const { lilv_node_free(node); }
};
using Node = std::unique_ptr<LilvNode, NodeDeleter>;

/// A plug-in that equalizes `Frames` frames at a time from one place to the other.
class Lv2Equalizer {
public:
    using Settings = std::map<std::string, float>;

    /// Creates and activates an instance. Exits if the plug-in does not start, or has no port for one of the settings.
    Lv2Equalizer(LilvWorld* world, const LilvPlugin* plugin, Settings settings) {
        static LV2_URID_Map map = {nullptr, numberOf};
        static const LV2_Feature mapFeature = {LV2_URID__map, &map};
        static const LV2_Feature* const features[] = {&mapFeature, nullptr};
        m_instance = lilv_plugin_instantiate(plugin, Rate, features);
        if (m_instance == nullptr) std::exit(1);

        const std::uint32_t ports = lilv_plugin_get_num_ports(plugin);
        m_controls.resize(ports);
        lilv_plugin_get_port_ranges_float(plugin, nullptr, nullptr, m_controls.data());
        const Node audio(lilv_new_uri(world, LILV_URI_AUDIO_PORT));
        const Node control(lilv_new_uri(world, LILV_URI_CONTROL_PORT));
        const Node in(lilv_new_uri(world, LILV_URI_INPUT_PORT));
        std::vector<float*> inputs = {input.left.data(), input.right.data()};
        std::vector<float*> outputs = {output.left.data(), output.right.data()};
        for (std::uint32_t index = 0; index < ports; ++index) {
            const LilvPort* const port = lilv_plugin_get_port_by_index(plugin, index);
            const bool isInput = lilv_port_is_a(plugin, port, in.get());
            void* place;
            if (lilv_port_is_a(plugin, port, audio.get())) {
                std::vector<float*>& channels = isInput ? inputs : outputs;
                place = channels.front();
                channels.erase(channels.begin());
            } else if (lilv_port_is_a(plugin, port, control.get())) {
                const auto setting = settings.extract(lilv_node_as_string(lilv_port_get_symbol(plugin, port)));
                if (!setting.empty()) m_controls[index] = setting.mapped();
                place = &m_controls[index];
            } else {
                m_events.push_back(std::make_unique<Events>());
                m_events.back()->isInput = isInput;
                place = &m_events.back()->atom;
            }
            lilv_instance_connect_port(m_instance, index, place);
        }
        for (const auto& setting : settings) {
            std::fprintf(stderr, "no port %s\n", setting.first.c_str());
            std::exit(1);
        }
        lilv_instance_activate(m_instance);
    }

    Lv2Equalizer(const Lv2Equalizer&) = delete;
    Lv2Equalizer& operator=(const Lv2Equalizer&) = delete;

    ~Lv2Equalizer() {
        lilv_instance_deactivate(m_instance);
        lilv_instance_free(m_instance);
    }

    void run() {
        for (const auto& events : m_events) events->clear();
        lilv_instance_run(m_instance, Frames);
    }

    Stereo input;
    Stereo output;

private:
    /// The buffer of a message port. An input port receives no messages; the messages of an output port are ignored.
    struct Events {
        void clear() {
            atom.atom.type = numberOf(nullptr, isInput ? LV2_ATOM__Sequence : LV2_ATOM__Chunk);
            atom.atom.size = isInput ? sizeof(LV2_Atom_Sequence_Body) : sizeof space;
            atom.body = {};
        }

        LV2_Atom_Sequence atom;
        char space[65536];
        bool isInput;
    };

    LilvInstance* m_instance;
    std::vector<float> m_controls;
    std::vector<std::unique_ptr<Events>> m_events;
};

/// Returns `settings` with an additional entry for each band. The port of the entry is `name`, in which the number of
/// the band replaces the '#'. The number of the first band is `first`. `value` receives the index of the band, from 0,
/// and returns the value of the entry.
Lv2Equalizer::Settings perBand(Lv2Equalizer::Settings settings, const std::string& name, int first,
                               const std::function<double(int)>& value) {
    for (int band = 0; band < Bands; ++band) {
        const std::size_t mark = name.find('#');
        const std::string symbol = name.substr(0, mark) + std::to_string(first + band) + name.substr(mark + 1);
        settings[symbol] = static_cast<float>(value(band));
    }
    return settings;
}

double frequency(int band) {
    return Frequencies[band];
}
double decibels(int band) {
    return Gains[band];
}
double factor(int band) {
    return std::pow(10, Gains[band] / 20);
}
double on(int) {
    return 1;
}

Lv2Equalizer::Settings ourSettings() {
    Lv2Equalizer::Settings settings = perBand({}, "freq#", 1, frequency);
    settings = perBand(settings, "gain#", 1, decibels);
    return perBand(settings, "q#", 1, on);
}

Lv2Equalizer::Settings lspSettings() {
    Lv2Equalizer::Settings settings = perBand({}, "ft_#", 0, on);
    settings = perBand(settings, "f_#", 0, frequency);
    settings = perBand(settings, "q_#", 0, on);
    return perBand(settings, "g_#", 0, factor);
}

Lv2Equalizer::Settings calfSettings() {
    Lv2Equalizer::Settings settings = perBand({}, "p#_active", 1, on);
    settings = perBand(settings, "p#_freq", 1, frequency);
    return perBand(settings, "p#_level", 1, factor);
}

Lv2Equalizer::Settings x42Settings() {
    Lv2Equalizer::Settings settings = perBand({{"LSsec", 0.0F}, {"HSsec", 0.0F}}, "sec#", 1, on);
    settings = perBand(settings, "freq#", 1, frequency);
    return perBand(settings, "gain#", 1, decibels);
}

/// Returns the gain in decibels for a sine of `hertz`, measured after the equalizer has settled.
double gainAt(Lv2Equalizer& equalizer, double hertz) {
    constexpr int Calls = 100;
    double in = 0;
    double out = 0;
    for (int call = 0; call < Calls; ++call) {
        for (std::size_t n = 0; n < Frames; ++n) {
            const double time = (static_cast<double>(n) + call * Frames) / Rate;
            const double phase = 2 * std::numbers::pi * hertz * time;
            equalizer.input.left[n] = equalizer.input.right[n] = static_cast<float>(0.1 * std::sin(phase));
        }
        equalizer.run();
        for (std::size_t n = 0; call >= Calls / 2 && n < Frames; ++n) {
            in += double(equalizer.input.left[n]) * equalizer.input.left[n];
            out += double(equalizer.output.left[n]) * equalizer.output.left[n];
        }
    }
    return 10 * std::log10(out / in);
}

void measure(benchmark::State& state, const std::function<std::unique_ptr<Lv2Equalizer>()>& make) {
    const std::unique_ptr<Lv2Equalizer> equalizer = make();
    std::string label;
    for (const double hertz : Frequencies) {
        char text[32];
        std::snprintf(text, sizeof text, "%s%+.1f", label.empty() ? "" : ", ", gainAt(*equalizer, hertz));
        label += text;
    }
    state.SetLabel(label);

    std::mt19937 random(1);
    std::uniform_real_distribution<float> pick(-0.3F, 0.3F);
    for (float& sample : equalizer->input.left) sample = pick(random);
    for (float& sample : equalizer->input.right) sample = pick(random);
    for (auto _ : state) {
        equalizer->run();
        benchmark::ClobberMemory();
    }
    state.counters["per_sample"] =
        benchmark::Counter(Frames, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void registerLv2(LilvWorld* world, const char* name, const char* uri, const Lv2Equalizer::Settings& settings) {
    const Node node(lilv_new_uri(world, uri));
    const LilvPlugin* const plugin = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world), node.get());
    if (plugin == nullptr) return;
    benchmark::RegisterBenchmark(name, [=](benchmark::State& state) {
        measure(state, [&] { return std::make_unique<Lv2Equalizer>(world, plugin, settings); });
    });
}

} // namespace

} // namespace eq

/// Usage: bench-plugins BUNDLE [options of Google Benchmark]
int main(int argumentCount, char** arguments) {
    using namespace eq;
    benchmark::Initialize(&argumentCount, arguments);
    if (argumentCount != 2) return 64;
    const std::unique_ptr<LilvWorld, decltype(&lilv_world_free)> world(lilv_world_new(), lilv_world_free);
    lilv_world_load_all(world.get());
    const Node bundle(lilv_new_file_uri(world.get(), nullptr, (std::string(arguments[1]) + "/").c_str()));
    lilv_world_load_bundle(world.get(), bundle.get());
    registerLv2(world.get(), "Parametric Equalizer", "urn:tavrin:parametric-equalizer#stereo", ourSettings());
    registerLv2(world.get(), "lsp para_equalizer_x16", "http://lsp-plug.in/plugins/lv2/para_equalizer_x16_stereo",
                lspSettings());
    registerLv2(world.get(), "calf Equalizer8Band", "http://calf.sourceforge.net/plugins/Equalizer8Band",
                calfSettings());
    registerLv2(world.get(), "x42 fil4", "http://gareus.org/oss/lv2/fil4#stereo", x42Settings());
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
