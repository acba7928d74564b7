// The command line of `lngcheck`, which checks language files for translators.

#include "tools/common/CommandLine.h"
#include "tools/common/Printable.h"
#include "tools/common/RunTool.h"
#include "tools/common/Text.h"
#include "tools/lngcheck/Checks.h"
#include "tools/lngcheck/Console.h"
#include "tools/lngcheck/Convert.h"
#include "tools/lngcheck/FileAccess.h"
#include "tools/lngcheck/Findings.h"
#include "tools/lngcheck/LanguageFile.h"
#include "tools/lngcheck/LanguageSet.h"
#include "tools/lngcheck/MergeOrder.h"
#include "tools/lngcheck/Pseudo.h"
#include "tools/lngcheck/Stats.h"
#include "wedge/Codepages.h"
#include "wedge/LanguageSelection.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <system_error>
#include <vector>

namespace eq {

namespace {

using namespace lngcheck;

struct Options {
    std::vector<std::string> paths;
    std::string reference;
    std::string pseudo;
    std::vector<std::string> init;    ///< the language id and the file
    std::vector<std::string> convert; ///< the file to read and the file to write
    std::optional<WORD> overrideLanguage;
    std::optional<WORD> systemLanguage;
    std::vector<std::string> keysToExplain;
    bool strict = false;
    bool quiet = false;
    bool json = false;
    bool stats = false;

