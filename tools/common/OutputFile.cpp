#include "tools/common/OutputFile.h"

#include "tools/common/Errors.h"
#include "tools/common/OutputStream.h"
#include "tools/common/SpoolFile.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <sched.h>
#include <sys/stat.h>
#include <unistd.h>

namespace eq {
namespace {

/// The head of the list of all temporary files. Only the thread that holds `listInUse` may read or change the list.
OutputFile* firstTemporary = nullptr;
std::atomic_flag listInUse;

void takeList() {
    while (listInUse.test_and_set(std::memory_order_acquire)) sched_yield();
}

/// Holds the list of temporary files for one thread. Meanwhile this thread receives no signal, and a signal handler in
/// another thread waits. A signal handler therefore never sees a temporary file without its entry in the list.
class TemporaryListLock {
public:
    TemporaryListLock() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, &m_before);
        takeList();
    }
    ~TemporaryListLock() {
        listInUse.clear(std::memory_order_release);
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }
    TemporaryListLock(const TemporaryListLock&) = delete;
    TemporaryListLock& operator=(const TemporaryListLock&) = delete;

private:
    sigset_t m_before;
};

/// The permissions that new files do not get. `umask` returns the old mask only when it sets a new one, so the mask is
/// read before any other thread exists.
const mode_t CreationMask = [] {
    const mode_t mask = umask(0);
    umask(mask);
    return mask;
}();

void writeAll(int descriptor, std::string_view contents, const std::string& name) {
    while (!contents.empty()) {
        const ssize_t written = ::write(descriptor, contents.data(), contents.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) throw systemError(name, errno);
        contents.remove_prefix(static_cast<std::size_t>(written));
    }
}

/// Renames a file, but never replaces another file. Returns false and sets `errno` on failure. Some file systems do not
/// support RENAME_NOREPLACE, and others do not support hard links, so the function tries both.
bool renameToNewName(const char* from, const char* to) {
    if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    return link(from, to) == 0 && unlink(from) == 0;
}

/// Returns the permissions of the file at `place`, and sets the owner of that file on `descriptor`. If there is no
/// file, returns the permissions of a new file.
mode_t permissionsFor(const std::string& place, int descriptor) {
    struct stat replaced = {};
    if (stat(place.c_str(), &replaced) == 0) {
        // Usually only root may change the owner. If the file keeps another owner, it must not get the set-user-ID and
        // set-group-ID bits.
        if (fchown(descriptor, replaced.st_uid, replaced.st_gid) != 0) return replaced.st_mode & 0777;
        return replaced.st_mode & 07777;
    }
    return 0666 & ~CreationMask;
}

} // namespace

OutputFile::OutputFile(const std::filesystem::path& place, Replacing replacing)
    : m_place(place), m_replacing(replacing) {
    struct stat existing = {};
    const bool exists = stat(place.c_str(), &existing) == 0;
    if (exists && S_ISDIR(existing.st_mode)) throw systemError(place.string(), EISDIR);
    if (isStream(place)) {
        // A writer may seek back, for example to complete a header, and a stream cannot seek. The contents wait in a
        // temporary file.
        m_descriptor = openSpoolFile();
        return;
    }
    if (exists && replacing == Replacing::Refused) throw systemError(place.string(), EEXIST);
    m_place = behindLinks(place);
    // Do not replace a file without write permission, even if the permissions of its folder would allow it.
    if (exists && access(m_place.c_str(), W_OK) != 0) throw systemError(place.string(), errno);
    openTemporary();
}

OutputFile::~OutputFile() {
    removeTemporary();
}

void OutputFile::openTemporary() {
    const std::filesystem::path folder = m_place.has_parent_path() ? m_place.parent_path() : ".";
    std::string name = (folder / ".unfinished-XXXXXX").string();
    const TemporaryListLock lock;
    m_descriptor = FileDescriptor(mkostemp(name.data(), O_CLOEXEC));
    if (!m_descriptor) throw systemError(m_place.string(), errno);
    m_temporary.swap(name);
    m_next = std::exchange(firstTemporary, this);
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
    const TemporaryListLock lock;
    const bool isInPlace = m_replacing == Replacing::Refused ? renameToNewName(m_temporary.c_str(), m_place.c_str())
                                                             : std::rename(m_temporary.c_str(), m_place.c_str()) == 0;
    if (!isInPlace) throw systemError(m_place.string(), errno);
    leaveList();
}

void OutputFile::copyIntoPlace() {
    FileDescriptor target = openStream(m_place);
    std::array<char, 65536> buffer;
    off_t position = 0;
    for (;;) {
        const ssize_t count = pread(m_descriptor.get(), buffer.data(), buffer.size(), position);
        if (count < 0) throw systemError("a temporary file cannot be read", errno);
        if (count == 0) break;
        writeAll(target.get(), {buffer.data(), static_cast<std::size_t>(count)}, m_place.string());
        position += count;
    }
    if (!target.reset()) throw systemError(m_place.string(), errno);
}

void OutputFile::removeTemporary() {
    if (m_temporary.empty()) return;
    const TemporaryListLock lock;
    unlink(m_temporary.c_str());
    leaveList();
}

void OutputFile::leaveList() {
    OutputFile** link = &firstTemporary;
    while (*link != this) link = &(*link)->m_next;
    *link = m_next;
    m_temporary.clear();
}

// Calls only functions that a signal handler may call. Never releases the list: no other thread can create a file
// before the process ends, and a second signal cannot end the process before all files are removed.
void OutputFile::removeAllAndEnd(int signal) {
    takeList();
    for (const OutputFile* file = firstTemporary; file != nullptr; file = file->m_next)
        unlink(file->m_temporary.c_str());
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void OutputFile::write(const std::filesystem::path& place, std::string_view contents, Replacing replacing) {
    OutputFile file(place, replacing);
    file.write(contents);
    file.commit();
} // NOLINT(clang-analyzer-core.StackAddressEscape): the destructor removes the file from the list

std::filesystem::path behindLinks(std::filesystem::path place) {
    constexpr int MostLinks = 40;
    std::error_code ignored;
    for (int link = 0; link < MostLinks && std::filesystem::is_symlink(place, ignored); ++link) {
        const std::filesystem::path target = std::filesystem::read_symlink(place, ignored);
        // An absolute target replaces the folder of `place`.
        place = place.parent_path() / target;
    }
    return place;
}

void holdStandardStreams() {
    for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
        if (fcntl(number, F_GETFD) != -1) continue;
        // `open` returns the lowest free number, which is `number`.
        static_cast<void>(open("/dev/null", number == STDIN_FILENO ? O_WRONLY : O_RDONLY));
    }
}

void removeTemporariesOnSignals() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    struct sigaction action = {};
    action.sa_handler = OutputFile::removeAllAndEnd;
    sigfillset(&action.sa_mask);
    constexpr std::array Harmless = {SIGCHLD, SIGCONT, SIGTSTP, SIGTTIN, SIGTTOU, SIGURG, SIGWINCH};
    for (int signal = 1; signal <= SIGRTMAX; ++signal) {
        if (std::ranges::find(Harmless, signal) != Harmless.end()) continue;
        struct sigaction before = {};
        // Replace only default actions. `nohup` ignores a signal so that the process continues without its terminal,
        // and a crash reporter has its own handlers.
        if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_DFL)
            sigaction(signal, &action, nullptr);
    }
}

} // namespace eq
