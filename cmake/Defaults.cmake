# SPDX-License-Identifier: Apache-2.0
# What a configure means that says nothing else. A box's paths are exact, so its prefix is /usr.
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    if(VESPREL_DESKTOP)
        set(type RelWithDebInfo)
    else()
        set(type Release)
    endif()
    set(CMAKE_BUILD_TYPE ${type} CACHE STRING "Release, RelWithDebInfo or Debug" FORCE)
endif()
if(CMAKE_INSTALL_PREFIX_INITIALIZED_TO_DEFAULT AND NOT VESPREL_DESKTOP)
    set(CMAKE_INSTALL_PREFIX /usr CACHE PATH "Prefix of installed files" FORCE)
endif()
