# Compiler flags, for our own code only: GoogleTest stays uninstrumented, which makes sanitizer builds
# four times as fast.
add_library(pxb_flags INTERFACE)
target_compile_options(pxb_flags INTERFACE
    -Wall -Wextra -Wshadow -Wconversion -Wno-sign-conversion $<$<BOOL:${PXB_WERROR}>:-Werror>)

if(PXB_SANITIZE)
    target_compile_options(pxb_flags INTERFACE
        -fsanitize=${PXB_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
        $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=function>)  # programs in C could not link it
    add_link_options(-fsanitize=${PXB_SANITIZE})
    set(PXB_UNSANITIZED -fno-sanitize=all)  # for what takes longest to compile and risks nothing
endif()

if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(PXB_X86_32 ON)
endif()

# The library: no exceptions, doubles without fused multiply-add, on 32 bits a stack that callers may
# leave at 4 bytes, and a section for each function, so that the linker drops what nothing can reach.
add_library(pxb_library_flags INTERFACE)
target_compile_options(pxb_library_flags INTERFACE
    -ffp-contract=off -ffunction-sections -fdata-sections
    $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions> $<$<COMPILE_LANGUAGE:CXX>:-fno-rtti>)
if(WIN32)  # unwind tables refer to all functions, and this linker would keep them for that
    target_compile_options(pxb_library_flags INTERFACE -fno-asynchronous-unwind-tables)
endif()
if(PXB_X86_32)
    target_compile_options(pxb_library_flags INTERFACE -march=i686 -mstackrealign)
endif()

# Debug information of releases: the lines, and of the library's front ends also what they declare,
# which the check on the binary interface reads. It names no folder of the machine that builds.
set(PXB_DEBUG_LINES $<$<CONFIG:Release>:-g1> -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
set(PXB_DEBUG_ALL $<$<CONFIG:Release>:-g> -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
