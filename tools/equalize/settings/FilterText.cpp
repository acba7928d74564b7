#include "tools/equalize/settings/FilterText.h"

#include "support/AsciiText.h"
#include "tools/common/Errors.h"
#include "tools/common/Text.h"
#include "tools/equalize/settings/Biquad.h"
#include "tools/equalize/settings/TextWords.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <fstream>
#include <iterator>
#include <numbers>
#include <optional>

namespace eq {
namespace {

using Shape = TextFilter::Shape;
using Width = TextFilter::Width;

constexpr std::size_t MostFilters = 200;
constexpr std::size_t MostPoints = 100000;

struct FilterType {
    std::string_view name;
    Shape shape;
    bool isAtCorner; ///< the frequency is the start of the shelf, if the line has a width
};

constexpr FilterType FilterTypes[] = {
    {"PK", Shape::Peak, false},       {"PEQ", Shape::Peak, false},     {"Modal", Shape::Peak, false},
    {"LS", Shape::LowShelf, true},    {"HS", Shape::HighShelf, true},  {"LSC", Shape::LowShelf, false},
    {"HSC", Shape::HighShelf, false}, {"LSQ", Shape::LowShelf, false}, {"HSQ", Shape::HighShelf, false},
};

constexpr std::string_view OtherTypes[] = {"LP", "LPQ",   "LP1", "HP",  "HPQ", "HP1", "BP",
                                           "NO", "Notch", "AP",  "All", "IIR", "L-T"};

/// A kind of line that changes the sound in a way that is impossible with this effect.
struct Refusal {
    std::string_view key;
    const char* reason;
};
constexpr Refusal Refusals[] = {
    {"Copy", "it mixes channels, and all channels are equalized alike here"},
    {"Include", "it reads another file; put the lines of that file in its place"},
    {"Convolution", "it filters with a recorded response, which four bands cannot replace"},
    {"Delay", "it delays channels, which an equalizer does not"},
    {"VSTPlugin", "it runs another effect"},
    {"LoudnessCorrection", "it depends on the volume of the system"},
    {"If", "it makes lines depend on a condition; keep only the lines that apply"},
    {"ElseIf", "it makes lines depend on a condition; keep only the lines that apply"},
    {"Else", "it makes lines depend on a condition; keep only the lines that apply"},
    {"EndIf", "it makes lines depend on a condition; keep only the lines that apply"},
    {"Eval", "it calculates values; put the numbers in their places"},
    {"Stage", "it limits lines to one stage of the system; keep only the lines that apply"},
};

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (std::size_t place = text.find(from); place != std::string::npos; place = text.find(from, place + to.size()))
        text.replace(place, from.size(), to);
}

/// Returns true if the next word "Q" belongs to the type, as in "LS Q Fc 100 Hz".
bool isTypeOfQ(const TextWords& words) {
    return equalNoCase(words.peek(), "Q") && equalNoCase(words.peek(1), "Fc");
}

class Parser {
public:
    explicit Parser(FilterText& text) : m_text(text) {}

    void addLine(std::string line, int number) {
        m_line = number;
        constexpr std::string_view NoBreakSpace = "\u00A0";
        constexpr std::string_view MinusSign = "\u2212";
        replaceAll(line, NoBreakSpace, " ");
        replaceAll(line, MinusSign, "-");
        const std::string_view content = trimmed(std::string_view(line).substr(0, line.find('#')));
        if (content.empty()) return;
        const std::size_t colon = content.find(':');
        if (colon == std::string_view::npos) return addText(content);
        addSetting(trimmed(content.substr(0, colon)), content.substr(colon + 1));
    }

private:
    /// Records a line without a colon, such as a title. Throws FileError if it looks like a setting without its colon.
    void addText(std::string_view content) {
        TextWords words(content);
        if (words.takeIf("Filter")) {
            if (parseIndex(words.peek())) words.take();
            if (words.takeIf("ON") || words.takeIf("OFF")) throw FileError("there is no colon after 'Filter'");
        } else if (words.takeIf("Preamp")) {
            throw FileError("there is no colon after 'Preamp'");
        }
        m_text.otherLines.push_back(m_line);
    }

