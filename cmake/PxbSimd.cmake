# Compiles kernel texts once per instruction set, each into its own namespace pxb::<target>.
# "pairwise" is the same text in plain integers: the tails of rows, and processors without SIMD.
set(PXB_SIMD_TARGETS pairwise mmx sse2 avx2 avx512)
set(PXB_SIMD_FLAGS_sse2 -msse2)
# Measured: tuning for a processor that has such registers gains 3 to 7 %, also on those of other
# makers, and without it GCC 12 spills pointers to mask registers on 32 bits. Expressions kept as
# written gain up to 27 % where there are eight registers, since substituting them spills.
set(PXB_SIMD_FLAGS_wide -mtune=icelake-server $<$<CXX_COMPILER_ID:GNU>:-fno-tree-ter>)
set(PXB_SIMD_FLAGS_avx2 -mavx2 ${PXB_SIMD_FLAGS_wide})
# GCC 12 warns within its own header.
set(PXB_SIMD_FLAGS_avx512 -mavx512vl -mavx512bw -mavx512vbmi -mavx512vnni
    -mprefer-vector-width=512 ${PXB_SIMD_FLAGS_wide}
    "$<$<CXX_COMPILER_ID:GNU>:-Wno-uninitialized;-Wno-maybe-uninitialized>")
if(PXB_X86_32)  # no SIMD register outside the kernels
    set(PXB_SIMD_FLAGS_baseline -mno-sse -mno-mmx)
    set(PXB_SIMD_FLAGS_mmx -mmmx -mno-sse)
    list(APPEND PXB_SIMD_FLAGS_sse2 -mfpmath=sse)
else()
    set(PXB_SIMD_FLAGS_mmx -mmmx)
endif()
set(PXB_SIMD_FLAGS_pairwise ${PXB_SIMD_FLAGS_baseline})

# pxb_compile_for(<library> <target>): its files become code of that instruction set. No link-time
# optimisation: it would let wide code into baseline functions.
function(pxb_compile_for library simd)
    string(TOUPPER ${simd} upper)
    target_include_directories(${library} PRIVATE ${PROJECT_SOURCE_DIR})
    target_compile_definitions(${library} PRIVATE PXB_TARGET=${simd} PXB_TARGET_${upper})
    target_link_libraries(${library} PRIVATE pxb_flags pxb_library_flags)
    target_compile_options(${library} PRIVATE ${PXB_SIMD_FLAGS_${simd}} -fno-lto)
endfunction()

# One object library per instruction set, linked into whatever links pxb_objects, whose own files
# get the baseline flags.
target_compile_options(pxb_objects PRIVATE ${PXB_SIMD_FLAGS_baseline})
foreach(simd IN LISTS PXB_SIMD_TARGETS)
    add_library(pxb_objects_${simd} OBJECT)
    pxb_compile_for(pxb_objects_${simd} ${simd})
    target_compile_options(pxb_objects_${simd} PRIVATE ${PXB_DEBUG_LINES})
    target_sources(pxb_objects INTERFACE $<TARGET_OBJECTS:pxb_objects_${simd}>)
    # What reads compile commands, as clang-tidy does, sees each text once: for the widest registers,
    # which come with the narrower ones.
    list(GET PXB_SIMD_TARGETS -1 widest)
    if(NOT simd STREQUAL widest)
        set_target_properties(pxb_objects_${simd} PROPERTIES EXPORT_COMPILE_COMMANDS OFF)
    endif()
endforeach()

# pxb_add_simd_kernels(<source>...): kernel texts of the folder at hand.
function(pxb_add_simd_kernels)
    foreach(simd IN LISTS PXB_SIMD_TARGETS)
        target_sources(pxb_objects_${simd} PRIVATE ${ARGN})
    endforeach()
endfunction()

# pxb_add_kernels_in_doubles(<source>...): for the baseline and, on 32 bits, where doubles are in x87
# registers, once more for SSE2 registers.
function(pxb_add_kernels_in_doubles)
    target_sources(pxb_objects PRIVATE ${ARGN})
    if(PXB_X86_32)
        target_sources(pxb_objects_sse2 PRIVATE ${ARGN})
    endif()
endfunction()
