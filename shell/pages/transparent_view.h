// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWebSettings>
#include <QWebView>

#include <initializer_list>

/** The style of everything that the video plane shows through. */
extern const char transparentStyle[];

/** A frameless view that lets the video below the window show through. GUI thread. */
class TransparentView : public QWebView
{
    Q_OBJECT

public:
    explicit TransparentView(QWidget *parent);

    /** Switches web settings of its page on. */
    void enable(std::initializer_list<QWebSettings::WebAttribute> attributes);

protected:
    /** Tab is the page's, once, whether or not anything in the page has the focus. */
    bool event(QEvent *event) override;

    /** The focus goes from one view to another by order only. */
    bool focusNextPrevChild(bool next) override;
};
