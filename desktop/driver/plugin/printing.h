// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QJsonObject>

class QWebFrame;

/**
 * The frame's document on paper, as PDF: "width" and "height" of the paper and "top", "bottom",
 * "left" and "right" margins in cm, "scale", and whether it prints "background"s. Empty if nothing
 * of the paper is left to print on.
 */
QByteArray printToPdf(QWebFrame &frame, const QJsonObject &settings);
