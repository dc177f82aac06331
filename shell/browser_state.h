// SPDX-License-Identifier: Apache-2.0
#pragma once

/**
 * Whether the browser has something to quit and whether the box is off. The portal that is loaded
 * at the start counts as nothing to quit: until the receiver has announced a portal, the viewer
 * cannot leave. GUI thread.
 */
class BrowserState
{
public:
    bool isIdle() const { return m_idle; }

    /** The receiver has announced a portal. */
    void leaveIdle() { m_idle = false; }

    void enterIdle() { m_idle = true; }

    bool isPoweredOff() const { return m_poweredOff; }

    /** While the box is off, no key but the power key counts. */
    void setPoweredOff(bool off) { m_poweredOff = off; }

private:
    bool m_idle = true;
    bool m_poweredOff = false;
};
