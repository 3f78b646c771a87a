# SQLite::SQLite3, LibArchive::LibArchive and GTest::gtest_main: the system's libraries in the native build, static
# cross-compiled ones in the Windows build.
if(NOT WIN32)
    find_package(SQLite3 REQUIRED)
    find_package(LibArchive REQUIRED)
    find_package(GTest REQUIRED)
    return()
endif()

set(MIP_DEPENDENCIES "$ENV{MIP_DEPENDENCIES}" CACHE PATH "Folder that tools/build-dependencies.sh made")

add_library(SQLite::SQLite3 STATIC IMPORTED GLOBAL)
set_target_properties(SQLite::SQLite3 PROPERTIES
    IMPORTED_LOCATION ${MIP_DEPENDENCIES}/lib/libsqlite3.a
    INTERFACE_SYSTEM_INCLUDE_DIRECTORIES ${MIP_DEPENDENCIES}/include)

add_library(LibArchive::LibArchive STATIC IMPORTED GLOBAL)
set_target_properties(LibArchive::LibArchive PROPERTIES
    IMPORTED_LOCATION ${MIP_DEPENDENCIES}/lib/libarchive.a
    INTERFACE_SYSTEM_INCLUDE_DIRECTORIES ${MIP_DEPENDENCIES}/include
    INTERFACE_COMPILE_DEFINITIONS LIBARCHIVE_STATIC
    INTERFACE_LINK_LIBRARIES "z;bcrypt;ws2_32")

set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
foreach(name gtest gtest_main gmock)
    if(NOT TARGET GTest::${name})
        add_library(GTest::${name} ALIAS ${name})
    endif()
endforeach()