    void addSetting(std::string_view key, std::string_view value) {
        TextWords words(value);
        if (isFilterKey(key)) return addFilter(words);
        if (equalNoCase(key, "Preamp")) return addPreamp(words);
        if (equalNoCase(key, "GraphicEQ")) return addCurve(value);
        if (equalNoCase(key, "Channel") || equalNoCase(key, "Device")) return requireAll(key, value);
        for (const Refusal& refusal : Refusals)
            if (equalNoCase(key, refusal.key)) throw FileError(quoted(key) + " is not possible: " + refusal.reason);
        m_text.otherLines.push_back(m_line);
    }

    /// Returns true for "Filter", "Filter 1" and "Filter1".
    static bool isFilterKey(std::string_view key) {
        constexpr std::string_view Name = "Filter";
        if (!equalNoCase(key.substr(0, Name.size()), Name)) return false;
        const std::string_view number = trimmed(key.substr(Name.size()));
        return number.empty() || number.find_first_not_of("0123456789") == std::string_view::npos;
    }

    static void requireAll(std::string_view key, std::string_view value) {
        if (equalNoCase(trimmed(value), "all")) return;
        throw FileError(quoted(key) +
                        " is not possible: all channels and devices are equalized alike here; make a file "
                        "of the lines that belong together");
    }

    void addPreamp(TextWords& words) {
        m_text.preamp += words.takeGain("Preamp");
        m_text.preampLine = m_line;
        words.requireEnd();
    }

    void addCurve(std::string_view value) {
        if (m_text.curveLine != 0)
            throw FileError("a second GraphicEQ line is not possible; the first is line " +
                            std::to_string(m_text.curveLine));
        m_text.curveLine = m_line;
        forEachPiece(value, ";", [this](std::string_view piece) {
            TextWords words(piece);
            if (words.isAtEnd()) return;
            const double frequency = words.takeFrequency("GraphicEQ");
            const double gain = words.takeGain("GraphicEQ");
            words.requireEnd();
            if (!m_text.curve.empty() && frequency <= m_text.curve.back().frequency)
                throw FileError("GraphicEQ: " + shortest(frequency) + " Hz does not follow " +
                                shortest(m_text.curve.back().frequency) + " Hz; the points must be in order");
            if (m_text.curve.size() == MostPoints) throw FileError("GraphicEQ has too many points");
            m_text.curve.push_back({frequency, gain});
        });
        if (m_text.curve.empty()) throw FileError("GraphicEQ has no points");
    }

    void addFilter(TextWords& words) {
        if (words.takeIf("OFF")) return;
        if (!words.takeIf("ON"))
            throw FileError(words.isAtEnd() ? "ON or OFF is missing" : quoted(words.peek()) + " is neither ON nor OFF");
        if (words.takeIf("None")) return;
        if (words.isAtEnd()) throw FileError("the type of the filter is missing");
        const std::string type(words.take());
        const FilterType& known = typeOf(type);
        Parameters found;
        if (known.shape != Shape::Peak) takeShelfWidth(words, found);
        while (!words.isAtEnd()) takeParameter(words, found);
        if (m_text.filters.size() == MostFilters)
            throw FileError("there are more than " + std::to_string(MostFilters) + " filters");
        m_text.filters.push_back(filterOf(type, known, found));
    }

    struct Parameters {
        std::optional<double> frequency;
        std::optional<double> gain;
        std::optional<double> width;
        Width widthKind = Width::Q;
        bool isCentred = false; ///< the type is "LS Q", so the frequency is the middle of the shelf
    };

    static const FilterType& typeOf(const std::string& name) {
        for (const FilterType& type : FilterTypes)
            if (equalNoCase(type.name, name)) return type;
        for (const std::string_view type : OtherTypes)
            if (equalNoCase(type, name))
                throw FileError("filters of the type " + eq::quoted(name) +
                                " are not possible, and peak filters cannot approximate them; remove the line");
        throw FileError(eq::quoted(name) + " is not a type of filter");
    }

    /// Reads the width after the type of a shelf, as in "LS 6dB", "LSC 10.8 dB" or "LS Q".
    static void takeShelfWidth(TextWords& words, Parameters& found) {
        if (isTypeOfQ(words)) {
            words.take();
            found.isCentred = true;
        } else if (!words.isAtEnd() && words.peek().find_first_of("0123456789") == 0) {
            constexpr double SteepestSlope = 12.0;
            const double slope = words.takeNumber("the slope");
            if (!words.takeIf("dB")) words.takeIf("dB/oct");
            setWidth(found, Width::Slope, slope / SteepestSlope, "the slope");
        }
    }

