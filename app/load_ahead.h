// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <future>

/**
 * Loads what the main thread is going to need, while that one makes the application and its window:
 * the fonts' configuration, the TLS library, and the engine's media library with its list of
 * plugins, which is made anew wherever the one before was not kept. In this order, which is that of
 * their need; each is safe to be asked for meanwhile. What is not installed is left out.
 *
 * The result waits for its end when it goes. Until then variables of the environment may get new
 * values, but not be added: these libraries read it.
 */
[[nodiscard]] std::future<void> loadAhead();
