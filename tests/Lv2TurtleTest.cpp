#include "tests/support/CommandTest.h"

#include <regex>

// Runs the program that writes the Turtle files of the LV2 bundle.

namespace eq {

namespace {

class Lv2Turtle : public CommandTest {
protected:
    Lv2Turtle() : CommandTest(EQ_LV2_TURTLE_PATH) {
        std::string texts = "// Language tags: de de-at\n<IDD_x>=\n[x=1]\n// LV2_Input = comment\n";
        for (const char* const key :
             {"LV2_Input", "LV2_InputLeft", "LV2_InputRight", "LV2_Output", "LV2_OutputLeft", "LV2_OutputRight",
              "LV2_Volume", "LV2_Enabled", "LV2_Latency", "IDD_Options_Freq", "IDD_Options_Gain", "IDD_Options_Q",
              "IDD_Options_B1", "IDD_Options_B2", "IDD_Options_B3", "IDD_Options_B4"})
            texts += std::string(key) + " =  Wort\" " + key + " \n" + key + " = later\n";
        folder.write("languages/EqualizerGerman.txt", texts);
        folder.write("languages/EqualizerEnglish.txt",
                     std::regex_replace(texts.substr(texts.find('\n')), std::regex("Wort"), "Word"));
        folder.write("languages/Other.txt", "// Language tags: de\n");
        folder.write("presets/b.preset", "# Name: Bee\n# Name[de]: Biene\n# Name[de-at]: Imme\n# About: b \"zz\n"
                                         "volume = -12\nband4.freq = 20000\n band2.gain=-2.5 \nband3.q = 1\n");
        folder.write(
            "presets/a.preset",
            "# About: ant\n\n# Name[de-at]: Emse\n# Name[de]: Ameise\n# Name: Ant\n# Name x: A\n# Name[x: A\n# Name\n");
        folder.write("presets/c.txt", "x");
        std::filesystem::create_directory(path("bundle"));
    }
    static std::string joined(const std::string& lines) { return std::regex_replace(lines, std::regex("\\s+"), " "); }
    /// Returns a file of the bundle in a short form, such as "freq1 1.0 [0.0, 2.0] 'LV2_Key'".
    [[nodiscard]] std::string bundled(const std::string& file) const {
        std::string text = contents("bundle/" + file);
        for (const auto& [pattern, form] :
             {std::pair(R"(@prefix.*|rdfs:comment "Four.*)", ""),
              {R"(\s+)", " "},
              {"<urn:tavrin:parametric-equalizer#([^>]*)>", "#$1"},
              {R"~(lv2:name "Word\\" (.*?)", "Wort\\" \1"@de, "Wort\\" \1"@de-at)~", "'$1'"},
              {R"(lv2:default (\S+) ; lv2:minimum (\S+) ; lv2:maximum (\S+))", "$1 in $2..$3"},
              {R"(a lv2:(In|Out)putPort, lv2:(Audio|Control)Port ; lv2:index (\d+) ; lv2:symbol)", "$3 $1 $2"}})
            text = std::regex_replace(text, std::regex(pattern), form);
        return text;
    }
    /// Runs the program on an input with a fault. `fault` is the last text of the input, and a part of the message.
    void expectFault(const std::string& file, const std::string& text, const std::string& fault) const {
        const std::size_t bar = fault.find('|');
        folder.write(file, text + fault.substr(0, bar));
        const Outcome outcome = run("bundle languages presets 4 234");
        EXPECT_EQ(outcome.exitCode, 1) << fault;
        EXPECT_NE(outcome.said.find(fault.substr(bar + 1)), std::string::npos) << outcome.said;
    }
};

TEST_F(Lv2Turtle, DescribesThePlugInsTheirPortsAndTheEditor) {
    EXPECT_EQ(run("bundle languages presets 4 234 editor").exitCode, 0);
    EXPECT_EQ(bundled("manifest.ttl"), joined(R"(
#stereo a lv2:Plugin ; lv2:binary <parametric-equalizer.so> ; rdfs:seeAlso <parametric-equalizer.ttl> .
#mono a lv2:Plugin ; lv2:binary <parametric-equalizer.so> ; rdfs:seeAlso <parametric-equalizer.ttl> .
#editor a ui:X11UI ; ui:binary <parametric-equalizer-editor.so> ; rdfs:seeAlso <parametric-equalizer.ttl> .
#preset-a a pset:Preset ; lv2:appliesTo #stereo, #mono ; rdfs:seeAlso <presets.ttl> .
#preset-b a pset:Preset ; lv2:appliesTo #stereo, #mono ; rdfs:seeAlso <presets.ttl> .
)"));
    std::string expected = R"(
<urn:tavrin:parametric-equalizer> a doap:Project ; doap:name "Parametric Equalizer" ;
doap:maintainer [ a foaf:Person ; foaf:name "the Parametric Equalizer authors" ] .
#in a pg:InputGroup, pg:StereoGroup ; lv2:symbol "in" ; 'LV2_Input' .
#out a pg:OutputGroup, pg:StereoGroup ; lv2:symbol "out" ; 'LV2_Output' .
)";
    for (const std::string n : {"1", "2", "3", "4"})
        expected += "#band" + n + " a pg:InputGroup ; lv2:symbol \"band" + n + "\" ; 'IDD_Options_B" + n + "' . ";
    for (const bool isStereo : {true, false}) {
        expected += std::string(isStereo ? "#stereo" : "#mono") +
                    " a lv2:Plugin, lv2:ParaEQPlugin ; doap:name \"Parametric Equalizer" + (isStereo ? "" : " Mono") +
                    R"(" ;
doap:license <https://spdx.org/licenses/MIT> ; lv2:project <urn:tavrin:parametric-equalizer> ;
lv2:minorVersion 4 ; lv2:microVersion 234 ; lv2:optionalFeature lv2:hardRTCapable ; )";
        expected +=
            isStereo
                ? R"(pg:mainInput #in ; pg:mainOutput #out ; ui:ui #editor ; lv2:port [
0 In Audio "in_l" ; 'LV2_InputLeft' ; lv2:designation pg:left ; pg:group #in ] , [
1 In Audio "in_r" ; 'LV2_InputRight' ; lv2:designation pg:right ; pg:group #in ] , [
2 Out Audio "out_l" ; 'LV2_OutputLeft' ; lv2:designation pg:left ; pg:group #out ] , [
3 Out Audio "out_r" ; 'LV2_OutputRight' ; lv2:designation pg:right ; pg:group #out ] , [
)"
                : R"(ui:ui #editor ; lv2:port [ 0 In Audio "in" ; 'LV2_Input' ] , [ 1 Out Audio "out" ; 'LV2_Output' ] , [ )";
        int index = isStereo ? 4 : 2;
        expected += std::to_string(index++) +
                    " In Control \"volume\" ; 'LV2_Volume' ; 0.0 in -12.0..12.0 ; units:unit units:db ] , [ ";
        for (const std::string kind : {"Freq", "Gain", "Q"}) {
            for (const std::string n : {"1", "2", "3", "4"}) {
                const std::string start = "20" + std::string(static_cast<std::size_t>(n[0] - '1'), '0'); // Hz
                const std::string symbol = static_cast<char>(kind[0] + 'a' - 'A') + kind.substr(1) + n;
                expected += std::to_string(index++) + " In Control \"" + symbol + "\" ; 'IDD_Options_" + kind + " " +
                            n + "' ; ";
                expected +=
                    kind == "Freq"
                        ? start + ".0 in 20.0..20000.0 ; units:unit units:hz ; lv2:portProperty pprops:logarithmic"
                    : kind == "Gain" ? "0.0 in -10.0..10.0 ; units:unit units:db"
                                     : "5.0 in 1.0..10.0";
                expected += " ; pg:group #band" + n + " ] , [ ";
            }
        }
        expected += std::to_string(index) + R"( In Control "enabled" ; 'LV2_Enabled' ; 1.0 in 0.0..1.0 ;
lv2:portProperty lv2:toggled ; lv2:designation lv2:enabled ] , [ )" +
                    std::to_string(index + 1) + R"( Out Control "latency" ;
'LV2_Latency' ; 2048.0 in 0.0..2048.0 ; units:unit units:frame ;
lv2:portProperty lv2:reportsLatency, lv2:integer ; lv2:designation lv2:latency ] . )";
    }
    expected += R"(#editor a ui:X11UI ; lv2:requiredFeature ui:parent ; lv2:optionalFeature ui:resize, ui:touch,
