// The command line of `lngcheck`: looks through language files, for those who write them.

#include "tools/common/CommandLine.h"
#include "tools/common/OutputFile.h"
#include "tools/common/Printable.h"
#include "tools/common/RunTool.h"
#include "tools/lngcheck/Checks.h"
#include "tools/lngcheck/Findings.h"
#include "tools/lngcheck/LanguageFile.h"
#include "tools/lngcheck/MergeOrder.h"
#include "tools/lngcheck/Pseudo.h"
#include "wedge/Codepages.h"
#include "wedge/LanguageSelection.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <CLI/CLI.hpp>

namespace eq {

namespace {

using namespace lngcheck;

struct Options {
    std::vector<std::string> paths;
    std::string reference;
    std::string pseudo;
    std::optional<WORD> overrideLanguage;
    std::optional<WORD> systemLanguage;
    std::vector<std::string> keysToExplain;
    bool strict = false;
    bool quiet = false;

    [[nodiscard]] bool wantsOrder() const { return overrideLanguage || systemLanguage || !keysToExplain.empty(); }
};

constexpr const char* Footer = R"(Each finding is a line 'file:line: text'. Faults lose a text or the whole file;
warnings, marked so, are about texts that may not look right.

--override, --system and --explain take one FOLDER, and tell what the library
would read if it were installed there. Without --override or --system the
setting or system language of this computer counts; 0 is none.

Exit codes: 0 no faults; 1 faults, or a file that cannot be read or written;
2 bad usage.

Examples:
  lngcheck Equalizer1031.lng
  lngcheck --reference Equalizer1033.lng Equalizer1031.lng
  lngcheck --override 1031 --system 1036 --explain IDS_DB FOLDER
  lngcheck --reference Equalizer1033.lng --pseudo test/Equalizer1033.lng)";

void declare(CLI::App& app, Options& options) {
    app.footer(Footer);
    app.add_option("PATH", options.paths, "language files, and folders whose language files are meant");
    app.add_option("--reference", options.reference, "report keys that this file has and others lack")
        ->type_name("FILE");
    app.add_option("--pseudo", options.pseudo,
                   "write the reference's texts with accents and longer, to see what is cut off or not translated")
        ->type_name("OUT");
    app.add_option("--override", options.overrideLanguage, "show the order of reading for this language setting")
        ->type_name("ID");
    app.add_option("--system", options.systemLanguage, "show the order of reading for this system language")
        ->type_name("ID");
    app.add_option("--explain", options.keysToExplain, "show where the text of a key is taken from; repeatable")
        ->type_name("KEY")
        ->allow_extra_args(false);
    app.add_flag("--strict", options.strict, "let warnings count as faults");
    app.add_flag("--quiet", options.quiet, "write no summary");
}

bool isFolder(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
}

bool isLanguageFile(const std::filesystem::directory_entry& entry) {
    return !entry.is_directory() && CompareNoCase(entry.path().extension().string(), ".lng") == 0;
}

std::vector<std::string> languageFilesIn(const std::string& folder) {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (isLanguageFile(entry)) paths.push_back(entry.path().string());
    }
    if (paths.empty()) throw FileError(folder + ": no language files here");
    std::ranges::sort(paths);
    return paths;
}

std::vector<LanguageFile> readAll(const std::vector<std::string>& arguments, Findings& findings) {
    std::vector<LanguageFile> files;
    for (const std::string& argument : arguments) {
        const std::vector<std::string> paths =
            isFolder(argument) ? languageFilesIn(argument) : std::vector<std::string>{argument};
        for (const std::string& path : paths) files.push_back(readLanguageFile(path, findings));
    }
    return files;
}

LanguageFile readReference(const std::string& path) {
    Findings findings;
    LanguageFile reference = readLanguageFile(path, findings);
    if (!reference.isBroken) return reference;
    findings.print();
    throw FileError(path + ": a reference must be without faults");
}

void check(const Options& options, const std::optional<LanguageFile>& reference, Findings& findings) {
    const std::vector<LanguageFile> files = readAll(options.paths, findings);
    for (const LanguageFile& file : files) {
        if (file.isReadable) checkFile(file, findings);
    }
    checkCompleteness(files, findings);
    if (reference) checkAgainstReference(files, *reference, findings);

    findings.print();
    if (!options.quiet)
        std::printf("files: %zu, faults: %zu, warnings: %zu\n", files.size(), findings.count(Severity::Fault),
                    findings.count(Severity::Warning));
}

/// As the library's own path is: absolute, without a separator at its end.
std::string folderOfLibrary(const std::string& folder) {
    return std::filesystem::canonical(folder).string();
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
        std::printf("%s stops the library, which reads no file then\n", printable(broken->path).c_str());
        return;
    }
    for (const std::string& key : options.keysToExplain) explain(key, files);
}

void writePseudo(const Options& options, const LanguageFile& reference) {
    const std::string name = std::filesystem::path(options.pseudo).filename().string();
    if (!CodepageFitsLanguage(PseudoCodepage, ParseLanguageFileName(name, "", "lng")))
        throw UsageError("--pseudo: " + name + " names no language of code page " + std::to_string(PseudoCodepage) +
                         "; take, for instance, Pseudo1033.lng");
    OutputFile::write(options.pseudo, pseudoLocalised(reference));
}

void checkUsage(const Options& options) {
    if (options.paths.empty() && options.pseudo.empty()) throw UsageError("no files are given; see --help");
    if (!options.pseudo.empty() && options.reference.empty()) throw UsageError("--pseudo needs a --reference");
    if (options.wantsOrder() && (options.paths.size() != 1 || !isFolder(options.paths.front())))
        throw UsageError("--override, --system and --explain take one folder");
}

int run(const Options& options) {
    checkUsage(options);
    std::optional<LanguageFile> reference;
    if (!options.reference.empty()) reference = readReference(options.reference);

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
    CLI::App app("Checks language files of the Parametric Equalizer.", "lngcheck");
    declare(app, options);
    try {
        parseCommandLine(app, "  lngcheck [OPTIONS] PATH...", argumentCount, arguments);
    } catch (const CLI::Success& helpOrVersion) {
        return app.exit(helpOrVersion);
    }
    const int exitCode = run(options);
    if (std::fflush(stdout) != 0) throw systemError("standard output", errno);
    return exitCode;
}

} // namespace

} // namespace eq

int main(int argumentCount, char** arguments) {
    eq::holdStandardStreams();
    eq::removeTemporariesOnSignals();
    return eq::runTool("lngcheck", [&] { return eq::runCommand(argumentCount, arguments); });
}
