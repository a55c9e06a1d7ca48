# What `cmake --install` puts where, by components: the library as programs need it to run;
# development, the tool included; and debug, on request.
include(GNUInstallDirs)
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)  # installs what is there, without building the tests
set(PXB_INSTALL_INPUTS ${CMAKE_CURRENT_LIST_DIR}/install)

# pxb_install(<target> <description>): the library or a program, on Windows with a version resource.
# The debug information of release builds goes into <file>.debug. Debuggers find it by a link that
# stays in the file when that is stripped.
function(pxb_install target description)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL EXECUTABLE)
        set(component development)
        set(directory ${CMAKE_INSTALL_BINDIR})
        set(file_name ${target}.exe)
        set(file_type 1)
    else()
        set(component library)
        set(directory ${CMAKE_INSTALL_LIBDIR})
        set(file_name ${target}.dll)
        set(file_type 2)
    endif()
    install(TARGETS ${target} EXPORT PxbLibTargets
        RUNTIME COMPONENT ${component}
        LIBRARY COMPONENT ${component} NAMELINK_COMPONENT development
        ARCHIVE COMPONENT development
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

    if(WIN32)  # an own target, since flags of C++ mean other things to a resource compiler
        set(directory ${CMAKE_INSTALL_BINDIR})
        set(resource ${PROJECT_BINARY_DIR}/${target}_version.rc)
        configure_file(${PXB_INSTALL_INPUTS}/version.rc.in ${resource} @ONLY)
        add_library(${target}_version OBJECT ${resource})
        target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}_version>)
    endif()
    if(CMAKE_BUILD_TYPE STREQUAL Release)
        set(file $<TARGET_FILE:${target}>)
        add_custom_command(TARGET ${target} POST_BUILD VERBATIM
            COMMAND ${CMAKE_OBJCOPY} --only-keep-debug ${file} ${file}.debug
            COMMAND ${CMAKE_OBJCOPY} --add-gnu-debuglink=${file}.debug ${file})
        install(FILES ${file}.debug DESTINATION ${directory}/.debug
            COMPONENT debug EXCLUDE_FROM_ALL)
    endif()
endfunction()
