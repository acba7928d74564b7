#include "lv2/turtle/Turtle.h"

#include "engine/FourBandEqualizer.h"
#include "lv2/Lv2Ports.h"
#include "parameters/ParameterNames.h"
#include "parameters/ParameterTable.h"

#include <array>
#include <charconv>
#include <iterator>

namespace eq::lv2 {

namespace {

constexpr const char* Prefixes = R"(@prefix doap:   <http://usefulinc.com/ns/doap#> .
@prefix foaf:   <http://xmlns.com/foaf/0.1/> .
@prefix lv2:    <http://lv2plug.in/ns/lv2core#> .
@prefix pg:     <http://lv2plug.in/ns/ext/port-groups#> .
@prefix pprops: <http://lv2plug.in/ns/ext/port-props#> .
@prefix pset:   <http://lv2plug.in/ns/ext/presets#> .
@prefix rdfs:   <http://www.w3.org/2000/01/rdf-schema#> .
@prefix ui:     <http://lv2plug.in/ns/extensions/ui#> .
@prefix units:  <http://lv2plug.in/ns/extensions/units#> .
)";

constexpr const char* About = "Four peak filters and an output gain per channel. A change of a setting is crossfaded. "
                              "The frequencies are right at "
                              "every sampling rate.";

std::string uri(const std::string& fragment) {
    return "<" + std::string(BundleUri) + "#" + fragment + ">";
}

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') result += '\\';
        result += c;
    }
    return result + "\"";
}

std::string nameText(const Name& name) {
    std::string text = quoted(name.english);
    for (const auto& [tag, translation] : name.translations) text += ", " + quoted(translation) + "@" + tag;
    return text;
}

/// Returns a number as a text. The text always contains a point, so that Turtle reads it as a decimal number.
std::string number(double value) {
    std::array<char, 64> digits;
    char* const end = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed).ptr;
    const std::string text(digits.begin(), end);
    return text.find('.') == std::string::npos ? text + ".0" : text;
}

/// Returns the fragment of the variant's URI, such as "stereo".
std::string nameOf(const PluginVariant& variant) {
    const std::string full = variant.uri;
    return full.substr(full.find('#') + 1);
}

/// Writes the ports of a variant, in the order of their indexes.
class PortList {
public:
    explicit PortList(std::string& turtle) : text(turtle) {}

    /// Adds a port. `properties` are additional lines of the form "predicate object".
    void add(const std::string& types, const std::string& symbol, const Name& name,
             const std::vector<std::string>& properties) {
        text += next == 0 ? "    lv2:port [\n" : " , [\n";
        text += "        a " + types + " ;\n        lv2:index " + std::to_string(next++) + " ;\n        lv2:symbol \"" +
                symbol + "\" ;\n        lv2:name " + nameText(name);
        for (const std::string& property : properties) text += " ;\n        " + property;
        text += "\n    ]";
    }
    [[nodiscard]] std::uint32_t count() const { return next; }

private:
    std::string& text;
    std::uint32_t next = 0;
};

void addAudioPorts(PortList& ports, const LanguageSources& languages, const PluginVariant& variant, const char* type,
                   const std::string& symbol, const std::string& key) {
    if (variant.channels == 1) return ports.add(std::string(type) + ", lv2:AudioPort", symbol, languages.find(key), {});
    for (const bool isLeft : {true, false})
        ports.add(std::string(type) + ", lv2:AudioPort", symbol + (isLeft ? "_l" : "_r"),
                  languages.find(key + (isLeft ? "Left" : "Right")),
                  {isLeft ? "lv2:designation pg:left" : "lv2:designation pg:right", "pg:group " + uri(symbol)});
}

Name parameterName(const LanguageSources& languages, const Parameter& parameter) {
    const auto key = [&]() -> const char* {
        switch (parameter.kind) {
        case ParameterKind::Frequency:
            return "IDD_Options_Freq";
        case ParameterKind::Gain:
            return "IDD_Options_Gain";
        case ParameterKind::Q:
            return "IDD_Options_Q";
        default:
            return "LV2_Volume";
        }
    }();
    const Name name = languages.find(key);
    return parameter.band == 0 ? name : withSuffix(name, " " + std::to_string(parameter.band));
}

std::string rangeText(double value, ValueRange range) {
    return "lv2:default " + number(value) + " ; lv2:minimum " + number(range.lowest) + " ; lv2:maximum " +
           number(range.highest);
}

void addParameterPorts(PortList& ports, const LanguageSources& languages) {
    for (const Parameter& parameter : Parameters) {
        std::vector<std::string> properties = {rangeText(parameter.defaultValue, scaleOf(parameter.kind).range)};
        if (parameter.kind == ParameterKind::Frequency) {
            properties.emplace_back("units:unit units:hz");
            properties.emplace_back("lv2:portProperty pprops:logarithmic");
        } else if (parameter.kind != ParameterKind::Q) {
            properties.emplace_back("units:unit units:db");
        }
        if (parameter.band != 0) properties.push_back("pg:group " + uri("band" + std::to_string(parameter.band)));
        ports.add("lv2:InputPort, lv2:ControlPort", portSymbolOf(parameter), parameterName(languages, parameter),
                  properties);
    }
}

