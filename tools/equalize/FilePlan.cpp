#include "tools/equalize/FilePlan.h"

#include "tools/common/Errors.h"
#include "tools/common/NamedDescriptor.h"
#include "tools/common/OutputFile.h"
#include "tools/common/OutputStream.h"
#include "tools/common/Text.h"
#include "tools/equalize/sound/OutputFormat.h"

#include <algorithm>
#include <map>
#include <optional>
#include <system_error>

#include <unistd.h>

namespace eq {
namespace {

namespace fs = std::filesystem;

/// Returns the same path for all names of one file. The file need not exist.
fs::path identityOf(const fs::path& file) {
    std::error_code error;
    const fs::path absolute = fs::absolute(file, error);
    fs::path identity = fs::weakly_canonical(behindLinks(absolute), error);
    return error ? absolute.lexically_normal() : identity;
}

class Planner {
public:
    explicit Planner(const FileArguments& arguments)
        : m_arguments(arguments), m_outputFolder(identityOf(arguments.outputFolder)) {}

    std::vector<FileJob> jobs() {
        for (const std::string& file : m_arguments.files) addNamed(file);
        return std::move(m_jobs);
    }

private:
    void addNamed(const fs::path& file) {
        std::error_code ignored;
        if (!fs::is_directory(file, ignored))
            add(file, file.filename());
        else if (m_arguments.isRecursive)
            addFolder(file, file);
        else
            throw UsageError(file.string() + " is a folder; --recursive equalizes the files in it");
    }

    /// Adds the audio files of a folder and its subfolders in the order of their names. Does not follow links to
    /// folders.
    void addFolder(const fs::path& folder, const fs::path& root) {
        std::error_code error;
        std::vector<fs::directory_entry> entries;
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
            entries.push_back(*entry);
        if (error) {
            m_jobs.push_back({folder.string(), "", folder.string() + ": " + error.message()});
            return;
        }
        std::ranges::sort(entries);
        for (const fs::directory_entry& entry : entries) {
            const fs::path& path = entry.path();
            if (entry.is_directory(error) && !entry.is_symlink(error)) {
                if (!isOutputFolder(path)) addFolder(path, root);
            } else if (!entry.is_directory(error) && hasAudioExtension(path) && !isEarlierOutput(path)) {
                add(path, path.lexically_relative(root));
            }
        }
    }

    /// Adds one file. `place` is the path of its output below the output folder.
    void add(const fs::path& input, const fs::path& place) {
        fs::path output = m_arguments.outputFolder.empty() ? input : m_arguments.outputFolder / place;
        output.replace_filename(output.stem().string() + m_arguments.suffix + output.extension().string());
        std::error_code error;
        const std::uint64_t size = fs::file_size(input, error);
        m_jobs.push_back({input.string(), output.string(), "", error ? 1 : std::max<std::uint64_t>(size, 1)});
    }

    bool isOutputFolder(const fs::path& folder) const {
        return !m_arguments.outputFolder.empty() && identityOf(folder) == m_outputFolder;
    }

    /// Returns true for an output of an earlier run. Without an output folder, the outputs are beside their inputs.
    bool isEarlierOutput(const fs::path& file) const {
        std::string stem = file.stem().string();
        if (!m_arguments.outputFolder.empty() || !stem.ends_with(m_arguments.suffix)) return false;
        stem.resize(stem.size() - m_arguments.suffix.size());
        std::error_code ignored;
        return fs::exists(file.parent_path() / (stem + file.extension().string()), ignored);
    }

    const FileArguments& m_arguments;
    fs::path m_outputFolder;
    std::vector<FileJob> m_jobs;
};

/// Checks that the run neither overwrites one of its inputs nor writes a file twice. Throws UsageError.
class Conflicts {
public:
    explicit Conflicts(const std::vector<FileJob>& jobs) {
        for (const FileJob& job : jobs) {
            requireNoTerminal(job.input, "has no sound: name a file, or use '|' or '<'");
            m_readers.emplace(identityOf(job.input), &job);
        }
    }

