# SPDX-License-Identifier: Apache-2.0
# Run by each build with SOURCE, the top folder, and HEADER: writes the commit that is built to the
# header, if it changed. Sources outside of a repository of their own have none.
cmake_policy(VERSION 3.21)

function(git result)
    execute_process(
        COMMAND git ${ARGN}
        WORKING_DIRECTORY ${SOURCE}
        OUTPUT_VARIABLE output
        OUTPUT_STRIP_TRAILING_WHITESPACE
        ERROR_QUIET)
    set(${result} "${output}" PARENT_SCOPE)
endfunction()

set(commit "")
git(top rev-parse --show-toplevel)
if(top STREQUAL SOURCE)
    git(commit describe --always --dirty --exclude=*)
endif()
file(CONFIGURE OUTPUT ${HEADER} CONTENT "#define VESPREL_BUILD_COMMIT \"@commit@\"\n" @ONLY)
