#pragma once

// An independent reader of language files, which was written only from the description of the format, and a generator
// of random files.

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <iterator>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace eq::oracle {

struct Fault {
    int line;
    std::string text; ///< the message up to the first character that JSON or a terminal would escape
    auto operator<=>(const Fault&) const = default;
};

inline std::string trimmed(const std::string& text) {
    const auto isBlank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
    const auto first = std::ranges::find_if_not(text, isBlank);
    return {first, std::find_if_not(text.rbegin(), std::make_reverse_iterator(first), isBlank).base()};
}

inline std::string plainStart(const std::string& text) {
    const auto isEscaped = [](char c) { return c < ' ' || c > '~' || c == '"' || c == '\\'; };
    return {text.begin(), std::ranges::find_if(text, isEscaped)};
}

/// Returns the number before the last point of a file name, cut to 16 bits.
inline int languageOf(const std::string& name) {
    const std::size_t point = name.rfind('.');
    if (point == std::string::npos) return 0;
    const std::string stem = name.substr(0, point);
    return std::atoi(stem.substr(stem.find_last_not_of("0123456789") + 1).c_str()) & 0xFFFF;
}

/// Returns whether a code page fits a language. Contains only the pairs that the hostile files may use.
inline bool isPair(long codepage, int language) {
    const std::set<std::pair<long, int>> pairs = {{437, 1031}, {437, 1041}, {850, 1031}, {1252, 1031},
                                                  {932, 1041}, {942, 1041}, {866, 1049}, {1251, 1049}};
    return pairs.contains({codepage, language});
}

/// Returns the fault in a tag. For a valid tag, returns a text that begins with a point.
inline std::string faultOfTag(const std::string& tag) {
    std::string inside = tag.substr(1, tag.size() - 2);
    for (char& c : inside) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    std::ranges::replace(inside, '\t', ' ');
    std::vector<std::string> words;
    std::istringstream stream(inside);
    for (std::string word; std::getline(stream, word, ' ');)
        if (!word.empty()) words.push_back(word);
    if (words.empty()) return "Invalid tag '" + tag + "'.";
    const std::string invalid = "Invalid tag '" + tag + "':";
    if (words[0] == "CODEPAGE") {
        if (words.size() < 2) return invalid + "Codepage number expected in codepage definition.";
        if (std::atol(words[1].c_str()) == 0)
            return invalid + "First argument in codepage definition is expected to be an integer codepage number.";
        return ".CODEPAGE " + words[1];
    }
    if (words[0] != "ACCEL" && words[0] != "ACCELERATOR") return invalid + "Tag type '" + words[0] + "' is unknown.";
    const std::set<std::string> names = {"VIRTKEY", "SHIFT", "CONTROL", "ALT", "VK_F5", "VK_OEM_CLEAR"};
    for (std::size_t i = 1; i < words.size(); ++i) {
        const bool isKey = words[i].size() == 1 && std::isalnum(static_cast<unsigned char>(words[i][0]));
        if (!isKey && !names.contains(words[i]))
            return invalid + "Unknown identifier '" + words[i] + "' in accelerator definition.";
    }
    return ".ACCEL";
}

/// A line: either the event that it sends, or its fault.
struct Line {
    std::string event, fault;
};

inline Line readLine(const std::string& line, int language) {
    if (line.empty() || line.starts_with("//")) return {};
    const std::size_t first = line.find_first_not_of("[]");
    const std::size_t last = line.find_last_not_of("[]");
    if (line[0] == '[')
        return {"context|" + (first == std::string::npos ? "" : line.substr(first, last + 1 - first)) + "\n", ""};

    const std::size_t equal = line.find('=');
    const bool hasValue = equal != std::string::npos;
    const std::string left = trimmed(line.substr(0, equal));
    const std::string value = hasValue ? trimmed(line.substr(equal + 1)) : "";
    if (line[0] != '<') return hasValue ? Line{left + "|" + value + "\n", ""} : Line{"", "equal (=) expected."};
    const std::size_t close = line.find('>', 1);
    if (close == std::string::npos) return {"", "Invalid tag syntax - cannot find '>'."};
    const std::string tag = line.substr(0, close + 1);
    const std::string fault = faultOfTag(tag);
    if (fault[0] != '.') return {"", fault};
    if (fault[1] == 'C' && !isPair(std::atol(fault.c_str() + 10), language))
        return {"", "Specified codepage does not appear to match language of file."};
    if (hasValue && left != tag) return {"", "Unexpected text encountered between tag and '='."};
    if (!hasValue && fault[1] == 'A') return {"", "equal (=) expected for this tag type."};
    return {"tag|" + tag + "|" + value + "\n", ""};
}

template <typename Visit>
void forEachLine(const std::string& name, const std::string& contents, const Visit& visit) {
    std::istringstream stream(contents);
    std::string line;
    for (int number = 1; std::getline(stream, line) && visit(number, readLine(trimmed(line), languageOf(name)));)
        ++number;
}

inline std::set<Fault> faultsOf(const std::string& name, const std::string& contents) {
    std::set<Fault> faults;
    forEachLine(name, contents, [&](int number, const Line& line) {
        if (!line.fault.empty()) faults.insert({number, plainStart(line.fault)});
        return true;
    });
    return faults;
}

/// Returns the events of a file, one per line, up to the first fault. A fault is followed by its message.
inline std::string eventsOf(const std::string& name, const std::string& contents) {
    std::string events, fault;
    bool isOpen = false;
    forEachLine(name, contents, [&](int number, const Line& line) {
        const bool isContext = line.event.starts_with("context|");
        if (isContext && isOpen) events += "end\n";
        isOpen = isOpen || isContext;
        events += line.event;
        if (!line.fault.empty()) fault = "In file '" + name + "', line " + std::to_string(number) + ": " + line.fault;
        return fault.empty();
    });
    if (fault.empty()) return events + (isOpen ? "end\nfile end\n" : "file end\n");
    return events + fault + (fault.ends_with("and '='.") ? "" : "\n");
}

inline std::string endingOfName(std::mt19937& random) {
    static const char* const endings[] = {"-1031.lng", "-1041.lng",  "-1049.lng",   "-7.lng",
                                          "x.lng",     "5_1031.lng", "1049_lng.lng"};
    return endings[random() % std::size(endings)];
}

inline std::string hostileFile(std::mt19937& random) {
    static const std::string words =
        "<|>|=|[|]| |\t|//|/|\"|<CODEPAGE| 1252| 932| 437| 1251| 0| x| 866>| 1252>|<codepage |<>|< |<ACCEL| VK_F5| "
        "VK_A| F5| 7| +| SHIFT| alt>|<accelerator control a>|<FOO>|key|text|\xEF\xBB\xBF|\x80|\xFF|\\x4|\r|\x01|\x1A|&|"
        "= <ACCEL B>|<CODEPAGE 850 x>|<CODEPAGE 942> =| VK_OEM_CLEAR |[Shared]|IDS_DB = dB|{|[]|\x1F|\\n";
    static const std::vector<std::string> pieces = [] {
        std::vector<std::string> result;
        std::istringstream stream(words);
        for (std::string piece; std::getline(stream, piece, '|');) result.push_back(piece);
        return result;
    }();
    std::string file = "[Shared]\n";
    for (std::size_t lines = random() % 9; lines > 0; --lines) {
        for (std::size_t count = random() % 6; count > 0; --count) file += pieces[random() % pieces.size()];
        if (lines > 1 || random() % 2 == 0) file += random() % 3 == 0 ? "\r\n" : "\n";
    }
    return file;
}

} // namespace eq::oracle
