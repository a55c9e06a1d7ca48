// A file before it has its name: a temporary one in the same folder, which Rename puts into the place
// of the target. Otherwise it goes away, also where a signal ends the program, and an older file of
// that name stays as it was.
#pragma once
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace pxb::tool {

class UnfinishedFile {
  public:
    // `name`: of the target as people wrote it, for the Errors that this throws.
    UnfinishedFile(const std::string& name, const std::filesystem::path& target);
    ~UnfinishedFile();

    // The stream to write to. Whoever takes it closes it before the file is renamed or goes away.
    std::FILE* Open();

    // The file takes over what an older one permitted to whom, never more.
    void Rename();

  private:
    struct Place;

    std::string name_;
    std::unique_ptr<Place> place_;
};

}  // namespace pxb::tool
