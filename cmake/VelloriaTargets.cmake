# One way to make each kind of target.

# Language level, warnings and sanitizers of every target of ours.
function(velloria_options target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_KEYWORDS)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
        $<$<BOOL:${VELLORIA_WARNINGS_AS_ERRORS}>:-Werror>)
    # With this ccache can tell a precompiled header by its contents and answers for what includes it.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
    if(VELLORIA_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=all
            -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=address,undefined)
    endif()
endfunction()

# A library of src/NAME. USES names our own libraries, LINKS foreign targets, WINDOWS says that there are some in it.
function(velloria_library)
    cmake_parse_arguments(ARG "WINDOWS" "NAME" "USES;LINKS;SOURCES" ${ARGN})
    add_library(velloria_${ARG_NAME} STATIC ${ARG_SOURCES})
    target_include_directories(velloria_${ARG_NAME} PUBLIC ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR}/include)
    list(TRANSFORM ARG_USES PREPEND velloria_)
    target_link_libraries(velloria_${ARG_NAME} PUBLIC Qt6::Core ${ARG_USES} ${ARG_LINKS})
    set(headers <QByteArray> <QString> <QStringList> <functional> <memory> <optional> <vector>)
    if(ARG_WINDOWS)
        set_target_properties(velloria_${ARG_NAME} PROPERTIES AUTOMOC ON AUTOUIC ON)
        list(APPEND headers <QtWidgets>)
    endif()
    # All windows share one: it takes as long to make as several of their sources take to compile.
    if(ARG_WINDOWS AND NOT ARG_NAME STREQUAL desktop)
        target_precompile_headers(velloria_${ARG_NAME} REUSE_FROM velloria_desktop)
    else()
        target_precompile_headers(velloria_${ARG_NAME} PRIVATE ${headers})
    endif()
    velloria_options(velloria_${ARG_NAME})
endfunction()
