#include "tools/common/CommandLine.h"

#include "tools/common/Errors.h"

#include <memory>
#include <sstream>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

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

CommandLine::Option& CommandLine::Option::value(const std::string& name) {
    m_option->type_name(name);
    return *this;
}

// A check has no description, because the help would show the description.

CommandLine::Option& CommandLine::Option::range(int lowest, int highest) {
    m_option->check(CLI::Range(lowest, highest).description(""));
    return *this;
}

CommandLine::Option& CommandLine::Option::range(double lowest, double highest) {
    m_option->check(CLI::Range(lowest, highest).description(""));
    return *this;
}

CommandLine::Option& CommandLine::Option::oneOf(const std::vector<std::string>& values) {
    m_option->check(CLI::IsMember(values).description(""));
    return *this;
}

CommandLine::Option& CommandLine::Option::oneValueEach() {
    m_option->allow_extra_args(false);
    return *this;
}

CommandLine::Option& CommandLine::Option::values(int count) {
    m_option->expected(count);
    return *this;
}

CommandLine::CommandLine(const std::string& tool, const std::string& description, const std::string& usage,
                         const std::string& footer)
    : m_app(std::make_unique<CLI::App>(description, tool)) {
    m_app->formatter(std::make_shared<HelpFormatter>(usage));
    m_app->footer(footer);
}

CommandLine::~CommandLine() = default;

template <typename Value>
CommandLine::Option CommandLine::option(const std::string& names, Value& value, const std::string& description) {
    return Option(m_app->add_option(names, value, description));
}

template CommandLine::Option CommandLine::option(const std::string&, std::string&, const std::string&);
template CommandLine::Option CommandLine::option(const std::string&, std::vector<std::string>&, const std::string&);
template CommandLine::Option CommandLine::option(const std::string&, std::optional<std::string>&, const std::string&);
template CommandLine::Option CommandLine::option(const std::string&, std::optional<int>&, const std::string&);
template CommandLine::Option CommandLine::option(const std::string&, std::optional<double>&, const std::string&);
template CommandLine::Option CommandLine::option(const std::string&, std::optional<unsigned short>&,
                                                 const std::string&);
template CommandLine::Option CommandLine::option(const std::string&, int&, const std::string&);
template CommandLine::Option CommandLine::option(const std::string&, std::size_t&, const std::string&);

void CommandLine::flag(const std::string& names, bool& value, const std::string& description) {
    m_app->add_flag(names, value, description);
}

std::optional<int> CommandLine::parse(int argumentCount, char** arguments) {
    m_app->set_help_flag("-h,--help", "show this help");
    m_app->set_version_flag("--version", m_app->get_name() + " " EQ_VERSION, "show the version");
    for (CLI::Option* const option : m_app->get_options()) {
        if (option->get_items_expected_max() == 0) continue;
        option->check(CLI::Validator(refuseEmpty, ""));
        if (option->get_items_expected_max() == 1) option->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    }
    refuseMissingValues(argumentCount, arguments);
    try {
        m_app->parse(argumentCount, arguments);
    } catch (const CLI::Success& helpOrVersion) {
        return m_app->exit(helpOrVersion);
    } catch (const CLI::Error& error) {
        throw UsageError(error.what());
    }
    return std::nullopt;
}

} // namespace eq
