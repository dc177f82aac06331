// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QVector>

/**
 * The characters that a prompt offers to a remote without letters, row by row; every character is
 * one cell. The shifted grid has the same shape.
 */
QStringList characterRows(bool shifted);

/**
 * The cell of another row to move to: the one whose centre is nearest to `centre`; the first of two
 * that are equally near. `centres` are those of the row's cells, in px, and not empty.
 */
int nearestCell(const QVector<int> &centres, int centre);
