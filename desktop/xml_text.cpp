// SPDX-License-Identifier: Apache-2.0
#include "desktop/xml_text.h"

QString xmlText(const QString &text)
{
    QString result;
    for (int index = 0; index < text.size(); ++index) {
        const QChar character = text[index];
        const bool isPair = character.isHighSurrogate() && index + 1 < text.size() &&
                            text[index + 1].isLowSurrogate();
        if (isPair) {
            result += character;
            result += text[++index];
            continue;
        }
        const ushort code = character.unicode();
        const bool isAllowed = (code >= 0x20 && code < 0xfffe && !character.isSurrogate()) ||
                               code == '\n' || code == '\t';
        result += isAllowed ? character : QChar(QChar::ReplacementCharacter);
    }
    return result;
}
