// SPDX-License-Identifier: Apache-2.0
#include "desktop/display/key_symbols.h"

#include <QHash>
#include <QMap>
#include <QStringList>

namespace {

constexpr quint32 unicodeSymbols = 0x01000000;
constexpr ushort firstCode = 0xe000;

/** Symbols of the codes from U+E000 on, in their order; 0 where there is none. */
constexpr quint32 codeSymbols[] = {
    0,      0xff69, 0xff6a, 0xff08, 0xff09, 0xff0b, 0xff0d, 0xff8d, // Null ... Enter
    0xffe1, 0xffe3, 0xffe9, 0xff13, 0xff1b, 0x0020, 0xff55, 0xff56, // Shift ... PageDown
    0xff57, 0xff50, 0xff51, 0xff52, 0xff53, 0xff54, 0xff63, 0xffff, // End ... Delete
    0x003b, 0xffbd, 0xffb0, 0xffb1, 0xffb2, 0xffb3, 0xffb4, 0xffb5, // ; = 0 ... 5
    0xffb6, 0xffb7, 0xffb8, 0xffb9, 0xffaa, 0xffab, 0xffac, 0xffad, // 6 ... -
    0xffae, 0xffaf, 0,      0,      0,      0,      0,      0,      // . /
    0,      0xffbe, 0xffbf, 0xffc0, 0xffc1, 0xffc2, 0xffc3, 0xffc4, // F1 ... F7
    0xffc5, 0xffc6, 0xffc7, 0xffc8, 0xffc9, 0xffeb, 0,      0,      // F8 ... F12, Meta
    0xff2a, 0,      0,      0,      0,      0,      0,      0,      // Zenkaku
    0,      0,      0,      0,      0,      0,      0,      0,      //
    0xffe2, 0xffe4, 0xffea, 0xffec, 0xff9a, 0xff9b, 0xff9c, 0xff95, // right Shift ... Home
    0xff96, 0xff97, 0xff98, 0xff99, 0xff9e, 0xff9f,                 // ArrowLeft ... Delete
};
constexpr ushort codeCount = sizeof codeSymbols / sizeof codeSymbols[0];

const QMap<QString, quint32> &remoteKeys()
{
    static const QMap<QString, quint32> keys = {
        {"up", 0xff52},
        {"down", 0xff54},
        {"left", 0xff51},
        {"right", 0xff53},
        {"ok", 0xff0d},
        {"back", 0xff1b},
        {"exit", 0xff50},
        {"red", 0xffbe},
        {"green", 0xffbf},
        {"yellow", 0xffc0},
        {"blue", 0xffc1},
        {"channel up", 0xff55},
        {"channel down", 0xff56},
        {"favourites", 0xffc8},
        {"applications", 0xffc9},
        {"power", 0x1008ff2a},
        {"settings", 0},
        {"play", 'r'},
        {"pause", 'r'},
        {"stop", 's'},
        {"rewind", 'b'},
        {"forward", 'f'},
        {"menu", 0xffc6},
        {"0", '0'},
        {"1", '1'},
        {"2", '2'},
        {"3", '3'},
        {"4", '4'},
        {"5", '5'},
        {"6", '6'},
        {"7", '7'},
        {"8", '8'},
        {"9", '9'},
    };
    return keys;
}

} // namespace

quint32 symbolOf(const QString &key)
{
    const QVector<uint> points = key.toUcs4();
    if (points.size() != 1)
        return 0;
    const uint point = points.first();
    if (point >= firstCode && point < firstCode + codeCount)
        return codeSymbols[point - firstCode];
    if ((point >= 0x20 && point <= 0x7e) || (point >= 0xa0 && point <= 0xff))
        return point;
    switch (point) {
    case '\n':
    case '\r': return 0xff0d;
    case '\t': return 0xff09;
    case '\b': return 0xff08;
    default: return unicodeSymbols + point;
    }
}

Modifier modifierOfKey(const QString &key)
{
    switch (key.size() == 1 ? key.at(0).unicode() : 0) {
    case 0xe008:
    case 0xe050: return Modifier::Shift;
    case 0xe009:
    case 0xe051: return Modifier::Control;
    case 0xe00a:
    case 0xe052: return Modifier::Alt;
    case 0xe03d:
    case 0xe053: return Modifier::Meta;
    default: return Modifier::None;
    }
}

QString normalizedKey(const QString &key)
{
    static const QHash<ushort, ushort> sameKey = {
        {0xe050, 0xe008}, {0xe051, 0xe009}, {0xe052, 0xe00a}, {0xe053, 0xe03d}, {0xe054, 0xe00e},
        {0xe055, 0xe00f}, {0xe056, 0xe010}, {0xe057, 0xe011}, {0xe058, 0xe012}, {0xe059, 0xe013},
        {0xe05a, 0xe014}, {0xe05b, 0xe015}, {0xe05c, 0xe016}, {0xe05d, 0xe017}, {0xe00d, ' '},
        {0xe018, ';'},    {0xe019, '='},    {0xe024, '*'},    {0xe025, '+'},    {0xe026, ','},
        {0xe027, '-'},    {0xe028, '.'},    {0xe029, '/'},
    };
    if (key.size() != 1)
        return key;
    const ushort code = key.at(0).unicode();
    if (code >= 0xe01a && code <= 0xe023)
        return QString(QChar(ushort('0' + code - 0xe01a)));
    return QString(QChar(sameKey.value(code, code)));
}

std::optional<quint32> remoteKeySymbol(const QString &name)
{
    const auto key = remoteKeys().find(name);
    if (key == remoteKeys().end())
        return std::nullopt;
    return *key;
}

QStringList remoteKeyNames() { return remoteKeys().keys(); }

QSet<quint32> keptSymbols()
{
    QSet<quint32> result;
    for (quint32 symbol = 0x20; symbol <= 0x7e; ++symbol)
        result.insert(symbol);
    for (const quint32 symbol : codeSymbols)
        result.insert(symbol);
    result.remove(0);
    return result;
}

QVector<quint32> usualSymbols()
{
    QVector<quint32> result;
    for (quint32 symbol = 0x20; symbol <= 0x7e; ++symbol)
        result += symbol;
    for (const quint32 symbol : codeSymbols) {
        if (symbol)
            result += symbol;
    }
    for (const quint32 symbol : remoteKeys()) {
        if (symbol)
            result += symbol;
    }
    return result;
}
