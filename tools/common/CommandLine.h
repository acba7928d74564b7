#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace eq {

/// The command line of a tool: its options, its help, and the parser. All tools have the same rules: an option with an
/// empty value is an error, and if an option with one value is repeated, the last value counts.
class CommandLine {
public:
    /// An option that was declared. Each function returns the option.
    class Option {
    public:
        explicit Option(CLI::Option* option) : m_option(option) {}

        /// Sets the name of the value in the help.
        Option& value(const std::string& name);
        /// Refuses numbers outside the range.
        Option& range(int lowest, int highest);
        Option& range(double lowest, double highest);
        /// Refuses values that are not in the list.
        Option& oneOf(const std::vector<std::string>& values);
        /// Makes the option take one value each time that it is given. A list of values is unlimited otherwise.
        Option& oneValueEach();
        /// Makes the option take exactly this many values.
        Option& values(int count);

    private:
        CLI::Option* m_option;
    };

    /// `usage` has one line for each form of the command. `footer` follows the options in the help. Adds `--help`,
    /// which prints 80 columns, and `--version`.
    CommandLine(const std::string& tool, const std::string& description, const std::string& usage,
                const std::string& footer = "");
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    /// Declares an option, or an argument if `names` does not begin with a hyphen. `parse` sets `value`, which is a
    /// number, a text, a std::optional of either, or a list of texts.
    template <typename Value>
    Option option(const std::string& names, Value& value, const std::string& description);

    /// Declares an option without a value. `parse` sets `value` to true if the option is given.
    void flag(const std::string& names, bool& value, const std::string& description);

    /// Parses the arguments. If they ask for the help or the version, prints it and returns the exit code. Throws
    /// UsageError.
    [[nodiscard]] std::optional<int> parse(int argumentCount, char** arguments);

private:
    std::unique_ptr<CLI::App> m_app;
};

} // namespace eq
