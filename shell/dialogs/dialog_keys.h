// SPDX-License-Identifier: Apache-2.0
#pragma once

/** What a key of the remote does while a dialog is open. */
enum class DialogKey {
    Up,
    Down,
    Left,
    Right,
    PageUp, ///< scrolls a long text
    PageDown,
    Ok,
    Back,
    Erase, ///< takes the last character of a prompt's text
    Box,   ///< not the page's matter: stand-by, quitting, the receiver's applications
    Text,  ///< every other key: its text, if it has one, goes into a prompt
};

/**
 * The meaning of a Qt key code in a dialog. Back is Back under each of its codes, also where a text
 * is entered, so that a viewer can rely on it. Any thread.
 */
DialogKey dialogKeyOf(int key);
