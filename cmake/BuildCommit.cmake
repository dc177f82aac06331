# SPDX-License-Identifier: Apache-2.0
# Run by each build with SOURCE, the top folder, and HEADER: writes the commit that is built to the
# header, if it changed.
cmake_policy(VERSION 3.21)
include(${CMAKE_CURRENT_LIST_DIR}/SourceCommit.cmake)

vesprel_source_commit(commit ${SOURCE})
file(CONFIGURE OUTPUT ${HEADER} CONTENT "#define VESPREL_BUILD_COMMIT \"@commit@\"\n" @ONLY)
