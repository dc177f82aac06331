# SPDX-License-Identifier: Apache-2.0
# Warnings and sanitizers for every target of this tree.
add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(VESPREL_WERROR)
    add_compile_options(-Werror)
endif()

if(VESPREL_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
