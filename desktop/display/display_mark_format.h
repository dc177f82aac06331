// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/**
 * The first value of the client message by which the driver marks the end of input on the display;
 * the second is the mark's number.
 */
constexpr std::uint32_t displayMarkMagic = 0x56444d4b;