void addPorts(std::string& text, const LanguageSources& languages, const PluginVariant& variant) {
    PortList ports(text);
    addAudioPorts(ports, languages, variant, "lv2:InputPort", "in", "LV2_Input");
    addAudioPorts(ports, languages, variant, "lv2:OutputPort", "out", "LV2_Output");
    addParameterPorts(ports, languages);
    ports.add("lv2:InputPort, lv2:ControlPort", "enabled", languages.find("LV2_Enabled"),
              {rangeText(1, {0, 1}), "lv2:portProperty lv2:toggled", "lv2:designation lv2:enabled"});
    constexpr double Latency = FourBandEqualizer::BlockSize;
    ports.add("lv2:OutputPort, lv2:ControlPort", "latency", languages.find("LV2_Latency"),
              {rangeText(Latency, {0, Latency}), "units:unit units:frame",
               "lv2:portProperty lv2:reportsLatency, lv2:integer", "lv2:designation lv2:latency"});
    if (ports.count() != variant.portCount()) throw InputError("the ports differ from Lv2Ports.h");
}

std::string group(const std::string& symbol, const std::string& types, const Name& name) {
    return "\n" + uri(symbol) + "\n    a " + types + " ;\n    lv2:symbol \"" + symbol + "\" ;\n    lv2:name " +
           nameText(name) + " .\n";
}

std::string projectText() {
    return "\n<" + std::string(BundleUri) +
           ">\n    a doap:Project ;\n    doap:name \"Parametric Equalizer\" ;\n"
           "    doap:maintainer [ a foaf:Person ; foaf:name \"the Parametric Equalizer authors\" ] .\n";
}

/// Returns the editor's description. The editor requires the host's window; all other features are optional.
std::string editorText() {
    return "\n<" + std::string(EditorUri) +
           ">\n    a ui:X11UI ;\n    lv2:requiredFeature ui:parent ;\n"
           "    lv2:optionalFeature ui:resize, ui:touch, <http://lv2plug.in/ns/ext/options#options>,\n"
           "        <http://lv2plug.in/ns/ext/urid#map> ;\n"
           "    lv2:extensionData ui:idleInterface, ui:resize .\n";
}

std::string variantText(const LanguageSources& languages, const PluginVariant& variant, BundleVersion version,
                        bool hasEditor) {
    std::string text = "\n<" + std::string(variant.uri) + ">\n    a lv2:Plugin, lv2:ParaEQPlugin ;\n    doap:name " +
                       quoted(variant.channels == 1 ? "Parametric Equalizer Mono" : "Parametric Equalizer") +
                       " ;\n    doap:license <https://spdx.org/licenses/MIT> ;\n    lv2:project <" + BundleUri +
                       "> ;\n    lv2:minorVersion " + std::to_string(version.minor) + " ;\n    lv2:microVersion " +
                       std::to_string(version.micro) +
                       " ;\n    lv2:optionalFeature lv2:hardRTCapable ;\n    rdfs:comment " + quoted(About) + " ;\n";
    if (variant.channels == 2) text += "    pg:mainInput " + uri("in") + " ;\n    pg:mainOutput " + uri("out") + " ;\n";
    if (hasEditor) text += "    ui:ui <" + std::string(EditorUri) + "> ;\n";
    addPorts(text, languages, variant);
    return text + " .\n";
}

} // namespace

std::string manifestText(const std::vector<FactoryPreset>& presets, bool hasEditor) {
    std::string text = Prefixes;
    std::string all;
    for (const PluginVariant& variant : Variants) {
        text += "\n" + uri(nameOf(variant)) + "\n    a lv2:Plugin ;\n    lv2:binary <parametric-equalizer.so> ;\n" +
                "    rdfs:seeAlso <parametric-equalizer.ttl> .\n";
        all += (all.empty() ? "" : ", ") + uri(nameOf(variant));
    }
    if (hasEditor)
        text += "\n<" + std::string(EditorUri) +
                ">\n    a ui:X11UI ;\n    ui:binary <parametric-equalizer-editor.so> ;\n" +
                "    rdfs:seeAlso <parametric-equalizer.ttl> .\n";
    for (const FactoryPreset& preset : presets)
        text += "\n" + uri("preset-" + preset.id) + "\n    a pset:Preset ;\n    lv2:appliesTo " + all +
                " ;\n    rdfs:seeAlso <presets.ttl> .\n";
    return text;
}

std::string pluginText(const LanguageSources& languages, BundleVersion version, bool hasEditor) {
    std::string text = Prefixes + projectText();
    text += group("in", "pg:InputGroup, pg:StereoGroup", languages.find("LV2_Input"));
    text += group("out", "pg:OutputGroup, pg:StereoGroup", languages.find("LV2_Output"));
    for (int band = 1; band <= BandCount; ++band) {
        const std::string number = std::to_string(band);
        text += group("band" + number, "pg:InputGroup", languages.find("IDD_Options_B" + number));
    }
    for (const PluginVariant& variant : Variants) text += variantText(languages, variant, version, hasEditor);
    return hasEditor ? text + editorText() : text;
}

std::string presetText(const std::vector<FactoryPreset>& presets) {
    std::string text = Prefixes;
    for (const FactoryPreset& preset : presets) {
        text += "\n" + uri("preset-" + preset.id) + "\n    a pset:Preset ;\n    rdfs:label " + nameText(preset.name) +
                " ;\n    rdfs:comment " + quoted(preset.about) + " ;\n    lv2:port";
        for (std::size_t i = 0; i < ParameterCount; ++i)
            text += std::string(i == 0 ? "" : " ,") + " [\n        lv2:symbol \"" + portSymbolOf(Parameters[i]) +
                    "\" ;\n        pset:value " + number(preset.values[i]) + "\n    ]";
        text += " .\n";
    }
    return text;
}

} // namespace eq::lv2
