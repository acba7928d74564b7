#pragma once

#include "tools/equalize/sound/FileBytes.h"

#include <exception>

#include <tiostream.h>

namespace eq {

/// Lets TagLib read and write a file. TagLib cannot report system errors, so the stream keeps the first one.
class TagStream : public TagLib::IOStream {
public:
    explicit TagStream(const FileBytes& file) : m_file(file) {}

    /// Throws the first failure, if there was one.
    void requireSuccess() const {
        if (m_failure) std::rethrow_exception(m_failure);
    }

    [[nodiscard]] TagLib::FileName name() const override { return m_file.name().c_str(); }
    TagLib::ByteVector readBlock(unsigned long length) override;
    void writeBlock(const TagLib::ByteVector& data) override;
    void insert(const TagLib::ByteVector& data, unsigned long start, unsigned long replace) override;
    void removeBlock(unsigned long start, unsigned long length) override;
    [[nodiscard]] bool readOnly() const override { return false; }
    [[nodiscard]] bool isOpen() const override { return true; }
    void seek(long offset, Position origin) override;
    [[nodiscard]] long tell() const override { return m_position; }
    long length() override;
    void truncate(long length) override;

private:
    template <typename Access>
    void attempt(const Access& access);

    FileBytes m_file;
    long m_position = 0;
    std::exception_ptr m_failure;
};

} // namespace eq
