// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWebSettings>

#include <initializer_list>

class QWebView;
class QWidget;

/** The style of everything that the video plane shows through. */
extern const char transparentStyle[];

/** A frameless view that lets the video below the window show through. The parent owns it. */
QWebView *createTransparentView(QWidget *parent);

/** Switches the attributes on. */
void enable(QWebSettings *settings, std::initializer_list<QWebSettings::WebAttribute> attributes);
