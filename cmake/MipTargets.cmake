# How this project declares its programs and tests. Each function takes the sources after the name and the libraries
# after LIBS.

# A list of sources that got lost would make a program or its tests vanish without a word.
function(mip_need_sources name)
    if(NOT ARGN)
        message(FATAL_ERROR "${name} is declared without a source")
    endif()
endfunction()

# All Windows programs, without the tests.
add_custom_target(programs)

# A Windows program with a window: wide entry point, no console.
function(mip_windows_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBS")
    mip_need_sources(${name} ${arg_UNPARSED_ARGUMENTS})
    add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PRIVATE mip_options ${arg_LIBS})
    target_link_options(${name} PRIVATE -municode -mwindows)
    add_dependencies(programs ${name})
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
function(mip_native_test name)
    mip_declare_test(native_${name} native.${name}. ${ARGN})
endfunction()

# The same for a test that runs as a Windows program under Wine. These tests share one registry, one set of drives and
# one screen, so they run one after another. As the longest chain they come first.
function(mip_windows_test name)
    mip_declare_test(windows_${name} windows.${name}. ${ARGN} PROPERTIES RESOURCE_LOCK windows COST 200)
endfunction()

# The same for a test that needs the sample disc in drive D: and the sample workshop computer. Each gets a fresh one,
# with a screen of its own, so these run side by side with all others. They take longest and are started early.
function(mip_workshop_test name)
    mip_declare_test(windows_${name} windows.${name}. ${ARGN}
        EMULATOR ${PROJECT_SOURCE_DIR}/tools/computer-run.sh PROPERTIES COST 100)
endfunction()
