// SPDX-License-Identifier: Apache-2.0
#include "desktop/player/language_codes.h"

#include <QLatin1String>

namespace {

struct Row
{
    const char *three;
    const char *two;
    const char *other; ///< The second code of three letters, where a language has one.
};

constexpr Row rows[] = {
    {"ara", "ar", ""},    {"bel", "be", ""},    {"bul", "bg", ""},    {"cat", "ca", ""},
    {"ces", "cs", "cze"}, {"dan", "da", ""},    {"deu", "de", "ger"}, {"ell", "el", "gre"},
    {"eng", "en", ""},    {"est", "et", ""},    {"fas", "fa", "per"}, {"fin", "fi", ""},
    {"fra", "fr", "fre"}, {"heb", "he", ""},    {"hin", "hi", ""},    {"hrv", "hr", ""},
    {"hun", "hu", ""},    {"hye", "hy", "arm"}, {"ind", "id", ""},    {"ita", "it", ""},
    {"jpn", "ja", ""},    {"kat", "ka", "geo"}, {"kaz", "kk", ""},    {"kor", "ko", ""},
    {"lav", "lv", ""},    {"lit", "lt", ""},    {"mkd", "mk", "mac"}, {"nld", "nl", "dut"},
    {"nor", "no", ""},    {"pol", "pl", ""},    {"por", "pt", ""},    {"ron", "ro", "rum"},
    {"rus", "ru", ""},    {"slk", "sk", "slo"}, {"slv", "sl", ""},    {"spa", "es", ""},
    {"sqi", "sq", "alb"}, {"srp", "sr", ""},    {"swe", "sv", ""},    {"tha", "th", ""},
    {"tur", "tr", ""},    {"ukr", "uk", ""},    {"uzb", "uz", ""},    {"vie", "vi", ""},
    {"zho", "zh", "chi"},
};

} // namespace

QStringList languageCodes(const QString &code)
{
    const QString wanted = code.trimmed().toLower();
    if (wanted.isEmpty())
        return {"und"};
    for (const Row &row : rows) {
        if (wanted != QLatin1String(row.three) && wanted != QLatin1String(row.two) &&
            wanted != QLatin1String(row.other))
            continue;
        QStringList codes = {row.three, row.two};
        if (*row.other)
            codes += row.other;
        return codes;
    }
    return {wanted};
}
