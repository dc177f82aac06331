// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/screen/video_plane.h"

#include <QString>

/** The receiver's own screen: a text over everything else, until a key is pressed. */
class Notice : public BlackWindow
{
    Q_OBJECT

public:
    Notice();

    /** Shows a text of one line or several, takes the keys, or goes away if the text is empty. */
    void setText(const QString &text);

signals:
    /** A key was pressed. */
    void keyPressed();

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QString m_text;
};

/** What stand-by looks like: black over everything else, without taking keys from anybody. */
class StandbyCover : public BlackWindow
{
    Q_OBJECT

public:
    StandbyCover();
};
