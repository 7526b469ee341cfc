// A result file that appears under its name only when it is complete.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <string>
#include <system_error>

class OutputFile {
  public:
    explicit OutputFile(std::filesystem::path path)
        : path_(std::move(path)), temporary_(path_.string() + ".part" + std::to_string(getpid())) {}
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile() {
        std::error_code ignored;
        std::filesystem::remove(temporary_, ignored);
    }

    // Where to write.
    const std::filesystem::path& temporary() const { return temporary_; }

    void commit() { std::filesystem::rename(temporary_, path_); }

  private:
    std::filesystem::path path_;
    std::filesystem::path temporary_;
};
