# Settings of all targets (language, warnings, staged tree), and the functions with which a folder
# defines its library and its tests.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# The tree that the build runs from and that an installation copies.
set(ORVALO_STAGE "${CMAKE_BINARY_DIR}/stage")
# Test programs live in a tree of the same shape, so that they find the staged bundle as programs do.
set(ORVALO_TEST_STAGE "${CMAKE_BINARY_DIR}/test-stage")

# clang refuses a precompiled header in sources whose definitions differ.
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
endif()

# GCC takes a precompiled header only in sources with the same flags. So programs are compiled as
# libraries are, and everything with -pthread, which the toolkits' flags contain.
set(CMAKE_CXX_COMPILE_OPTIONS_PIE -fPIC)
add_compile_options(-pthread)

include(Ccache)

if(ORVALO_SANITIZE)
    # -g1: reports need lines; variables would take a third longer to compile.
    add_compile_options(-fsanitize=${ORVALO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all -O1 -g1)
    add_link_options(-fsanitize=${ORVALO_SANITIZE})
endif()

add_library(orvalo_options INTERFACE)
target_compile_options(orvalo_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    $<$<BOOL:${ORVALO_WARNINGS_AS_ERRORS}>:-Werror>
    -ffp-contract=off)
# With a sanitizer's code added, GCC 12 takes std::function's storage for uninitialised. The release
# build keeps this warning.
if(ORVALO_SANITIZE)
    target_compile_options(orvalo_options INTERFACE -Wno-maybe-uninitialized)
endif()
# GCC 12 warns that the thread sanitizer does not know fences; this project relies on none.
if(ORVALO_SANITIZE MATCHES "thread")
    target_compile_options(orvalo_options INTERFACE -Wno-tsan)
endif()
target_compile_definitions(orvalo_options INTERFACE "G_LOG_DOMAIN=\"Orvalo\"")
target_include_directories(orvalo_options INTERFACE "${CMAKE_SOURCE_DIR}")

# The headers of the C++ library that most sources include, compiled once for all libraries. A source
# still includes what it uses: the build also works with CMAKE_DISABLE_PRECOMPILE_HEADERS=ON.
file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/precompiled.cpp" CONTENT "")
add_library(orvalo_precompiled OBJECT "${CMAKE_BINARY_DIR}/precompiled.cpp")
target_link_libraries(orvalo_precompiled PRIVATE orvalo_options)
target_precompile_headers(orvalo_precompiled PRIVATE
    <algorithm> <array> <chrono> <filesystem> <functional> <memory> <mutex> <optional> <string>
    <thread> <vector>)

# orvalo_library(<name> PUBLIC <targets> PRIVATE <targets>): all sources of the folder as one library,
# which is built when something links it: the sanitizers need no windows.
function(orvalo_library name)
    cmake_parse_arguments(arg "" "" "PUBLIC;PRIVATE" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS *.cpp)
    add_library(${name} STATIC EXCLUDE_FROM_ALL ${sources})
    target_link_libraries(${name} PUBLIC orvalo_options ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
    target_precompile_headers(${name} REUSE_FROM orvalo_precompiled)
endfunction()

# orvalo_stage(<list> <file> <folder>): copies the file into the folder of the stage, and installs it there.
# Appends the copy to the list, on which a target depends.
function(orvalo_stage list file folder)
    cmake_path(GET file FILENAME name)
    set(copy "${ORVALO_STAGE}/${folder}/${name}")
    add_custom_command(
        OUTPUT "${copy}"
        COMMAND ${CMAKE_COMMAND} -E copy "${file}" "${copy}"
        DEPENDS "${file}" VERBATIM)
    install(FILES "${file}" DESTINATION "${folder}")
    set(${list} ${${list}} "${copy}" PARENT_SCOPE)
endfunction()

# orvalo_late_library(<library> <name> <targets>): the library calls the imported targets' libraries
# through LateLibrary. An empty module of this name is linked with them, so that the tools that compute
# a package's dependencies see them.
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

# orvalo_optimise(<sources>): compiles sources of this folder's tests for speed.
function(orvalo_optimise)
    set_source_files_properties(${ARGN} PROPERTIES
        COMPILE_OPTIONS -O2
        SKIP_PRECOMPILE_HEADERS ON)
endfunction()

# orvalo_test_library(<name> SOURCES ... LIBS <targets>): a library that several test programs share.
function(orvalo_test_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS" ${ARGN})
    add_library(${name} STATIC EXCLUDE_FROM_ALL ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC orvalo_options ${arg_LIBS} orvalo_testing)
    target_precompile_headers(${name} REUSE_FROM orvalo_testing)
endfunction()

# orvalo_test_plugin(<target> <source> <file> <library>): the file with the code of an LV2 plug-in or UI, in
# a bundle of the tests. The library is that of its headers.
function(orvalo_test_plugin target source file library)
    cmake_path(GET file PARENT_PATH folder)
    cmake_path(GET file STEM LAST_ONLY name)
    add_library(${target} MODULE "${source}")
    target_link_libraries(${target} PRIVATE orvalo_options ${library})
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME ${name} PREFIX "" CXX_VISIBILITY_PRESET hidden LIBRARY_OUTPUT_DIRECTORY "${folder}")
endfunction()

# orvalo_test(<name> SOURCES ... LIBS <targets> [LABELS ...] [TIMEOUT s] [ONE_BY_ONE] [NEEDS <programs>]):
# a GoogleTest program and its tests.
#   LABELS release-only: not under the sanitizers.
#   LABELS slow: over ten seconds; ./test --quick leaves it out.
#   LABELS long: takes long and catches little; only ./test --all runs it.
#   NEEDS: installed programs, such as a sound server; without one, CTest reports the test as not run.
#   TIMEOUT: of one CTest entry, 300 s unless stated.
#   ONE_BY_ONE: each test is a separate CTest entry, so that a crash or a hang costs that test alone,
#   and tests that wait run side by side. Otherwise, and under the sanitizers, whose programs start
#   slowly, the program is one entry. That suits many quick tests, and tests that need a display, which
#   takes longer to start than they run.
function(orvalo_test name)
    cmake_parse_arguments(arg "ONE_BY_ONE" "TIMEOUT" "SOURCES;LIBS;LABELS;NEEDS" ${ARGN})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 300)
    endif()
    if(ORVALO_SANITIZE AND "release-only" IN_LIST arg_LABELS)
        return()
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE orvalo_options ${arg_LIBS} orvalo_testing)
    target_precompile_headers(${name} REUSE_FROM orvalo_testing)
    list(REMOVE_ITEM arg_LABELS release-only)
    if(ORVALO_SANITIZE)
        set(arg_ONE_BY_ONE OFF)
    endif()
    set_target_properties(${name} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${ORVALO_TEST_STAGE}/bin"
        ORVALO_ONE_BY_ONE "${arg_ONE_BY_ONE}"
        ORVALO_LABELS "${arg_LABELS}"
        ORVALO_NEEDS "${arg_NEEDS}"
        ORVALO_TIMEOUT "${arg_TIMEOUT}")
    orvalo_add_to_ctest(${name} ${name} "${arg_LABELS}")