<http://lv2plug.in/ns/ext/options#options>, <http://lv2plug.in/ns/ext/urid#map> ;
lv2:extensionData ui:idleInterface, ui:resize . )";
    EXPECT_EQ(bundled("parametric-equalizer.ttl"), joined(expected));
}

TEST_F(Lv2Turtle, WritesThePresetsWithTheDefaultsOfMissingValuesAndNeedsNoEditor) {
    EXPECT_EQ(run("bundle languages presets 4 234").exitCode, 0);
    EXPECT_EQ((bundled("parametric-equalizer.ttl") + bundled("manifest.ttl")).find("ditor"), std::string::npos);
    EXPECT_EQ(std::regex_replace(bundled("presets.ttl"),
                                 std::regex(R"~(\[ lv2:symbol "(\w+)" ; pset:value (\S+) \]( ,)?)~"), "$1=$2$3"),
              joined(R"(
#preset-a a pset:Preset ; rdfs:label "Ant", "Ameise"@de, "Emse"@de-at ; rdfs:comment "ant" ; lv2:port
volume=0.0 , freq1=20.0 , freq2=200.0 , freq3=2000.0 , freq4=20000.0 , gain1=0.0 , gain2=0.0 ,
gain3=0.0 , gain4=0.0 , q1=5.0 , q2=5.0 , q3=5.0 , q4=5.0 .
#preset-b a pset:Preset ; rdfs:label "Bee", "Biene"@de, "Imme"@de-at ; rdfs:comment "b \"zz" ; lv2:port
volume=-12.0 , freq1=20.0 , freq2=200.0 , freq3=2000.0 , freq4=20000.0 , gain1=0.0 , gain2=-2.5 ,
gain3=0.0 , gain4=0.0 , q1=5.0 , q2=5.0 , q3=1.0 , q4=5.0 .
)"));
}

TEST_F(Lv2Turtle, NamesTheFaultOfAnInput) {
    for (const char* const arguments : {"", "bundle languages presets 4", "bundle languages presets 4 2 editor x"})
        EXPECT_EQ(run(arguments).exitCode, 64);
    for (const char* const folders : {"none languages presets", "bundle presets presets", "bundle languages languages"})
        EXPECT_EQ(run(std::string(folders) + " 4 2").exitCode, 1) << folders;
    std::filesystem::create_symlink("/dev/full", path("bundle/presets.ttl"));
    EXPECT_EQ(run("bundle languages presets 4 234").exitCode, 1);
    for (const std::string text : {"band1.gain = 10.5|10.5", "band1.freq = 19|19", "band1.q = 5x|5x", "band1.q|band1.q",
                                   "band1.q =|band1.q =", "band5.q = 1|band5.q", "# Name[fr]: C|each language",
                                   "# Name:|in English", "# About:|About"})
        expectFault("presets/c.preset", "# About: c\n# Name: C\n# Name[de]: C\n# Name[de-at]: C\n", text);
    std::filesystem::remove(path("presets/c.preset"));
    const std::string german = contents("languages/EqualizerGerman.txt");
    for (const std::string text :
         {"LV2_Input =|LV2_Input in de is empty", "LV2_Input = E\\n|escape", "x = E|no LV2_Input in de"})
        expectFault("languages/EqualizerGerman.txt", std::regex_replace(german, std::regex("LV2_Input =.*"), ""), text);
    expectFault("languages/EqualizerX.txt", "// Language tags: de\n", "|another file has de");
    expectFault("languages/EqualizerX.txt", "", "|Language tags");
}

} // namespace

} // namespace eq
