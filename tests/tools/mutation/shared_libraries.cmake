# SPDX-License-Identifier: Apache-2.0
# For -DCMAKE_PROJECT_INCLUDE: each static library of the tree becomes a shared one, so that a test
# runs with another one in its place without being linked again. Compiled like the static ones.
function(add_library name)
    list(TRANSFORM ARGN REPLACE "^STATIC$" "SHARED")
    _add_library(${name} ${ARGN})
    get_target_property(type ${name} TYPE)
    if(type STREQUAL "SHARED_LIBRARY")
        set_target_properties(${name} PROPERTIES DEFINE_SYMBOL "")
    endif()
endfunction()
