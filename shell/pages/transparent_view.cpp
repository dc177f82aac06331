// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/transparent_view.h"

#include <QWebView>

const char transparentStyle[] = "background: transparent;";

QWebView *createTransparentView(QWidget *parent)
{
    auto *view = new QWebView(parent);
    view->setAttribute(Qt::WA_TranslucentBackground);
    view->setWindowFlag(Qt::FramelessWindowHint);
    view->setStyleSheet(transparentStyle);
    return view;
}

void enable(QWebSettings *settings, std::initializer_list<QWebSettings::WebAttribute> attributes)
{
    for (const QWebSettings::WebAttribute attribute : attributes)
        settings->setAttribute(attribute, true);
}
