# Entries of ctest for the tests of a program, made when it is linked.

# PREFIX.Suite for each suite. All its tests run in one process, since starting that takes longer than most tests; those of
# the suites in APART, which wait more than they work, in some of their own, several at once.
# PROPERTIES are those of every entry.
function(velloria_discover_tests target)
    cmake_parse_arguments(ARG "" "PREFIX" "APART;PROPERTIES" ${ARGN})
    get_target_property(emulator ${target} CROSSCOMPILING_EMULATOR)
    if(NOT emulator)
        set(emulator)
    endif()
    set(entries ${CMAKE_CURRENT_BINARY_DIR}/${target}_entries.cmake)
    add_custom_command(TARGET ${target} POST_BUILD
        BYPRODUCTS ${entries}
        COMMAND ${CMAKE_COMMAND} -D "PROGRAM=$<TARGET_FILE:${target}>" -D "EMULATOR=${emulator}" -D "ENTRIES=${entries}"
                -D "PREFIX=${ARG_PREFIX}" -D "APART=${ARG_APART}" -D "PROPERTIES=${ARG_PROPERTIES}"
                -D "SIDE_BY_SIDE=${VELLORIA_PYTHON};-B;${CMAKE_SOURCE_DIR}/tests/support/side_by_side.py"
                -P ${CMAKE_SOURCE_DIR}/cmake/list_tests.cmake
        VERBATIM)
    set(include ${CMAKE_CURRENT_BINARY_DIR}/${target}_include.cmake)
    file(WRITE ${include}
        "include(${entries} OPTIONAL RESULT_VARIABLE found)\n"
        "if(NOT found)\n"
        "  add_test(${ARG_PREFIX}.NOT_BUILT ${target}_NOT_BUILT)\n"
        "endif()\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${include})
endfunction()
