// SPDX-License-Identifier: Apache-2.0
#include "enigma2/format_walker.h"

#include <cctype>
#include <cerrno>
#include <cstdlib>

int countedSize(char item)
{
    switch (item) {
    case 'b':
    case 'B': return 1;
    case 'h':
    case 'H': return 2;
    case 'i':
    case 'I':
    case 'l':
    case 'L':
    case 'f':
    case 'o':
    case 's': return 4;
    case 'q':
    case 'Q':
    case 'd': return 8;
    // Peers have always sized a time stamp at 12, although it packs to 14.
    case 't': return 12;
    default: return 0;
    }
}

bool FormatWalker::advance()
{
    for (; *m_next != '\0'; ++m_next) {
        const char character = *m_next;
        if (character == '!' || character == '>') {
            m_order = ByteOrder::Big;
        } else if (character == '<') {
            m_order = ByteOrder::Little;
        } else if (character == '=') {
            m_order = hostOrder;
        } else if (countedSize(character) > 0) {
            m_item = character;
            takeCount();
            ++m_next;
            return true;
        } else if (std::isdigit(static_cast<unsigned char>(character))) {
            if (m_digitCount < m_digits.size() - 1)
                m_digits[m_digitCount++] = character;
        } else {
            m_failed = true;
            return false;
        }
    }
    return false;
}

void FormatWalker::takeCount()
{
    m_count = 1;
    if (m_digitCount == 0)
        return;
    m_digits[m_digitCount] = '\0';
    errno = 0;
    m_count = std::strtoll(m_digits.data(), nullptr, 10);
    // A count out of range stays pending for the next item; formats rely on the full walk.
    if (errno != ERANGE)
        m_digitCount = 0;
}
