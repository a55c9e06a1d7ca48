# An archive holds all but the debug information, in a folder of its name; Debian packages are one for
# each component.
if(CPACK_GENERATOR STREQUAL DEB)
    set(CPACK_COMPONENTS_GROUPING IGNORE)
else()
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
endif()
