#include "tools/common/OutputFile.h"

#include "tools/common/Errors.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace eq {
namespace {

constexpr std::array EndingSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

/// The name that the signal handler removes. One temporary file exists at a time.
std::array<char, 4096> temporaryToRemove;

/// While it lives, no ending signal is delivered: name and file change together.
class SignalsHeld {
public:
    SignalsHeld() {
        sigset_t held;
        sigemptyset(&held);
        for (const int signal : EndingSignals) sigaddset(&held, signal);
        sigprocmask(SIG_BLOCK, &held, &m_before);
    }
    ~SignalsHeld() { sigprocmask(SIG_SETMASK, &m_before, nullptr); }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

private:
    sigset_t m_before;
};

struct StreamCloser {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

// The handler is installed for one delivery, so the second one ends the process.
void removeAndEnd(int signal) {
    if (temporaryToRemove[0] != '\0') unlink(temporaryToRemove.data());
    std::raise(signal);
}

void writeAll(int descriptor, std::string_view contents, const std::string& name) {
    while (!contents.empty()) {
        const ssize_t written = ::write(descriptor, contents.data(), contents.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) throw systemError(name, errno);
        contents.remove_prefix(static_cast<std::size_t>(written));
    }
}

/// The place behind all symbolic links, which need not exist.
std::filesystem::path behindLinks(std::filesystem::path place) {
    constexpr int MostLinks = 40;
    std::error_code ignored;
    for (int link = 0; link < MostLinks && std::filesystem::is_symlink(place, ignored); ++link) {
        const std::filesystem::path target = std::filesystem::read_symlink(place, ignored);
        // An absolute target replaces the folder.
        place = place.parent_path() / target;
    }
    return place;
}

/// What a new file would get, or what the file has that is replaced.
mode_t permissionsFor(const std::string& place, int descriptor) {
    struct stat replaced = {};
    if (stat(place.c_str(), &replaced) == 0) {
        // Only root may give files away. For all others the file is theirs, as any new one.
        if (fchown(descriptor, replaced.st_uid, replaced.st_gid) != 0) return replaced.st_mode & 0777;
        return replaced.st_mode & 07777;
    }
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

} // namespace

OutputFile::OutputFile(const std::filesystem::path& place) : m_place(place) {
    struct stat existing = {};
    const bool exists = stat(place.c_str(), &existing) == 0;
    if (exists && S_ISDIR(existing.st_mode)) throw systemError(place.string(), EISDIR);
    if (exists && !S_ISREG(existing.st_mode)) {
        openSpool();
        return;
    }
    m_place = behindLinks(place);
    // A file that may not be written is not replaced either, though its folder would allow it.
    if (exists && access(m_place.c_str(), W_OK) != 0) throw systemError(place.string(), errno);
    openTemporary();
}

OutputFile::~OutputFile() {
    removeTemporary();
}

void OutputFile::openTemporary() {
    const std::filesystem::path folder = m_place.has_parent_path() ? m_place.parent_path() : ".";
    std::string name = (folder / ".unfinished-XXXXXX").string();
    if (name.size() >= temporaryToRemove.size()) throw systemError(m_place.string(), ENAMETOOLONG);
    const SignalsHeld held;
    m_descriptor = FileDescriptor(mkostemp(name.data(), O_CLOEXEC));
    if (!m_descriptor) throw systemError(m_place.string(), errno);
    m_temporary = name;
    temporaryToRemove[name.copy(temporaryToRemove.data(), temporaryToRemove.size() - 1)] = '\0';
}

/// Pipes cannot go back to write a header, so the contents wait in a file without a name.
void OutputFile::openSpool() {
    const Stream spool(std::tmpfile());
    if (spool) m_descriptor = FileDescriptor(fcntl(fileno(spool.get()), F_DUPFD_CLOEXEC, 0));
    if (!m_descriptor) throw systemError("a temporary file", errno);
}

void OutputFile::write(std::string_view contents) {
    writeAll(m_descriptor.get(), contents, m_place.string());
}

void OutputFile::commit() {
    if (m_temporary.empty()) {
        copyIntoPlace();
        return;
    }
    const int descriptor = m_descriptor.get();
    if (fchmod(descriptor, permissionsFor(m_place.string(), descriptor)) != 0 || fsync(descriptor) != 0 ||
        !m_descriptor.reset())
        throw systemError(m_place.string(), errno);
    const SignalsHeld held;
    if (std::rename(m_temporary.c_str(), m_place.c_str()) != 0) throw systemError(m_place.string(), errno);
    temporaryToRemove[0] = '\0';
    m_temporary.clear();
}

void OutputFile::copyIntoPlace() {
    FileDescriptor target(open(m_place.c_str(), O_WRONLY | O_CLOEXEC));
    if (!target) throw systemError(m_place.string(), errno);
    std::array<char, 65536> buffer;
    off_t position = 0;
    for (;;) {
        const ssize_t count = pread(m_descriptor.get(), buffer.data(), buffer.size(), position);
        if (count < 0) throw systemError("a temporary file", errno);
        if (count == 0) break;
        writeAll(target.get(), {buffer.data(), static_cast<std::size_t>(count)}, m_place.string());
        position += count;
    }
    if (!target.reset()) throw systemError(m_place.string(), errno);
}

void OutputFile::removeTemporary() {
    if (m_temporary.empty()) return;
    const SignalsHeld held;
    unlink(m_temporary.c_str());
    temporaryToRemove[0] = '\0';
    m_temporary.clear();
}

void OutputFile::write(const std::filesystem::path& place, std::string_view contents) {
    OutputFile file(place);
    file.write(contents);
    file.commit();
}

void removeTemporariesOnSignals() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    struct sigaction action = {};
    action.sa_handler = removeAndEnd;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : EndingSignals) {
        struct sigaction before = {};
        sigaction(signal, nullptr, &before);
        // A process started to outlive its terminal goes on.
        if (before.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);
    }
}

} // namespace eq
