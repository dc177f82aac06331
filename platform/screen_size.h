// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QSize>
#include <QString>

/** The size (px) that a text WIDTHxHEIGHT tells, each from 64 to 8192; invalid otherwise. */
QSize screenSize(const QString &text);