endfunction()

# orvalo_add_to_ctest(<entry> <program> <labels> [<variable>=<value>]): one run of a test program.
function(orvalo_add_to_ctest entry program labels)
    get_target_property(one_by_one ${program} ORVALO_ONE_BY_ONE)
    get_target_property(timeout ${program} ORVALO_TIMEOUT)
    get_target_property(needs ${program} ORVALO_NEEDS)
    set(properties TIMEOUT ${timeout})
    foreach(needed IN LISTS needs)
        find_program(ORVALO_FOUND_${needed} ${needed})
        if(NOT ORVALO_FOUND_${needed})
            list(APPEND properties DISABLED TRUE)
        endif()
    endforeach()
    if(labels)
        # CTest starts tests of a high cost first, so that they do not prolong the end of the run.
        list(APPEND properties LABELS "${labels}" COST 20)
    endif()
    if(ARGN)
        list(APPEND properties ENVIRONMENT "${ARGN}")
    endif()
    if(one_by_one)
        gtest_discover_tests(${program}
            TEST_PREFIX "${entry}."
            TEST_LIST "${entry}_list"
            DISCOVERY_MODE PRE_TEST
            DISCOVERY_TIMEOUT 60
            PROPERTIES ${properties})
    else()
        add_test(NAME ${entry} COMMAND ${program})
        set_tests_properties(${entry} PROPERTIES ${properties})
    endif()
endfunction()

# orvalo_test_in_process(<programs> [LABELS ...]): those tests once more, with effects in the
# program's own process. Once is enough under the sanitizers.
function(orvalo_test_in_process)
    cmake_parse_arguments(arg "" "" "LABELS" ${ARGN})
    if(ORVALO_SANITIZE)
        return()
    endif()
    foreach(program IN LISTS arg_UNPARSED_ARGUMENTS)
        get_target_property(labels ${program} ORVALO_LABELS)
        list(APPEND labels ${arg_LABELS})
        orvalo_add_to_ctest(${program}_in_process ${program} "${labels}"
            ORVALO_EFFECT_LOADING=in-process)
    endforeach()
endfunction()
