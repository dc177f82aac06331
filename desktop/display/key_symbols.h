// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QSet>
#include <QString>
#include <QVector>

#include <optional>

/** The modifier keys of the protocol; Shift and the others exist on the left and the right. */
enum class Modifier { None, Shift, Control, Alt, Meta };

/** X key symbol of a key of the protocol: a character, or one of the codes from U+E000 on. */
quint32 symbolOf(const QString &key);

Modifier modifierOfKey(const QString &key);

/** The name by which a key counts as held; the left and the right Shift are both "Shift". */
QString normalizedKey(const QString &key);

/**
 * X key symbol of a key of the remote by its name, such as "ok" or "red"; none: unknown name. 0 for
 * the settings key, which displays have no symbol for.
 */
std::optional<quint32> remoteKeySymbol(const QString &name);

/** All names of the remote's keys. */
QStringList remoteKeyNames();

/** Symbols whose keys stay where the keyboard has them. */
QSet<quint32> keptSymbols();

/** Symbols that every box's keyboard gets a key for. */
QVector<quint32> usualSymbols();
