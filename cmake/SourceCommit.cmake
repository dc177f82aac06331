# SPDX-License-Identifier: Apache-2.0
# vesprel_source_commit(RESULT SOURCE): the commit of the sources in the top folder SOURCE, marked
# "-dirty" if they differ from it. An archive that git has made carries it in commit.txt; sources
# outside of a repository of their own that are no such archive have none.
function(vesprel_source_commit result source)
    set(commit "")
    execute_process(
        COMMAND git rev-parse --show-toplevel
        WORKING_DIRECTORY ${source}
        OUTPUT_VARIABLE top
        OUTPUT_STRIP_TRAILING_WHITESPACE
        ERROR_QUIET)
    file(REAL_PATH ${source} real) # As git names it, however the build came there.
    if(top STREQUAL real)
        execute_process(
            COMMAND git describe --always --dirty --exclude=*
            WORKING_DIRECTORY ${source}
            OUTPUT_VARIABLE commit
            OUTPUT_STRIP_TRAILING_WHITESPACE
            ERROR_QUIET)
    else()
        file(STRINGS ${source}/cmake/commit.txt archived REGEX "^[0-9a-f]+$")
        set(commit "${archived}")
    endif()
    set(${result} "${commit}" PARENT_SCOPE)
endfunction()
