// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "shell/keys/key_decision.h"

#include <QWebElement>

class QWebPage;

/**
 * Puts the key filter's questions to a page, which must live as long. A missing element counts as
 * not shown. GUI thread.
 */
class PageProbe : public BackQuestions
{
public:
    explicit PageProbe(const QWebPage &page);

    /** The current frame's element that has the focus, found depth first; null if none has it. */
    QWebElement focusedElement() const;

    bool launcherFrameShown() const override;
    PortalParts portalParts() const override;

private:
    const QWebPage &m_page;
};