    void addOutput(const FileJob& job, bool mayReplaceItsInput) {
        if (job.output.empty()) return;
        if (isStream(job.output)) {
            addStream(job);
            return;
        }
        const fs::path identity = identityOf(job.output);
        const auto reader = m_readers.find(identity);
        const bool isItsInput = identity == identityOf(job.input);
        if (isItsInput && !mayReplaceItsInput)
            throw UsageError(job.input + " would be replaced; --suffix TEXT or another --output-dir keeps it");
        if (reader != m_readers.end() && !isItsInput)
            throw UsageError(job.output + ", the output of " + job.input +
                             ", is an input, too; use another --output-dir or --suffix");
        const auto [writer, isNew] = m_writers.emplace(identity, job.input);
        if (!isNew)
            throw UsageError(writer->second + " and " + job.input + " have the same output: " + job.output +
                             "; equalize them in separate runs");
    }

    void addOtherOutput(const std::string& file) {
        if (file.empty()) return;
        if (m_isOutputTaken && isStandardOutput(file))
            throw UsageError(file + " is used twice: it receives the sound; name another file");
        if (isStream(file)) return;
        const fs::path identity = identityOf(file);
        if (m_readers.contains(identity) || !m_writers.emplace(identity, file).second)
            throw UsageError(file + " is used twice; name another file");
    }

private:
    static void requireNoTerminal(const std::string& place, const char* why) {
        const std::optional<int> number = descriptorNamedBy(place);
        if (number && isatty(*number) == 1) throw UsageError(place + " is a terminal, which " + why);
    }

    void addStream(const FileJob& job) {
        m_isOutputTaken = isStandardOutput(job.output);
        requireNoTerminal(job.output, "shows no sound: name a file, or use '|' or '>'");
        std::error_code ignored;
        if (fs::is_regular_file(job.input, ignored) && fs::equivalent(job.input, job.output, ignored))
            throw UsageError(job.input + " would be written while it is read; name another OUTPUT");
    }

    bool m_isOutputTaken = false;
    std::map<fs::path, const FileJob*> m_readers;
    std::map<fs::path, std::string> m_writers; ///< the name of the input for each output
};

} // namespace

void nameStandardStreams(FileArguments& arguments) {
    for (std::string& file : arguments.files) {
        if (file != "-") continue;
        if (arguments.areInputs())
            throw UsageError("- is standard input, which has no name for an output: use the form INPUT OUTPUT");
        file = &file == arguments.files.data() ? "/dev/stdin" : "/dev/stdout";
    }
}

std::vector<FileJob> planFiles(const FileArguments& arguments) {
    const std::vector<std::string>& files = arguments.files;
    if (arguments.suffix.find('/') != std::string::npos)
        throw UsageError("--suffix " + arguments.suffix + ": it must not contain '/'");
    std::vector<FileJob> jobs;
    if (arguments.areInputs()) {
        if (arguments.outputFolder.empty() && arguments.suffix.empty())
            throw UsageError("--recursive needs --output-dir or --suffix");
        if (files.empty()) throw UsageError("INPUT is missing; see --help");
        jobs = Planner(arguments).jobs();
    } else {
        if (files.size() > 2)
            throw UsageError(eq::quoted(files[2]) +
                             " is one file too many: several inputs need --output-dir or --suffix; see --help");
        if (files.size() < 2) throw UsageError("OUTPUT is missing; see --help");
        jobs.push_back({files[0], files[1]});
    }
    Conflicts conflicts(jobs);
    for (const FileJob& job : jobs) conflicts.addOutput(job, !arguments.areInputs());
    for (const std::string& file : arguments.otherOutputs) conflicts.addOtherOutput(file);
    return jobs;
}

} // namespace eq
