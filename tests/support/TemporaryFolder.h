#pragma once

// A new folder for a test, with blanks in its name. The destructor removes the folder and its content.

#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>

namespace eq {

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::random_device random;
        do {
            m_path = std::filesystem::temp_directory_path() / ("a test " + std::to_string(random()));
        } while (!std::filesystem::create_directory(m_path));
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

    /// Returns the path of a file in the folder, with the system's separators. `name` may contain folders, separated by
    /// '/'.
    [[nodiscard]] std::string path(const std::string& name) const { return (m_path / name).make_preferred().string(); }

    /// Writes a file with exactly these bytes, and creates the folders in `name`. Returns the path of the file. Throws
    /// std::runtime_error if the file cannot be written.
    std::string write(const std::string& name, std::string_view bytes) const {
        const std::filesystem::path file = m_path / name;
        std::filesystem::create_directories(file.parent_path());
        if (!(std::ofstream(file, std::ios::binary) << bytes).flush())
            throw std::runtime_error("cannot write " + file.string());
        return path(name);
    }

private:
    std::filesystem::path m_path;
};

} // namespace eq
