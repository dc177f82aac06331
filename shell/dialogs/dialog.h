// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/** A question that a page's script waits for. */
struct Dialog
{
    enum class Kind { Alert, Confirm, Prompt };

    Kind kind = Kind::Alert;
    QString origin;  ///< who asks, shown above the text
    QString text;    ///< plain text of the page, of any length
    QString initial; ///< for Prompt: the text to begin with
};

/** The default is what Back answers: nothing said, no, or no text. */
struct DialogAnswer
{
    bool accepted = false;
    QString text; ///< for an accepted Prompt; empty, not null
};
