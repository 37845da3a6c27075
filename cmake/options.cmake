# SPDX-License-Identifier: MIT
# What can be set at configuration time, and the compiler settings of every target.

if(APPLE AND CMAKE_SYSTEM_NAME STREQUAL "iOS")
    set(os_word "ios")
elseif(APPLE)
    set(os_word "macos")
else()
    string(TOLOWER "${CMAKE_SYSTEM_NAME}" os_word)
endif()
set(VIRELO_OS_WORD "${os_word}" CACHE STRING "Lower-case word of the target system")
set(VIRELO_MAKER_DOMAIN "virelo.example" CACHE STRING "Organisation domain of the settings")
# What desktops know the program by: desktop file, metainfo, icon and the window itself carry it.
string(REPLACE "." ";" labels "${VIRELO_MAKER_DOMAIN}")
list(REVERSE labels)
list(JOIN labels "." VIRELO_APP_ID)
string(APPEND VIRELO_APP_ID ".VireloApp")
set(VIRELO_DOWNLOAD_SERVER "update.virelo.example" CACHE STRING "Host name of the firmware download server")
set(VIRELO_DNS_SD "auto" CACHE STRING "Where the dns_sd calls come from: auto, system or avahi")
set_property(CACHE VIRELO_DNS_SD PROPERTY STRINGS auto system avahi)

option(VIRELO_BUILD_TESTS "Build the tests" ${PROJECT_IS_TOP_LEVEL})
option(VIRELO_BUILD_BENCH "Build the benchmarks" ${PROJECT_IS_TOP_LEVEL})
option(VIRELO_INSTALL "Make install rules and packages" ${PROJECT_IS_TOP_LEVEL})
option(VIRELO_BUILD_FUZZ "Build the fuzz targets (clang only)" OFF)
option(VIRELO_WERROR "Treat warnings as errors" OFF)
set(VIRELO_SANITIZE "" CACHE STRING "Value for -fsanitize=, empty for none")
option(VIRELO_COVERAGE "Instrument for gcov" OFF)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

# An interface target, so that a tree that includes this one keeps its own flags.
add_library(virelo_flags INTERFACE)
target_include_directories(virelo_flags INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_definitions(virelo_flags INTERFACE QT_DEPRECATED_WARNINGS QT_NO_FOREACH QT_MESSAGELOGCONTEXT
                           $<$<CONFIG:Release>:QT_NO_DEBUG>)
if(NOT MSVC)
    target_compile_options(virelo_flags INTERFACE -Wall -Wextra -Wpedantic -Wno-unused-parameter
                           $<$<BOOL:${VIRELO_WERROR}>:-Werror>)
endif()
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT VIRELO_SANITIZE)
    # What ships is hardened as distributions want it.
    target_compile_options(virelo_flags INTERFACE $<$<CONFIG:Release>:-fstack-protector-strong>)
    # Some compilers come with a value of their own.
    target_compile_options(virelo_flags INTERFACE $<$<CONFIG:Release>:-U_FORTIFY_SOURCE> $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
    target_link_options(virelo_flags INTERFACE $<$<CONFIG:Release>:LINKER:-z,relro,-z,now>)
endif()
if(VIRELO_SANITIZE)
    target_compile_options(virelo_flags INTERFACE -fsanitize=${VIRELO_SANITIZE} -fno-omit-frame-pointer)
    target_link_options(virelo_flags INTERFACE -fsanitize=${VIRELO_SANITIZE})
    if(VIRELO_SANITIZE MATCHES "undefined")
        target_compile_options(virelo_flags INTERFACE -fno-sanitize-recover=undefined)
    endif()
    if(VIRELO_SANITIZE MATCHES "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # The compiler's own remark that it does not model fences; it is no finding about this code.
        target_compile_options(virelo_flags INTERFACE -Wno-tsan)
    endif()
endif()
if(VIRELO_COVERAGE)
    # Workers and window count the same lines at the same time: without atomic counters some of it would be lost.
    target_compile_options(virelo_flags INTERFACE --coverage -fprofile-abs-path -fprofile-update=atomic)
    target_link_options(virelo_flags INTERFACE --coverage)
endif()