    [[nodiscard]] bool wantsOrder() const { return overrideLanguage || systemLanguage || !keysToExplain.empty(); }
};

constexpr const char* Footer = R"(Each finding is a line 'file:line: text'. A fault means that a text or the whole
file is lost. A finding with 'warning:' is about a text that may look wrong.
The indented line below a finding is advice.

--override, --system and --explain need one FOLDER. They show which files the
library would read if it were installed in this folder. Without --override or
--system, they use the setting or the system language of this computer. The
language 0 means no language.

Exit codes: 0 no faults; 1 faults, or a file that cannot be read or written;
2 bad usage.

Examples:
  lngcheck Equalizer1031.lng
  lngcheck --init 1039 Equalizer1039.lng
  lngcheck --convert Equalizer1031.txt Equalizer1031.lng
  lngcheck --reference Equalizer1033.lng Equalizer1031.lng
  lngcheck --override 1031 --system 1036 --explain IDS_DB FOLDER
  lngcheck --reference Equalizer1033.lng --pseudo test/Equalizer1033.lng)";

void declare(CommandLine& commandLine, Options& options) {
    commandLine.option("PATH", options.paths, "language files, and folders with language files");
    commandLine.option("--reference", options.reference, "report keys that this file has and the other files lack")
        .value("FILE");
    commandLine
        .option("--pseudo", options.pseudo,
                "write the reference's texts longer and with accents, so that texts that are cut off or not translated "
                "become visible")
        .value("OUT");
    commandLine.option("--override", options.overrideLanguage, "show the order of reading for this language setting")
        .value("ID");
    commandLine.option("--system", options.systemLanguage, "show the order of reading for this system language")
        .value("ID");
    commandLine.option("--explain", options.keysToExplain, "show the file that contains the text of a key; repeatable")
        .value("KEY")
        .oneValueEach();
    commandLine
        .option("--init", options.init, "write a new language file with all keys, and the English texts as comments")
        .value("ID FILE")
        .values(2);
    commandLine
        .option("--convert", options.convert,
                "write a language file from a text in UTF-8, or such a text from a language file; the name that "
                "ends in .lng is the language file")
        .value("IN OUT")
        .values(2);
    commandLine.flag("--json", options.json, "write each finding as a JSON object on a separate line");
    commandLine.flag("--stats", options.stats, "write a table of the languages instead of the findings");
    commandLine.flag("--strict", options.strict, "treat warnings as faults");
    commandLine.flag("--quiet", options.quiet, "write no summary");
}

bool isFolder(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(toPath(path), ignored);
}

bool isLanguageFile(const std::filesystem::directory_entry& entry) {
    std::error_code ignored; // a loop of links counts as a file; reading it fails later
    return !entry.is_directory(ignored) && CompareNoCase(fromPath(entry.path().extension()), ".lng") == 0;
}

std::vector<std::string> languageFilesIn(const std::string& folder) {
    std::vector<std::string> paths;
    std::error_code error;
    std::filesystem::directory_iterator entry(toPath(folder), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        if (isLanguageFile(*entry)) paths.push_back(fromPath(entry->path()));
    }
    if (error) throw FileError(folder + ": " + error.message());
    if (paths.empty()) throw FileError(folder + ": there are no language files (*.lng) in this folder");
    std::ranges::sort(paths);
    return paths;
}

/// Returns the same path for all names of one file.
std::filesystem::path identityOf(const std::string& path) {
    std::error_code error;
    std::filesystem::path name = std::filesystem::canonical(toPath(path), error);
    return error ? std::filesystem::absolute(toPath(path), error).lexically_normal() : name;
}

/// Reads all files that the arguments name, each file once.
std::vector<LanguageFile> readAll(const std::vector<std::string>& arguments, Findings& findings) {
    std::vector<LanguageFile> files;
    std::set<std::filesystem::path> read;
    for (const std::string& argument : arguments) {
        const std::vector<std::string> paths =
            isFolder(argument) ? languageFilesIn(argument) : std::vector<std::string>{argument};
        for (const std::string& path : paths) {
            if (read.insert(identityOf(path)).second) files.push_back(readLanguageFile(path, findings));
        }
    }
    return files;
}

LanguageFile readReference(const std::string& path) {
    Findings findings;
    LanguageFile reference = readLanguageFile(path, findings);
    if (!reference.isBroken) return reference;
    findings.print();
    throw FileError(path + ": the reference has faults; correct them first");
}

void printSummary(const Options& options, std::size_t files, const Findings& findings) {
    if (options.quiet) return;
    std::printf(options.json ? "{\"files\": %zu, \"faults\": %zu, \"warnings\": %zu}\n"
                             : "files: %zu, faults: %zu, warnings: %zu\n",
                files, findings.count(Severity::Fault), findings.count(Severity::Warning));
}

void check(const Options& options, const std::optional<LanguageFile>& reference, Findings& findings) {
    const std::vector<LanguageFile> files = readAll(options.paths, findings);
    for (const LanguageFile& file : files) checkFile(file, findings);
    const std::vector<Language> languages = languagesOf(files);
    for (const Language& language : languages) {
        checkLanguage(language, findings);
        if (reference) checkAgainstReference(language, *reference, findings);
    }

    if (options.stats)
        printStats(languages, findings, options.json ? StatsForm::Json : StatsForm::Table);
    else if (options.json)
        findings.printJson();
    else
        findings.print();
    printSummary(options, files.size(), findings);
}

/// Returns a folder in the form of the library's own path: absolute, without a separator at the end.
std::string folderOfLibrary(const std::string& folder) {
    return fromPath(std::filesystem::canonical(toPath(folder)));
}

/// Returns the first fault of a file, with its line.
std::string firstFaultOf(const LanguageFile& file, const Findings& findings) {
    const auto isOfFile = [&](const Finding& finding) {
        return finding.file == file.path && finding.severity == Severity::Fault;
    };
    const Finding& fault = *std::ranges::find_if(findings.all(), isOfFile);
    return (fault.line == 0 ? "" : "line " + std::to_string(fault.line) + ": ") + fault.text;
}

void showOrder(const Options& options) {
    const auto steps =
        searchSteps(folderOfLibrary(options.paths.front()), options.overrideLanguage.value_or(g_language_override),
                    options.systemLanguage.value_or(ReadUiLanguage(uilanguage_default)));
    printSteps(steps);

    Findings reportedBefore;
    std::vector<LanguageFile> files;
    for (const SearchStep& step : steps) {
        for (const std::string& path : step.paths) files.push_back(readLanguageFile(path, reportedBefore));
    }
    const auto broken = std::ranges::find_if(files, &LanguageFile::isBroken);
    if (broken != files.end()) {
        std::printf("%s stops the library, which then reads no file\n"
                    "    The file is broken, and the effect does not load with it. Its first fault:\n    %s\n",
                    printable(broken->path).c_str(), printable(firstFaultOf(*broken, reportedBefore)).c_str());
        return;
    }
    for (const std::string& key : options.keysToExplain) explain(key, files);
}

void writePseudo(const Options& options, const LanguageFile& reference) {
    const std::string name = fileName(options.pseudo);
    if (!CodepageFitsLanguage(PseudoCodepage, ParseLanguageFileName(name, "", "lng")))
        throw UsageError("--pseudo: " + name + " names no language of code page " + std::to_string(PseudoCodepage) +
                         "; use, for instance, Pseudo1033.lng");
    writeContents(options.pseudo, pseudoLocalised(reference), Existing::Replaced);
}

void writeInit(const std::vector<std::string>& idAndFile) {
    constexpr int Largest = 0xFFFF;
    const std::optional<int> id = parseIndex(idAndFile.front());
    if (!id || *id > Largest) throw UsageError("--init: " + eq::quoted(idAndFile.front()) + " is not a language id");
    writeNewFile(static_cast<WORD>(*id), idAndFile.back());
}

void convert(const std::vector<std::string>& fromAndTo) {
    const std::string message = convertFile(fromAndTo.front(), fromAndTo.back());
    if (!message.empty()) std::printf("%s: %s\n", printable(fromAndTo.back()).c_str(), printable(message).c_str());
}

void checkUsage(const Options& options) {
    const bool writes = !options.pseudo.empty() || !options.init.empty() || !options.convert.empty();
    if (options.paths.empty() && !writes) throw UsageError("no files are given; see --help");
    if (!options.pseudo.empty() && options.reference.empty()) throw UsageError("--pseudo needs a --reference");
    if (options.wantsOrder() && (options.paths.size() != 1 || !isFolder(options.paths.front())))
        throw UsageError("--override, --system and --explain need one folder");
    if (options.wantsOrder() && options.json)
        throw UsageError("--json cannot be used with --override, --system or --explain: it shows findings only");
}

int run(const Options& options) {
    checkUsage(options);
    std::optional<LanguageFile> reference;
    if (!options.reference.empty()) reference = readReference(options.reference);

    if (!options.init.empty()) writeInit(options.init);
    if (!options.convert.empty()) convert(options.convert);
    Findings findings;
    if (!options.paths.empty()) check(options, reference, findings);
    if (options.wantsOrder()) showOrder(options);
    if (!options.pseudo.empty()) writePseudo(options, *reference);

    const std::size_t faults =
        findings.count(Severity::Fault) + (options.strict ? findings.count(Severity::Warning) : 0);
    return faults == 0 ? 0 : ExitFailure;
}

int runCommand(int argumentCount, char** arguments) {
    Options options;
    CommandLine commandLine("lngcheck", "Checks language files of the Parametric Equalizer.",
                            "  lngcheck [OPTIONS] PATH...", Footer);
    declare(commandLine, options);
    if (const auto exitCode = commandLine.parse(argumentCount, arguments)) return *exitCode;
    const int exitCode = run(options);
    if (std::fflush(stdout) != 0) throw systemError("standard output", errno);
    return exitCode;
}

} // namespace

} // namespace eq

template <typename Character>
int runMain(int argumentCount, Character** argumentTexts) {
    const eq::lngcheck::Console console;
    return eq::runTool("lngcheck", [&] {
        eq::lngcheck::Arguments arguments(argumentCount, argumentTexts);
        return eq::runCommand(arguments.count(), arguments.pointers());
    });
}

#ifdef _WIN32
/// Lets the runtime replace "*.lng" by file names, because the shells of Windows do not.
extern "C" int _dowildcard; // NOLINT(bugprone-reserved-identifier,readability-identifier-naming)
int _dowildcard = -1;       // NOLINT(bugprone-reserved-identifier,readability-identifier-naming)

int wmain(int argumentCount, wchar_t** arguments) {
    return runMain(argumentCount, arguments);
}
#else
int main(int argumentCount, char** arguments) {
    return runMain(argumentCount, arguments);
}
#endif
