# How this project declares its programs and tests. Each function takes the sources after the name and the libraries
# after LIBS.

# A list of sources that got lost would make a program or its tests vanish without a word.
function(mip_need_sources name)
    if(NOT ARGN)
        message(FATAL_ERROR "${name} is declared without a source")
    endif()
endfunction()

# All Windows programs, without the tests, and the licence notices of what is linked into them.
add_custom_target(programs)
if(WIN32)
    set(notices ${PROJECT_BINARY_DIR}/NOTICES.txt)
    add_custom_command(OUTPUT ${notices}
        COMMAND ${PROJECT_SOURCE_DIR}/tools/notices.sh ${notices}
        DEPENDS ${PROJECT_SOURCE_DIR}/tools/notices.sh /var/lib/dpkg/status
        VERBATIM)
    add_custom_target(notices ALL DEPENDS ${notices})
    add_dependencies(programs notices)
endif()

# A Windows program with a window: wide entry point, no console.
function(mip_windows_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBS")
    mip_need_sources(${name} ${arg_UNPARSED_ARGUMENTS})
    add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PRIVATE mip_options ${arg_LIBS})
    target_link_options(${name} PRIVATE -municode -mwindows)
    add_dependencies(programs ${name})
endfunction()

# mip_shipped_program(ManualInstall): finishes a Windows program for the disc, in the build folder's root. Its symbols go
# into NAME.exe.debug beside it, which is kept and not shipped; what turns an address into a line stands in
# CONTRIBUTING.md. Preserving dates keeps the time out of the file headers, so that the same sources give the same bytes.
# Last the file is marked to run from memory, since the disc may be taken out while it runs.
function(mip_shipped_program name)
    find_package(Python3 REQUIRED COMPONENTS Interpreter)
    set(mark ${PROJECT_SOURCE_DIR}/cmake/run_from_memory.py)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR} MIP_SYMBOLS ON)
    set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${mark})
    add_custom_command(TARGET ${name} POST_BUILD
        COMMAND ${CMAKE_OBJCOPY} --preserve-dates --only-keep-debug ${name}.exe ${name}.exe.debug
        COMMAND ${CMAKE_OBJCOPY} --preserve-dates --strip-all --add-gnu-debuglink=${name}.exe.debug ${name}.exe
        COMMAND Python3::Interpreter ${mark} ${name}.exe
        WORKING_DIRECTORY ${PROJECT_BINARY_DIR}
        VERBATIM)
endfunction()

# A command line tool, for the build machine and for Windows.
function(mip_tool name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBS")
    mip_need_sources(${name} ${arg_UNPARSED_ARGUMENTS})
    add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PRIVATE mip_options ${arg_LIBS})
endfunction()

function(mip_declare_test executable prefix)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "EMULATOR" "LIBS;PROPERTIES")
    mip_need_sources(${executable} ${arg_UNPARSED_ARGUMENTS})
    add_executable(${executable} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${executable} PRIVATE mip_options ${arg_LIBS} GTest::gtest_main)
    if(arg_EMULATOR)
        set_target_properties(${executable} PROPERTIES CROSSCOMPILING_EMULATOR ${arg_EMULATOR})
    endif()
    gtest_discover_tests(${executable}
        TEST_PREFIX ${prefix}
        DISCOVERY_MODE PRE_TEST
        NO_PRETTY_VALUES
        DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 120 ${arg_PROPERTIES})
endfunction()

# mip_native_test(catalogue ATest.cpp LIBS mip_fakes): the executable native_catalogue, its tests "native.catalogue.*".
# The address sanitizer keeps less of each allocation, which makes it twice as fast; without these options it says more.
function(mip_native_test name)
    mip_declare_test(native_${name} native.${name}. ${ARGN}
        PROPERTIES ENVIRONMENT "ASAN_OPTIONS=malloc_context_size=1:quarantine_size_mb=16")
endfunction()

# The same for a test that runs as a Windows program under Wine. These tests share one registry, one set of drives and
# one screen, so they run one after another. As the longest chain they come first.
function(mip_windows_test name)
    mip_declare_test(windows_${name} windows.${name}. ${ARGN} PROPERTIES RESOURCE_LOCK windows COST 200)
endfunction()

# The same for a test that needs the sample disc in drive D: and the sample workshop computer. Each gets a fresh one,
# with a screen of its own, so these run side by side with all others. They take longest, mostly waiting, and start early.
function(mip_workshop_test name)
    mip_declare_test(windows_${name} windows.${name}. ${ARGN}
        EMULATOR ${PROJECT_SOURCE_DIR}/tools/computer-run.sh PROPERTIES COST 180)
endfunction()
