# Language, warnings and definitions that every target of ours is compiled with.
add_library(mip_options INTERFACE)
target_compile_features(mip_options INTERFACE cxx_std_20)
target_include_directories(mip_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(mip_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    $<$<BOOL:${MIP_WERROR}>:-Werror>)
set(CMAKE_CXX_EXTENSIONS OFF)

if(WIN32)
    # 0x0601 is Windows 7, the oldest system that a workshop's computer has.
    target_compile_definitions(mip_options INTERFACE
        NOMINMAX WIN32_LEAN_AND_MEAN UNICODE _UNICODE _WIN32_WINNT=0x0601 WINVER=0x0601)

    # Every object has line numbers, the same in every checkout; only a program that keeps its symbols is linked with them.
    target_compile_options(mip_options INTERFACE -g1 -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
    add_link_options($<$<NOT:$<BOOL:$<TARGET_PROPERTY:MIP_SYMBOLS>>>:-s>)
endif()

if(MIP_SANITIZE)
    if(MIP_SANITIZE STREQUAL "address")
        set(sanitizers address,undefined)
    elseif(MIP_SANITIZE STREQUAL "thread")
        set(sanitizers thread)
    else()
        message(FATAL_ERROR "MIP_SANITIZE is address, thread or empty, not \"${MIP_SANITIZE}\"")
    endif()
    add_compile_options(-fsanitize=${sanitizers} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
    add_link_options(-fsanitize=${sanitizers})
endif()
