// A file, or standard input, read once from front to back. Every failure is an Error that names it.
#pragma once
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pxb::tool {

class InputFile {
  public:
    explicit InputFile(const std::string& path);  // "-" is standard input

    const std::string& name() const { return name_; }

    // Up to `bytes`, at most 64, of what comes next; they stay unread.
    std::string_view Peek(std::size_t bytes);
    bool AtEnd() { return Peek(1).empty(); }

    std::optional<char> Get();
    // Exactly `bytes`; `field` names what they are, for the message where the file ends early.
    void Read(void* to, std::int64_t bytes, std::string_view field);
    // At least one, at most `bytes`.
    std::size_t ReadSome(void* to, std::size_t bytes, std::string_view field);
    std::string ReadLine(std::string_view field);  // without its end, at most 4096 bytes
    void Skip(std::int64_t bytes, std::string_view field);

    // Refuses an input that has fewer bytes left, before anybody takes memory for what it claims to
    // hold. Pipes are read ahead for that, until as much has been read once.
    void Require(std::int64_t bytes, std::string_view field);
    std::optional<std::int64_t> remaining() const { return remaining_; }

  private:
    struct Closer {
        void operator()(std::FILE* file) const {
            if (file != stdin) std::fclose(file);
        }
    };

    std::size_t Take(void* to, std::size_t bytes);
    void Fill();
    void CheckEnough(std::int64_t found, std::int64_t needed, std::string_view field) const;

    std::string name_;
    std::unique_ptr<std::FILE, Closer> file_;
    std::optional<std::int64_t> remaining_;  // regular files
    std::vector<char> buffer_;
    std::size_t next_ = 0, end_ = 0;  // of the unread part of the buffer
    std::int64_t taken_ = 0;
};

}  // namespace pxb::tool
