# SPDX-License-Identifier: MIT
# Makes the cores shared libraries, which the tests load as they start: a change then costs one compile and one link in
# place of two hundred links. For a build directory that is used for nothing else:
#     -DCMAKE_PROJECT_INCLUDE=<this file>
set(CMAKE_LINK_DEPENDS_NO_SHARED ON)

function(add_library name type)
    if(name MATCHES "^virelo_core" AND type STREQUAL "OBJECT")
        set(type SHARED)
    endif()
    _add_library(${name} ${type} ${ARGN})
endfunction()
