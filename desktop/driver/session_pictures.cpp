// SPDX-License-Identifier: Apache-2.0
/*
 * Pictures of the page, and the page on paper.
 */
#include "desktop/driver/print_settings.h"
#include "desktop/driver/session.h"
#include "desktop/driver/webdriver_error.h"

namespace {

constexpr double pictureTime = 10000; ///< ms

} // namespace

QJsonValue Session::screenshot(const CommandCall &)
{
    requireWindow();
    const QJsonObject answer = askOnce("picture", {}, deadlineAfter(pictureTime));
    if (answer.value("error") == QLatin1String("blocked")) {
        // With the dialog, which only the display has.
        const QByteArray picture = m_box.display().picture();
        if (picture.isEmpty())
            fail("unable to capture screen", "The display gave no picture.");
        return QString::fromLatin1(picture.toBase64());
    }
    if (answer.contains("error"))
        throw errorOf(answer);
    return answer.value("value");
}

QJsonValue Session::elementScreenshot(const CommandCall &call)
{
    const QJsonObject box = callPage("picture", {elementOf(call)}).toObject();
    QJsonObject part = box;
    if (!m_frame.isEmpty()) {
        const Place inner = place();
        const WholeWindow wholeWindow(*this);
        const Place whole = place();
        part["x"] = box.value("x").toInt() + inner.x - whole.x;
        part["y"] = box.value("y").toInt() + inner.y - whole.y;
    }
    return ask("picture", part).value("value");
}

QJsonValue Session::print(const CommandCall &call)
{
    handlePrompts();
    const QJsonObject settings = readPrintSettings(call.parameters);
    const QJsonValue answer = ask("print", settings).value("value");
    const QJsonArray ranges = call.parameters.value("pageRanges").toArray();
    if (ranges.isEmpty())
        return answer;
    const QByteArray pdf = QByteArray::fromBase64(answer.toString().toLatin1());
    const int count = pageCountOf(pdf);
    if (count < 0)
        fail("unsupported operation", "The pages of what was printed cannot be told apart.");
    return QString::fromLatin1(withPages(pdf, readPageRanges(ranges, count)).toBase64());
}
