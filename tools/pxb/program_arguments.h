// The arguments of the program, in UTF-8 on Windows too, where main() gets those of its code page.
#pragma once
#include <string>
#include <vector>

#if defined(_WIN32)
#include <windows.h>

#include <shellapi.h>

#include "paths.h"
#endif

namespace pxb::tool {

inline std::vector<std::string> ProgramArguments([[maybe_unused]] int argc,
                                                 [[maybe_unused]] char** argv) {
#if defined(_WIN32)
    std::vector<std::string> arguments;
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 0; i < count; ++i) arguments.push_back(NameOf(wide[i]));
    LocalFree(wide);
    return arguments;
#else
    return {argv, argv + argc};
#endif
}

}  // namespace pxb::tool
