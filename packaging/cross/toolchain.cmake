# SPDX-License-Identifier: Apache-2.0
# Builds for another architecture, with Debian's compilers and a sysroot that packaging/cross/sysroot
# made: VESPREL_CROSS names its folder, build/cross/ARCHITECTURE, as a CMake or environment variable.
if(NOT VESPREL_CROSS)
    set(VESPREL_CROSS $ENV{VESPREL_CROSS})
endif()
# For the small projects by which CMake tries the compiler.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VESPREL_CROSS)
get_filename_component(architecture "${VESPREL_CROSS}" NAME)

if(architecture STREQUAL "armhf")
    set(CMAKE_SYSTEM_PROCESSOR armv7l)
    set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
    set(compiler arm-linux-gnueabihf)
elseif(architecture STREQUAL "arm64")
    set(CMAKE_SYSTEM_PROCESSOR aarch64)
    set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
    set(compiler aarch64-linux-gnu)
elseif(architecture STREQUAL "i386")
    set(CMAKE_SYSTEM_PROCESSOR i686)
    set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)
    set(compiler i686-linux-gnu)
else()
    message(FATAL_ERROR "VESPREL_CROSS is no folder of packaging/cross/sysroot: \"${VESPREL_CROSS}\"")
endif()

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${compiler}-gcc)
set(CMAKE_CXX_COMPILER ${compiler}-g++)
set(CMAKE_SYSROOT ${VESPREL_CROSS}/sysroot)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Not the libraries of this machine.
set(ENV{PKG_CONFIG_LIBDIR}
    ${CMAKE_SYSROOT}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})

if(architecture STREQUAL "i386")
    # This machine runs it by itself, with the sysroot's libraries.
    set(CMAKE_EXE_LINKER_FLAGS_INIT
        "-Wl,--dynamic-linker=${CMAKE_SYSROOT}/lib/ld-linux.so.2,--disable-new-dtags")
    foreach(folder IN ITEMS ${CMAKE_SYSROOT}/usr/lib/i386-linux-gnu ${CMAKE_SYSROOT}/lib/i386-linux-gnu
                            /usr/i686-linux-gnu/lib)
        string(APPEND CMAKE_EXE_LINKER_FLAGS_INIT ",-rpath,${folder}")
    endforeach()
else()
    set(CMAKE_CROSSCOMPILING_EMULATOR ${VESPREL_CROSS}/emulator)
endif()
