# SPDX-License-Identifier: MIT
# The core is an OBJECT library, so that the compiled resources register themselves in every program that links it.
# It is built once for the system's own OS word, and once more for "ios" where the tests ask for it; therefore each
# folder only names its sources, and virelo_add_core makes a library of all of them.

# virelo_core_sources(FILE...): sources of the calling folder that belong to the core.
function(virelo_core_sources)
    foreach(file IN LISTS ARGN)
        cmake_path(ABSOLUTE_PATH file)
        set_property(GLOBAL APPEND PROPERTY VIRELO_CORE_SOURCES "${file}")
    endforeach()
endfunction()

# virelo_add_core(TARGET OS_WORD): the library of all core sources, as built for a system with that word.
# Who links it also links one of virelo_dns_sd and virelo_fake_dns_sd.
function(virelo_add_core target os_word)
    get_property(sources GLOBAL PROPERTY VIRELO_CORE_SOURCES)
    add_library(${target} OBJECT ${sources})
    target_link_libraries(${target} PUBLIC virelo_flags virelo_dns_sd_headers Qt5::Core Qt5::Gui Qt5::Network
                          Qt5::Widgets)
    # An OBJECT library hands on its own objects only, so the resource tree is named as a source of who links the core.
    target_sources(${target} INTERFACE $<TARGET_OBJECTS:virelo_resources>)
    target_compile_definitions(${target} PRIVATE
                               VIRELO_OS_WORD="${os_word}"
                               VIRELO_MAKER_DOMAIN="${VIRELO_MAKER_DOMAIN}"
                               VIRELO_DOWNLOAD_SERVER="${VIRELO_DOWNLOAD_SERVER}")
endfunction()

# virelo_add_program(TARGET CORE): the program itself, on one of these libraries.
function(virelo_add_program target core)
    add_executable(${target} "${PROJECT_SOURCE_DIR}/app/main.cpp")
    target_link_libraries(${target} PRIVATE ${core} virelo_dns_sd)
    target_compile_definitions(${target} PRIVATE VIRELO_MAKER_DOMAIN="${VIRELO_MAKER_DOMAIN}"
                               VIRELO_APP_ID="${VIRELO_APP_ID}")
    virelo_tell_tsan_of_qt(${target})
endfunction()

# virelo_tell_tsan_of_qt(TARGET): lets the thread sanitizer see the locks of Qt, which is not built for it, in a program.
function(virelo_tell_tsan_of_qt target)
    if(NOT VIRELO_SANITIZE MATCHES "thread")
        return()
    endif()
    if(NOT TARGET virelo_qt_for_tsan)
        add_library(virelo_qt_for_tsan OBJECT "${PROJECT_SOURCE_DIR}/tests/fakes/qt_for_tsan.cpp")
        target_link_libraries(virelo_qt_for_tsan PUBLIC virelo_flags Qt5::Core ${CMAKE_DL_LIBS})
        set_target_properties(virelo_qt_for_tsan PROPERTIES AUTOMOC OFF)
    endif()
    target_link_libraries(${target} PRIVATE virelo_qt_for_tsan)
endfunction()
