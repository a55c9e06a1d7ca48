// Standard input and output as streams of bytes. Windows would change line ends in them and take
// byte 26 for the end.
#pragma once
#include <cstdio>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#endif

namespace pxb::tool {

inline std::FILE* Binary(std::FILE* stream) {
#if defined(_WIN32)
    _setmode(_fileno(stream), _O_BINARY);
#endif
    return stream;
}

inline std::FILE* BinaryStdin() {
    return Binary(stdin);
}
inline std::FILE* BinaryStdout() {
    return Binary(stdout);
}

}  // namespace pxb::tool
