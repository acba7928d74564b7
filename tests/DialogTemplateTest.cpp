#include "tests/support/TemplateBuilder.h"

#include "platform/win32.h"
#include "tests/support/LoadedLibrary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>

// The editor's dialog as it stands in the built library.

namespace {

constexpr std::uint32_t Child = 0x40000000;
constexpr std::uint32_t Visible = 0x10000000;

const std::map<std::string, std::uint32_t> Styles = {
    {"Slider", Child | Visible | 0x00010000 | 0x02 | 0x08 | 0x10},
    {"Right", Child | Visible | 0x00020000 | 0x02 | 0x200},
    {"Centred", Child | Visible | 0x00020000 | 0x01 | 0x200},
    {"Left", Child | Visible | 0x00020000 | 0x200},
    {"Rule", Child | Visible | 0x11},
};

// Each control's number, kind, place, size and text, which has ~ for a blank.
constexpr const char* Controls =
    "-1 Right 7 11 49 8 10.0  -1 Right 7 28 49 8 {IDD_Options_Q}  -1 Right 7 45 49 8 1.0  "
    "1044 Slider 64 7 16 50 Slider1  1045 Centred 62 57 20 8 10.0  1046 Slider 104 7 16 50 Slider1  "
    "1047 Centred 102 57 20 8 10.0  1048 Slider 144 7 16 50 Slider1  1049 Centred 142 57 20 8 10.0  "
    "1050 Slider 184 7 16 50 Slider1  1051 Centred 182 57 20 8 10.0  -1 Right 7 77 49 8 {IDD_Options_20KHz}  "
    "-1 Right 7 94 49 8 {IDD_Options_Freq}  -1 Right 7 111 49 8 {IDD_Options_20Hz}  "
    "1014 Slider 65 73 15 50 Slider1  1015 Centred 58 123 28 8 999~Hz  1016 Slider 104 73 16 50 Slider1  "
    "1017 Centred 98 123 28 8 999~Hz  1018 Slider 144 73 16 50 Slider1  1019 Centred 138 123 28 8 999~Hz  "
    "1023 Slider 184 73 16 50 Slider1  1024 Centred 178 123 28 8 999~Hz  -1 Right 7 143 49 8 {IDD_Options_p10dB}  "
    "-1 Right 7 173 49 8 {IDD_Options_Gain}  -1 Right 7 202 49 8 {IDD_Options_m10dB}  "
    "1020 Slider 64 139 16 75 Slider1  1021 Centred 58 214 28 8 0.0~dB  -1 Centred 58 230 28 8 {IDD_Options_B1}  "
    "1022 Slider 104 139 16 75 Slider1  1025 Centred 98 214 28 8 0.0~dB  -1 Centred 98 230 28 8 {IDD_Options_B2}  "
    "1029 Slider 144 139 16 75 Slider1  1030 Centred 138 214 28 8 0.0~dB  "
    "-1 Centred 138 230 28 8 {IDD_Options_B3}  1033 Slider 184 139 16 75 Slider1  "
    "1034 Centred 178 214 28 8 0.0~dB  -1 Centred 178 230 28 8 {IDD_Options_B4}  "
    "1012 Slider 234 139 16 75 Slider1  1013 Centred 228 214 28 8 0.0~dB  "
    "-1 Centred 228 230 28 8 {IDD_Options_Master}  -1 Left 267 143 40 8 {IDD_Options_p12dB}  "
    "-1 Left 267 173 40 8 {IDD_Options_Gain}  -1 Left 267 202 40 8 {IDD_Options_m12dB}  -1 Rule 215 7 1 232";

std::string expectedTemplate() {
    TemplateBuilder dialog;
    dialog.words({1, 0xFFFF}).doubleWord(0).doubleWord(0).doubleWord(Child | 0x400 | 0x40 | 0x08);
    dialog.words({44, 0, 0, 318, 247}).words({0, 0, 0}).words({8, 0, 0}).text(u"MS Shell Dlg");
    std::istringstream controls(Controls);
    int id;
    std::string kind;
    for (unsigned x, y, width, height; controls >> id >> kind >> x >> y >> width >> height;) {
        std::string text;
        controls >> text;
        std::ranges::replace(text, '~', ' ');
        dialog.align().doubleWord(0).doubleWord(0).doubleWord(Styles.at(kind)).words({x, y, width, height});
        dialog.doubleWord(static_cast<std::uint32_t>(id));
        // The resource compiler writes class names in capitals, of which the system takes no note.
        dialog.text(kind == "Slider" ? u"MSCTLS_TRACKBAR32" : u"STATIC");
        dialog.text(std::u16string(text.begin(), text.end())).word(0);
    }
    return dialog.get();
}

TEST(DialogTemplate, StandsInTheLibraryAsItIsLaidOut) {
#ifdef _WIN32
    const LoadedLibrary library(EQ_LIBRARY_PATH);
    const HRSRC resource = FindResourceExW(library.module(), MAKEINTRESOURCEW(5), MAKEINTRESOURCEW(101), 0);
    ASSERT_NE(resource, nullptr);
    const auto* const bytes = static_cast<const char*>(LockResource(LoadResource(library.module(), resource)));
    const std::string stored(bytes, SizeofResource(library.module(), resource));
#else
    std::ifstream file(EQ_LIBRARY_PATH, std::ios::binary);
    const std::string stored{std::istreambuf_iterator<char>(file), {}};
#endif
    EXPECT_NE(stored.find(expectedTemplate()), stored.npos);
}

} // namespace
