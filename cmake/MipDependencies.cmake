# SQLite::SQLite3, LibArchive::LibArchive and GTest::gtest_main: the system's libraries in the native build, static
# cross-compiled ones in the Windows build.
if(NOT WIN32)
    find_package(SQLite3 REQUIRED)
    find_package(LibArchive REQUIRED)
    find_package(GTest REQUIRED)
    return()
endif()

# The script builds them at the first call and only prints their folder afterwards.
set(MIP_DEPENDENCIES "$ENV{MIP_DEPENDENCIES}" CACHE PATH "Folder with include/ and lib/; empty: the script's")
set(dependencies ${MIP_DEPENDENCIES})
if(NOT dependencies)
    execute_process(
        COMMAND ${PROJECT_SOURCE_DIR}/tools/build-dependencies.sh
        OUTPUT_VARIABLE dependencies
        OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ERROR_IS_FATAL ANY)
endif()
set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS tools/build-dependencies.sh)

add_library(SQLite::SQLite3 STATIC IMPORTED GLOBAL)
set_target_properties(SQLite::SQLite3 PROPERTIES
    IMPORTED_LOCATION ${dependencies}/lib/libsqlite3.a
    INTERFACE_INCLUDE_DIRECTORIES ${dependencies}/include)

add_library(LibArchive::LibArchive STATIC IMPORTED GLOBAL)
set_target_properties(LibArchive::LibArchive PROPERTIES
    IMPORTED_LOCATION ${dependencies}/lib/libarchive.a
    INTERFACE_INCLUDE_DIRECTORIES ${dependencies}/include
    INTERFACE_COMPILE_DEFINITIONS LIBARCHIVE_STATIC
    INTERFACE_LINK_LIBRARIES "z;bcrypt;ws2_32")

set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
foreach(name gtest gtest_main gmock)
    if(NOT TARGET GTest::${name})
        add_library(GTest::${name} ALIAS ${name})
    endif()
endforeach()
