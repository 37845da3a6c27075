# SPDX-License-Identifier: MIT
# Before the package is made: takes the compiler's notes out of the installed programs, which stripping leaves in.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
    return()
endif()
file(GLOB_RECURSE programs "${CPACK_TEMPORARY_DIRECTORY}/*/usr/bin/*" "${CPACK_TEMPORARY_DIRECTORY}/usr/bin/*")
if(NOT programs)
    message(FATAL_ERROR "no program lies under ${CPACK_TEMPORARY_DIRECTORY}")
endif()
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${programs}
                COMMAND_ERROR_IS_FATAL ANY)
