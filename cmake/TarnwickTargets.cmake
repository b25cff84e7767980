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

if(TARNWICK_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "TARNWICK_FUZZ: libFuzzer is part of clang; see the preset fuzz")
    endif()
    # Everything is instrumented; the fuzzer's main function goes into the targets alone.
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
    add_compile_definitions(TARNWICK_SANITIZED)
endif()

# --- Hardening -----------------------------------------------------------------------------------
# What makes a fault in a program harder to use, in every build: programs lie anywhere in memory, what
# the linker has resolved is read-only, stacks and standard functions notice when they are overrun.
# The sanitizers notice more, and the standard functions' checks need an optimizer, which tests lack.
# -fPIE, not -fPIC: functions that another library could replace would not be inlined.
add_compile_options(-fPIE -fstack-protector-strong -fstack-clash-protection)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i.86)$")
    add_compile_options(-fcf-protection)
endif()
add_link_options(-pie LINKER:-z,relro,-z,now,-z,noexecstack)
if(NOT TARNWICK_SANITIZE)
    add_compile_options($<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE>
                        $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-D_FORTIFY_SOURCE=2>)
    add_compile_definitions($<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:_GLIBCXX_ASSERTIONS>)
endif()

# --- Precompiled headers -------------------------------------------------------------------------
# Reading Qt's headers is more than half of a compilation (5 of 9 s measured), so what nearly every
# file reads is compiled once, for the windows and for the two kinds of tests. Each file still
# includes what it uses: CMAKE_DISABLE_PRECOMPILE_HEADERS=ON proves it.
set(TARNWICK_STANDARD_HEADERS <algorithm> <functional> <memory> <optional> <span> <string>
                              <string_view> <utility> <vector>)
# Tests are small beside what they test, which is optimized: optimizing them costs more than it gives.
set(TARNWICK_TEST_OPTIONS -O0 -U_FORTIFY_SOURCE)

# tarnwick_precompiled(NAME LIBRARIES library... HEADERS header... [OPTIONS option...])
function(tarnwick_precompiled name)
    cmake_parse_arguments(ARG "" "" "LIBRARIES;HEADERS;OPTIONS" ${ARGN})
    file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp CONTENT "" @ONLY)
    add_library(${name} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
    set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTORCC OFF)
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} tarnwick_warnings)
    tarnwick_qt_definitions(${name})
    target_compile_options(${name} PRIVATE ${ARG_OPTIONS})
    target_precompile_headers(${name} PRIVATE ${TARNWICK_STANDARD_HEADERS} ${ARG_HEADERS})
endfunction()

# Which of Qt's two libraries for the screen these libraries bring along: Qt6::Widgets, Qt6::Gui or
# none.
function(tarnwick_screen_library result)
    set(found)
    foreach(library ${ARGN})
        set(brought ${library})
        if(TARGET ${library} AND NOT library MATCHES "^Qt6::")
            get_target_property(brought ${library} TARNWICK_SCREEN_LIBRARY)
        endif()
        if(brought STREQUAL "Qt6::Widgets" OR (brought STREQUAL "Qt6::Gui" AND NOT found))
            set(found ${brought})
        endif()
    endforeach()
    set(${result} "${found}" PARENT_SCOPE)
endfunction()

# tarnwick_library(NAME SOURCES... HEADERS... PUBLIC... PRIVATE...)
# A static library of one folder, the room. HEADERS are what other rooms may include, by folder
# ("analysis/SourceText.h"): they lie in the room's include/ and each is compiled alone by the target
# all_verify_interface_header_sets. The other headers are the room's own, included by name alone.
# What is not linked cannot be included.
function(tarnwick_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;PUBLIC;PRIVATE" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    list(TRANSFORM ARG_HEADERS PREPEND include/)
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS include FILES ${ARG_HEADERS})
    # A room's public headers name those of its own that are public too.
    target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR} PUBLIC include)
    set_target_properties(${name} PROPERTIES TARNWICK_ROOM ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE tarnwick_warnings ${ARG_PRIVATE})
    tarnwick_qt_definitions(${name})
    tarnwick_screen_library(screen ${ARG_PUBLIC})
    set_target_properties(${name} PROPERTIES TARNWICK_SCREEN_LIBRARY "${screen}")
    if(screen STREQUAL "Qt6::Widgets")
        target_precompile_headers(${name} REUSE_FROM tarnwick_widget_headers)
    endif()
endfunction()

# tarnwick_forms(NAME FORM...)
# Headers from drawn windows. Not AUTOUIC: the build does not know what that writes, and when a form
# has changed it compiles what includes the header only the next time.
function(tarnwick_forms name)
    # What AUTOUIC has left in a build folder would be found first.
    file(GLOB old ${CMAKE_CURRENT_BINARY_DIR}/${name}_autogen/include/ui_*.h)
    if(old)
        file(REMOVE ${old})
    endif()
    list(TRANSFORM ARGN PREPEND ${PROJECT_SOURCE_DIR}/src/resources/)
    qt6_wrap_ui(headers ${ARGN})
    target_sources(${name} PRIVATE ${headers})
    target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
endfunction()

function(tarnwick_qt_definitions name)
    target_compile_definitions(${name} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_USE_QSTRINGBUILDER)
endfunction()

# tarnwick_see_rooms(NAME LIBRARY...)
# Lets a test or benchmark include what belongs to the rooms of these libraries alone.
function(tarnwick_see_rooms name)
    foreach(library ${ARGN})
        if(TARGET ${library})
            get_target_property(room ${library} TARNWICK_ROOM)
            if(room)
                target_include_directories(${name} PRIVATE ${room})
            endif()
        endif()
    endforeach()
endfunction()

# tarnwick_test(NAME SOURCES... LIBRARIES... [TIMEOUT seconds])
# A Qt Test program, run without a display and with settings of its own.
function(tarnwick_test name)
    cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LIBRARIES" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 300)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    # By hand, as AUTOMOC adds a compilation that is empty for a test, and a step of its own.
    set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTORCC OFF)
    qt6_generate_moc(${name}.cpp ${CMAKE_CURRENT_BINARY_DIR}/${name}.moc TARGET ${name})
    target_sources(${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${name}.moc)
    target_compile_options(${name} PRIVATE ${TARNWICK_TEST_OPTIONS})
    target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
    tarnwick_see_rooms(${name} ${ARG_LIBRARIES})
    target_link_libraries(${name} PRIVATE
        ${ARG_LIBRARIES} tarnwick_test_support Qt6::Test tarnwick_warnings)
    tarnwick_qt_definitions(${name})
    tarnwick_screen_library(screen ${ARG_LIBRARIES})
    if(screen STREQUAL "Qt6::Widgets")
        target_precompile_headers(${name} REUSE_FROM tarnwick_widget_test_headers)
    elseif(NOT screen)
        target_precompile_headers(${name} REUSE_FROM tarnwick_test_headers)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} ENVIRONMENT
        "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;XDG_CONFIG_HOME=${CMAKE_BINARY_DIR}/test-home/${name};XDG_DATA_HOME=${CMAKE_BINARY_DIR}/test-home/${name};XDG_CACHE_HOME=${CMAKE_BINARY_DIR}/test-home/${name};QT_ACCESSIBILITY=1;ASAN_OPTIONS=detect_leaks=0")
endfunction()
