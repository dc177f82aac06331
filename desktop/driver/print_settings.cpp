// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/print_settings.h"

#include "desktop/driver/arguments.h"
#include "desktop/driver/webdriver_error.h"

#include <QRegularExpression>

#include <cmath>
#include <utility>

namespace {

constexpr double printPoint = 2.54 / 72; ///< cm: the smallest paper.
constexpr double longestLength = 1e6;    ///< Nothing is bounded by the protocol itself.

QJsonObject objectMember(const QJsonObject &object, const char *name)
{
    const QJsonValue value = object.value(QLatin1String(name));
    if (!value.isUndefined() && !value.isObject())
        failArgument(QString("\"%1\" is to be an object").arg(name));
    return value.toObject();
}

int pageNumber(const QString &text)
{
    static const QRegularExpression digits("^[0-9]+$");
    if (!digits.match(text).hasMatch())
        failArgument("\"pageRanges\" has no number where one is to be: " + text.left(100));
    // A number beyond all pages stays beyond them.
    return int(std::min(text.toDouble(), longestLength));
}

/** All of it, whatever bytes are in it. */
QString latin1(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.constData(), bytes.size());
}

/** The object that lists the pages of a PDF as Qt writes it. */
QRegularExpressionMatch pageList(const QByteArray &pdf)
{
    static const QRegularExpression form(
        R"((\d+) 0 obj\s*<<\s*/Type /Pages\s*/Kids\s*\[([^\]]*)\]\s*/Count (\d+)([^>]*)>>)");
    return form.match(latin1(pdf));
}

} // namespace

QJsonObject readPrintSettings(const QJsonObject &parameters)
{
    const QJsonValue orientation = parameters.value("orientation");
    if (!orientation.isUndefined() && orientation != QJsonValue("portrait") &&
        orientation != QJsonValue("landscape"))
        failArgument("\"orientation\" is to be portrait or landscape");
    const double scale = numberMember(parameters, "scale", 0.1, 2).value_or(1);
    const bool background = boolMember(parameters, "background", false);
    const QJsonObject page = objectMember(parameters, "page");
    double width = numberMember(page, "width", printPoint, longestLength).value_or(21.59);
    double height = numberMember(page, "height", printPoint, longestLength).value_or(27.94);
    if (orientation.toString() == "landscape")
        std::swap(width, height);
    QJsonObject result{
        {"width", width}, {"height", height}, {"scale", scale}, {"background", background}};
    const QJsonObject margin = objectMember(parameters, "margin");
    for (const char *side : {"top", "bottom", "left", "right"})
        result[QLatin1String(side)] = numberMember(margin, side, 0, longestLength).value_or(1);
    // The engine always shrinks what is wider than the paper.
    boolMember(parameters, "shrinkToFit", true);
    if (parameters.contains("pageRanges"))
        arrayMember(parameters, "pageRanges");
    return result;
}

QSet<int> readPageRanges(const QJsonArray &ranges, int pageCount)
{
    QSet<int> pages;
    for (const QJsonValue &range : ranges) {
        if (range.isDouble()) {
            if (!isInteger(range) || range.toDouble() < 0)
                failArgument("\"pageRanges\" has a number that is no page");
            pages.insert(int(std::min(range.toDouble(), longestLength)));
            continue;
        }
        const QStringList parts = range.toString().split('-');
        if (!range.isString() || parts.size() > 2)
            failArgument("\"pageRanges\" is to hold numbers and texts like \"2-5\"");
        const QString first = parts.first().trimmed();
        const QString last = parts.last().trimmed();
        const bool open = parts.size() == 2;
        const int low = open && first.isEmpty() ? 1 : pageNumber(first);
        const int high = open && last.isEmpty() ? pageCount : pageNumber(last);
        if (low > high)
            failArgument("\"pageRanges\" has a range that ends before it begins");
        for (int number = low; number <= std::min(high, pageCount); ++number)
            pages.insert(number);
    }
    return pages;
}

int pageCountOf(const QByteArray &pdf)
{
    const QRegularExpressionMatch list = pageList(pdf);
    return list.hasMatch() ? list.captured(3).toInt() : -1;
}

QByteArray withPages(const QByteArray &pdf, const QSet<int> &pages)
{
    const QRegularExpressionMatch list = pageList(pdf);
    static const QRegularExpression page(R"(\d+ 0 R)");
    auto all = page.globalMatch(list.captured(2));
    QStringList kept;
    for (int number = 1; all.hasNext(); ++number) {
        const QString reference = all.next().captured();
        if (pages.contains(number))
            kept += reference;
    }
    // Appended as PDF lets a file be changed: the object anew, and where the older ones are listed.
    static const QRegularExpression trailer(
        R"(trailer\s*<<([^>]*(?:<[^<>]*>[^<>]*)*)>>\s*startxref\s*(\d+)\s*%%EOF\s*$)");
    const QRegularExpressionMatch end = trailer.match(latin1(pdf));
    QByteArray result = pdf;
    const int object = result.size();
    result +=
        QString("%1 0 obj\n<<\n/Type /Pages\n/Kids [%2]\n/Count %3%4>>\nendobj\n")
            .arg(list.captured(1), kept.join(' '), QString::number(kept.size()), list.captured(4))
            .toLatin1();
    const int table = result.size();
    result += QString("xref\n%1 1\n%2 00000 n \ntrailer\n<<%3/Prev %4\n>>\nstartxref\n%5\n%%EOF\n")
                  .arg(list.captured(1), QString::number(object).rightJustified(10, '0'),
                       end.captured(1), end.captured(2), QString::number(table))
                  .toLatin1();
    return result;
}