    static void takeParameter(TextWords& words, Parameters& found) {
        const std::string name(words.take());
        if (equalNoCase(name, "Fc")) {
            found.frequency = words.takeFrequency("Fc");
        } else if (equalNoCase(name, "Gain")) {
            found.gain = words.takeGain("Gain");
        } else if (equalNoCase(name, "Q")) {
            setWidth(found, Width::Q, words.takeNumber("Q"), "Q");
        } else if (equalNoCase(name, "BW")) {
            words.takeIf("Oct");
            setWidth(found, Width::Octaves, words.takeNumber("BW"), "BW");
            words.takeIf("Oct");
        } else if (equalNoCase(name, "T60")) {
            // T60 is the decay time for which the filter was designed. It does not change the filter.
            words.takeIf("target");
            static_cast<void>(words.takeNumber("T60"));
            words.takeIf("ms");
        } else {
            throw FileError(eq::quoted(name) + " is not understood");
        }
    }

    static void setWidth(Parameters& found, Width kind, double width, std::string_view what) {
        constexpr double Smallest = 0.001;
        const double largest = kind == Width::Octaves ? 20.0 : 1000.0;
        if (width < Smallest || width > largest)
            throw FileError(std::string(what) + " is " + (width > largest ? "too large" : "too small") +
                            "; the range is " + shortest(Smallest) + " to " + shortest(largest));
        if (found.width) throw FileError("there are two widths: Q, BW and the slope exclude each other");
        found.width = width;
        found.widthKind = kind;
    }

    TextFilter filterOf(const std::string& type, const FilterType& known, const Parameters& found) const {
        const bool isPeak = known.shape == Shape::Peak;
        if (!found.frequency) throw FileError("Fc is missing");
        if (!found.gain) throw FileError("Gain is missing");
        if (!found.width && isPeak) throw FileError("Q is missing");
        if (found.widthKind == Width::Octaves && !isPeak) throw FileError("a shelf has no BW");
        if (found.isCentred && !found.width) throw FileError("Q is missing");
        // Without a width a shelf has this slope, and its frequency is its middle.
        constexpr double UsualSlope = 0.9;
        TextFilter filter{m_line,
                          type,
                          known.shape,
                          *found.frequency,
                          *found.gain,
                          found.widthKind,
                          found.width.value_or(UsualSlope)};
        if (!found.width) filter.widthKind = Width::Slope;
        filter.isAtCorner = known.isAtCorner && found.width.has_value() && !found.isCentred;
        constexpr double AnyAngle = 1.0;
        if (filter.widthKind == Width::Slope && !(Biquad::alphaOfSlope(AnyAngle, filter.gain, filter.width) > 0.0))
            throw FileError("the slope is too steep for this gain; use a smaller slope");
        return filter;
    }

    FilterText& m_text;
    int m_line = 0;
};

} // namespace

std::string FilterText::origin(int line) const {
    return name + ":" + std::to_string(line) + ": ";
}

FilterText FilterText::parse(std::istream& stream, const std::string& name) {
    FilterText text;
    text.name = name;
    Parser parser(text);
    std::string line;
    for (int number = 1; std::getline(stream, line); ++number) {
        constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
        if (number == 1 && (line.starts_with("\xFF\xFE") || line.starts_with("\xFE\xFF")))
            throw FileError(name + ": the text is in UTF-16; save it as UTF-8 or ANSI");
        if (number == 1 && line.starts_with(ByteOrderMark)) line.erase(0, ByteOrderMark.size());
        try {
            parser.addLine(line, number);
        } catch (const FileError& error) {
            throw FileError(text.origin(number) + error.what());
        }
    }
    if (stream.bad() || !stream.eof()) throw FileError(name + ": cannot be read to its end");
    if (text.filters.empty() && text.curve.empty() && text.preampLine == 0)
        throw FileError(name + ": there is no filter that is on, no Preamp and no GraphicEQ");
    return text;
}

FilterText FilterText::read(const std::filesystem::path& file) {
    std::ifstream stream(file);
    if (!stream) throw systemError(file.string(), errno);
    return parse(stream, file.string());
}

} // namespace eq
