# The product: PxbLib.dll with its two import libraries, or libPxbLib.so.1, to which libPxbLib.so
# leads. Exactly the names in
# exports.def leave it; C++ and compiler run-time libraries are linked in.
set(PXB_EXPORTS ${PROJECT_SOURCE_DIR}/cmake/exports.def)

add_library(PxbLib SHARED)
target_link_libraries(PxbLib PRIVATE pxb_objects)
target_link_options(PxbLib PRIVATE -Wl,--gc-sections)
target_include_directories(PxbLib PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)
set_target_properties(PxbLib PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    LINKER_LANGUAGE CXX
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}
    RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}
    ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})

if(WIN32)
    target_sources(PxbLib PRIVATE ${PXB_EXPORTS})
    set_target_properties(PxbLib PROPERTIES PREFIX "" IMPORT_PREFIX "lib")
    find_program(PXB_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14 REQUIRED)
    add_custom_command(OUTPUT PxbLib.lib VERBATIM
        COMMAND ${PXB_DLLTOOL} -m i386 -k -d ${PXB_EXPORTS} -l PxbLib.lib
        DEPENDS ${PXB_EXPORTS})
    add_custom_target(microsoft_import_library ALL DEPENDS PxbLib.lib)
elseif(NOT PXB_SANITIZE)
    # The version script is written from the same list, so that the platforms cannot drift apart.
    file(STRINGS ${PXB_EXPORTS} exports REGEX "^ +Pxb")
    string(REGEX REPLACE " +" " " exports "${exports}")
    set(PXB_VERSION_SCRIPT ${PROJECT_BINARY_DIR}/exports.map)
    file(CONFIGURE OUTPUT ${PXB_VERSION_SCRIPT} CONTENT "{ global:${exports}; local: *; };\n")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PXB_EXPORTS})
    target_link_options(PxbLib PRIVATE -Wl,--version-script=${PXB_VERSION_SCRIPT} -Wl,--no-undefined
        -static-libstdc++ -static-libgcc)
    set_target_properties(PxbLib PROPERTIES LINK_DEPENDS ${PXB_VERSION_SCRIPT})
endif()
pxb_install(PxbLib "${PROJECT_DESCRIPTION}")
