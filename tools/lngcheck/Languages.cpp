#include "tools/lngcheck/Languages.h"

#include "tools/lngcheck/Letters.h"
#include "wedge/Codepages.h"

#include <algorithm>
#include <array>

namespace eq {

namespace lngcheck {
namespace {

struct Language {
    WORD primary;
    const char* name;
    std::wstring_view letters; ///< small letters outside ASCII that have a key on the keyboard
};

constexpr std::wstring_view Arabic = L"\x621\x622\x623\x624\x625\x626\x627\x628\x629\x62A\x62B\x62C\x62D\x62E\x62F\x630"
                                     L"\x631\x632\x633\x634\x635\x636\x637\x638\x639\x63A\x641\x642\x643\x644\x645\x646"
                                     L"\x647\x648\x649\x64A\x67E\x686\x698\x6A9\x6AF\x6CC";
constexpr std::wstring_view Cyrillic = L"абвгдежзийклмнопрстуфхцчшщъыьэюя";
constexpr std::wstring_view None = L"";

// clang-format off
// The languages for which the library accepts code pages, sorted by primary language.
constexpr std::array Languages = {
    Language{0x01, "Arabic", Arabic},
    Language{0x02, "Bulgarian", Cyrillic},
    Language{0x03, "Catalan", L"çñ"},
    Language{0x04, "Chinese", None},
    Language{0x05, "Czech", L"áčďéěíňóřšťúůýž"},
    Language{0x06, "Danish", L"æøå"},
    Language{0x07, "German", L"äöüß"},
    Language{0x08, "Greek", L"αβγδεζηθικλμνξοπρσςτυφχψω"},
    Language{0x09, "English", None},
    Language{0x0A, "Spanish", L"ñ"},
    Language{0x0B, "Finnish", L"åäö"},
    Language{0x0C, "French", L"àâçéèêëîïôùûüÿæœ"},
    Language{0x0D, "Hebrew", L"אבגדהוזחטיךכלםמןנסעףפץצקרשת"},
    Language{0x0E, "Hungarian", L"áéíóöőúüű"},
    Language{0x0F, "Icelandic", L"áðéíóúýþæö"},
    Language{0x10, "Italian", L"àèéìòù"},
    Language{0x11, "Japanese", None},
    Language{0x12, "Korean", None},
    Language{0x13, "Dutch", None},
    Language{0x14, "Norwegian", L"æøå"},
    Language{0x15, "Polish", L"ąćęłńóśźż"},
    Language{0x16, "Portuguese", L"çáâãàéêíóôõú"},
    Language{0x18, "Romanian", L"ăâîşţ"},
    Language{0x19, "Russian", L"абвгдеёжзийклмнопрстуфхцчшщъыьэюя"},
    Language{0x1A, "Croatian or Serbian", L"čćđšžабвгдђежзијклљмнњопрстћуфхцчџш"},
    Language{0x1B, "Slovak", L"áäčďéíĺľňóôŕšťúýž"},
    Language{0x1C, "Albanian", L"çë"},
    Language{0x1D, "Swedish", L"åäö"},
    Language{0x1E, "Thai", L"กขฃคฅฆงจฉชซฌญฎฏฐฑฒณดตถทธนบปผฝพฟภมยรลวศษสหฬอฮ"},
    Language{0x1F, "Turkish", L"çğıiöşü"},
    Language{0x21, "Indonesian", None},
    Language{0x22, "Ukrainian", L"абвгґдеєжзиіїйклмнопрстуфхцчшщьюя"},
    Language{0x23, "Belarusian", L"абвгдеёжзійклмнопрстуўфхцчшыьэюя"},
    Language{0x24, "Slovenian", L"čšž"},
    Language{0x25, "Estonian", L"äõöüšž"},
    Language{0x26, "Latvian", L"āčēģīķļņšūž"},
    Language{0x27, "Lithuanian", L"ąčęėįšųūž"},
    Language{0x29, "Persian", Arabic},
    Language{0x2A, "Vietnamese", L"ăâđêôơư"},
    Language{0x2D, "Basque", L"ñ"},
    Language{0x36, "Afrikaans", None},
    Language{0x38, "Faroese", L"áðíóúýæø"},
};
// clang-format on

/// The ANSI code pages of Windows, in the order of the search. The library accepts 936 and 950 for all Chinese
/// languages, so the search would find 936 for traditional Chinese, too.
constexpr std::array AnsiCodepages = {1252U, 1250U, 1251U, 1253U, 1254U, 1255U, 1256U,
                                      1257U, 1258U, 874U,  932U,  949U,  936U,  950U};
constexpr std::array<WORD, 2> TraditionalChinese = {0x0404, 0x0C04};
constexpr UINT TraditionalChineseCodepage = 950;

const Language* findLanguage(WORD language) {
    const auto found = std::ranges::find(Languages, PRIMARYLANGID(language), &Language::primary);
    return found == Languages.end() ? nullptr : &*found;
}

} // namespace

std::string described(WORD language) {
    const Language* const known = findLanguage(language);
    return std::to_string(language) + (known ? " (" + std::string(known->name) + ")" : "");
}

bool isLanguageOfWindows(WORD language) {
    constexpr int MostDigits = 6;
    char digits[MostDigits] = "";
    return PRIMARYLANGID(language) != 0 &&
           GetLocaleInfoA(language, LOCALE_IDEFAULTANSICODEPAGE, digits, MostDigits) != 0;
}

bool isInAlphabet(wchar_t letter, WORD language) {
    const Language* const known = findLanguage(language);
    return !known || known->letters.find(smallLetter(letter)) != std::wstring_view::npos;
}

std::vector<UINT> codepagesOf(WORD language) {
    std::vector<UINT> codepages;
    for (const CodepagePair& pair : codepagePairs()) {
        if (pair.language == language) codepages.push_back(pair.codepage);
    }
    return codepages;
}

UINT ansiCodepageOf(WORD language) {
    if (std::ranges::find(TraditionalChinese, language) != TraditionalChinese.end()) return TraditionalChineseCodepage;
    const auto found = std::ranges::find_if(
        AnsiCodepages, [&](UINT codepage) { return CodepageFitsLanguage(static_cast<long>(codepage), language); });
    return found == AnsiCodepages.end() ? 0 : *found;
}

} // namespace lngcheck

} // namespace eq
