# Settings that every target of ours shares, and the two functions that make targets.

add_library(tarnwick_warnings INTERFACE)
target_compile_options(tarnwick_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual
    # At -O3 GCC 12 takes the pieces of  "text" + string  for overlapping copies (its bug 105651).
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-restrict>
    $<$<BOOL:${TARNWICK_WERROR}>:-Werror>)

if(TARNWICK_SANITIZE)
    # GCC 12 sees uninitialised values in instrumented code that is sound (std::variant).
    add_compile_options(-fsanitize=${TARNWICK_SANITIZE} -fno-sanitize-recover=all
                        -fno-omit-frame-pointer -Wno-maybe-uninitialized)
    add_link_options(-fsanitize=${TARNWICK_SANITIZE})
    add_compile_definitions(TARNWICK_SANITIZED)
endif()

# tarnwick_library(NAME SOURCES... HEADERS... PUBLIC... PRIVATE...)
# A static library of one folder. Its headers are included by folder ("analysis/SourceText.h") and
# each is compiled alone by the target all_verify_interface_header_sets.
function(tarnwick_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;PUBLIC;PRIVATE" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/src
                   FILES ${ARG_HEADERS})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE tarnwick_warnings ${ARG_PRIVATE})
    tarnwick_qt_definitions(${name})
endfunction()

function(tarnwick_qt_definitions name)
    target_compile_definitions(${name} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_USE_QSTRINGBUILDER)
endfunction()

# tarnwick_test(NAME SOURCES... LIBRARIES... [TIMEOUT seconds])
# A Qt Test program, run without a display and with settings of its own.
function(tarnwick_test name)
    cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LIBRARIES" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 300)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} Qt6::Test tarnwick_warnings)
    tarnwick_qt_definitions(${name})
    target_compile_definitions(${name} PRIVATE TARNWICK_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} ENVIRONMENT
        "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;XDG_CONFIG_HOME=${CMAKE_BINARY_DIR}/test-home/${name};XDG_DATA_HOME=${CMAKE_BINARY_DIR}/test-home/${name};XDG_CACHE_HOME=${CMAKE_BINARY_DIR}/test-home/${name};QT_ACCESSIBILITY=1;ASAN_OPTIONS=detect_leaks=0")
endfunction()
