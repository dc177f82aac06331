# SPDX-License-Identifier: Apache-2.0
# Warnings, sanitizers and file sizes for every target of this tree.
add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow)
# 32-bit boxes too: without it directories and files with large numbers look empty or missing.
add_compile_definitions(_FILE_OFFSET_BITS=64)
if(VESPREL_WERROR)
    add_compile_options(-Werror)
endif()

# What ships has only what it uses, exports nothing, and is the same in whichever folder it is built.
add_compile_options("$<$<CONFIG:Release>:-ffunction-sections;-fdata-sections;-fvisibility=hidden>"
                    "$<$<AND:$<CONFIG:Release>,$<COMPILE_LANGUAGE:CXX>>:-fvisibility-inlines-hidden>"
                    "$<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>"
                    "$<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>")
add_link_options("$<$<CONFIG:Release>:-Wl,--gc-sections>")

if(VESPREL_SANITIZE)
    # vptr asks for type information, which the engine's own widgets are built without.
    add_compile_options(-fsanitize=address,undefined -fno-sanitize=vptr
                        -fno-sanitize-recover=undefined
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

if(VESPREL_COVERAGE AND NOT VESPREL_FUZZ)
    add_compile_options(--coverage -fprofile-update=prefer-atomic)
    add_link_options(--coverage)
    add_library(vesprel_kept_counts OBJECT ${PROJECT_SOURCE_DIR}/tests/support/kept_counts.cpp)
    link_libraries(vesprel_kept_counts)
endif()

if(VESPREL_SANITIZE_THREADS)
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
    add_library(vesprel_qt_locks OBJECT ${PROJECT_SOURCE_DIR}/tests/support/qt_locks.cpp)
    target_link_libraries(vesprel_qt_locks PRIVATE Qt5::Core)
    link_libraries(vesprel_qt_locks)
endif()

if(VESPREL_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
    if(VESPREL_COVERAGE)
        add_compile_options(-fprofile-instr-generate -fcoverage-mapping)
        add_link_options(-fprofile-instr-generate)
    endif()
endif()
