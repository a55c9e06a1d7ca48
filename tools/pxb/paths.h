// File names as the program has them, UTF-8 on Windows and bytes elsewhere, as the system wants them.
#pragma once
#include <cstdio>
#include <filesystem>
#include <string>

namespace pxb::tool {

inline std::filesystem::path PathOf(const std::string& name) {
#if defined(_WIN32)
    return std::u8string(name.begin(), name.end());
#else
    return name;
#endif
}

inline std::string NameOf(const std::filesystem::path& path) {
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
}

inline std::FILE* OpenFile(const std::string& name, const char* mode) {
#if defined(_WIN32)
    return _wfopen(PathOf(name).c_str(), PathOf(mode).c_str());
#else
    return std::fopen(name.c_str(), mode);
#endif
}

}  // namespace pxb::tool
