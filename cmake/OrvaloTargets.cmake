# What every target of the house shares: the language, the warnings, the staged tree, and the two
# ways in which a folder makes a library or a test.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# Running from the build and from an installation is the same: both are this tree.
set(ORVALO_STAGE "${CMAKE_BINARY_DIR}/stage")
# Test programs live in a tree of the same shape, so that a bundle found from a test is a bundle.
set(ORVALO_TEST_STAGE "${CMAKE_BINARY_DIR}/test-stage")

# A precompiled header fits only sources compiled as it was: programs as the libraries, ...
set(CMAKE_CXX_COMPILE_OPTIONS_PIE -fPIC)
# ... and everything with the threads that the toolkits' flags ask for.
add_compile_options(-pthread)

include(Ccache)

if(ORVALO_SANITIZE)
    # Their reports show lines and no variables, which would take a third longer to compile.
    add_compile_options(-fsanitize=${ORVALO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all -O1 -g1)
    add_link_options(-fsanitize=${ORVALO_SANITIZE})
endif()

add_library(orvalo_options INTERFACE)
target_compile_options(orvalo_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -ffp-contract=off)
# The sanitizers' own code makes GCC 12 take the C++ library's closures for uninitialised; the
# release build looks for what really is.
if(ORVALO_SANITIZE)
    target_compile_options(orvalo_options INTERFACE -Wno-maybe-uninitialized)
endif()
# GCC 12 cannot see fences for the thread sanitizer; nothing of ours relies on one.
if(ORVALO_SANITIZE MATCHES "thread")
    target_compile_options(orvalo_options INTERFACE -Wno-tsan)
endif()
target_compile_definitions(orvalo_options INTERFACE "G_LOG_DOMAIN=\"Orvalo\"")
target_include_directories(orvalo_options INTERFACE "${CMAKE_SOURCE_DIR}")

# The headers of the C++ library that most sources include, compiled once for all libraries. A source
# still includes what it uses: the build holds with CMAKE_DISABLE_PRECOMPILE_HEADERS=ON, too.
file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/precompiled.cpp" CONTENT "")
add_library(orvalo_precompiled OBJECT "${CMAKE_BINARY_DIR}/precompiled.cpp")
target_link_libraries(orvalo_precompiled PRIVATE orvalo_options)
target_precompile_headers(orvalo_precompiled PRIVATE
    <algorithm> <array> <chrono> <filesystem> <functional> <memory> <mutex> <optional> <string>
    <thread> <vector>)

# orvalo_library(<name> PUBLIC <targets> PRIVATE <targets>): the folder's sources as its one library.
function(orvalo_library name)
    cmake_parse_arguments(arg "" "" "PUBLIC;PRIVATE" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS *.cpp)
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC orvalo_options ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
    target_precompile_headers(${name} REUSE_FROM orvalo_precompiled)
endfunction()

# orvalo_late_library(<library> <name> <targets>): the library calls the imported targets' libraries
# through LateLibrary. They are linked with a module of this name, which has no code of its own: so
# the tools that compute a package's dependencies see them.
function(orvalo_late_library library name)
    add_library(${name} MODULE "${CMAKE_BINARY_DIR}/precompiled.cpp")
    target_link_libraries(${name} PRIVATE ${ARGN})
    target_link_options(${name} PRIVATE LINKER:--no-as-needed)
    set_target_properties(${name} PROPERTIES
        PREFIX "" LIBRARY_OUTPUT_DIRECTORY "${ORVALO_STAGE}/lib/orvalo")
    install(TARGETS ${name} LIBRARY DESTINATION lib/orvalo)
    foreach(target IN LISTS ARGN)
        target_include_directories(${library} SYSTEM PRIVATE
            $<TARGET_PROPERTY:${target},INTERFACE_INCLUDE_DIRECTORIES>)
    endforeach()
    add_dependencies(${library} ${name})
endfunction()

# The longest tests and their seconds: they start first, so that none of them is waited for at the end.
# CTest knows by itself what it has run once, which on a fresh clone is nothing.
set(ORVALO_LONG_TESTS
    app_test 90 app_endurance_test 60 file_test 50 bridge_misbehaving_test 40 bridge_host_test 30
    web_test 25 easing_window_test 25 defaults_tool_test 20 demos_files_test 20 view_support_test 10
    output_jack_test 15 play_test 15 ui_test 15)

function(orvalo_test_cost name program)
    list(FIND ORVALO_LONG_TESTS ${program} place)
    if(NOT place EQUAL -1)
        math(EXPR place "${place} + 1")
        list(GET ORVALO_LONG_TESTS ${place} seconds)
        set_tests_properties(${name} PROPERTIES COST ${seconds})
    endif()
endfunction()

# orvalo_optimise(<sources>): sources of this folder's tests that compute at length.
function(orvalo_optimise)
    set_source_files_properties(${ARGN} PROPERTIES
        COMPILE_OPTIONS -O2
        SKIP_PRECOMPILE_HEADERS ON)
endfunction()

# orvalo_test_library(<name> SOURCES ... LIBS <targets>): what several test programs share, compiled
# once.
function(orvalo_test_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC orvalo_options ${arg_LIBS} orvalo_testing)
    target_precompile_headers(${name} REUSE_FROM orvalo_testing)
endfunction()

# orvalo_test(<name> SOURCES ... LIBS <targets> [LABELS ...] [TIMEOUT s]): a GoogleTest program and
# its tests, one CTest entry for the program. Tests without the label "release-only" run under the
# sanitizers too.
function(orvalo_test name)
    cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 300)
    endif()
    if(ORVALO_SANITIZE AND "release-only" IN_LIST arg_LABELS)
        return()
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE orvalo_options ${arg_LIBS} orvalo_testing)
    target_precompile_headers(${name} REUSE_FROM orvalo_testing)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${ORVALO_TEST_STAGE}/bin")
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${arg_LABELS}")
    orvalo_test_cost(${name} ${name})
endfunction()

# orvalo_test_in_process(<names>): those tests once more, with effects in the program's own process
# rather than in theirs. Once is enough under the sanitizers.
function(orvalo_test_in_process)
    if(ORVALO_SANITIZE)
        return()
    endif()
    foreach(name IN LISTS ARGN)
        add_test(NAME ${name}_in_process COMMAND ${name})
        get_test_property(${name} TIMEOUT timeout)
        get_test_property(${name} LABELS labels)
        set_tests_properties(${name}_in_process PROPERTIES
            TIMEOUT ${timeout}
            LABELS "${labels}"
            ENVIRONMENT ORVALO_EFFECT_LOADING=in-process)
        orvalo_test_cost(${name}_in_process ${name})
    endforeach()
endfunction()
