#include "tools/common/CommandLine.h"

#include "tools/common/Errors.h"

#include <memory>
#include <sstream>
#include <string_view>
#include <utility>

namespace eq {
namespace {

constexpr std::size_t LineLength = 80;
constexpr std::size_t DescriptionColumn = 26;

/// Formats the help: the name of an option on the left, and its description on the right, wrapped between words.
class HelpFormatter : public CLI::Formatter {
public:
    explicit HelpFormatter(std::string usage) : m_usage(std::move(usage)) { label("Positionals", "Arguments"); }

    std::string make_usage(const CLI::App*, std::string) const override { return "Usage:\n" + m_usage + "\n"; }

    std::string make_option(const CLI::Option* option, bool isPositional) const override {
        std::string line = "  " + option->get_name(isPositional, !isPositional);
        if (!isPositional && !option->get_type_name().empty()) line += " " + option->get_type_name();
        if (line.size() + 2 > DescriptionColumn) line += "\n";
        std::string help;
        std::istringstream words(option->get_description());
        for (std::string word; words >> word;) {
            if (line.size() + 1 + word.size() > LineLength || line.ends_with('\n')) {
                help += line.ends_with('\n') ? line : line + "\n";
                line.clear();
            }
            if (line.size() < DescriptionColumn) line.resize(DescriptionColumn, ' ');
            line += (line.ends_with(' ') ? "" : " ") + word;
        }
        return help + line + "\n";
    }

private:
    std::string m_usage;
};

std::string refuseEmpty(std::string& value) {
    return value.empty() ? "the value is empty" : "";
}

/// Throws UsageError for an option `--name=` without a value. The parser would use the next argument as the value.
void refuseMissingValues(int argumentCount, char** arguments) {
    for (int index = 1; index < argumentCount; ++index) {
        const std::string_view argument = arguments[index];
        if (argument == "--") return;
        if (argument.starts_with("--") && argument.find('=') == argument.size() - 1)
            throw UsageError(std::string(argument) + ": the value is empty");
    }
}

} // namespace

void parseCommandLine(CLI::App& app, const std::string& usage, int argumentCount, char** arguments) {
    app.formatter(std::make_shared<HelpFormatter>(usage));
    app.set_help_flag("-h,--help", "show this help");
    app.set_version_flag("--version", app.get_name() + " " EQ_VERSION, "show the version");
    for (CLI::Option* const option : app.get_options()) {
        if (option->get_items_expected_max() == 0) continue;
        // The check has no description, because the help would show the description.
        option->check(CLI::Validator(refuseEmpty, ""));
        if (option->get_items_expected_max() == 1) option->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    }
    refuseMissingValues(argumentCount, arguments);
    app.parse(argumentCount, arguments);
}

} // namespace eq
