// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/plugin/printing.h"

#include <QDir>
#include <QPageLayout>
#include <QPageSize>
#include <QPrinter>
#include <QTemporaryFile>
#include <QVector>
#include <QWebFrame>
#include <QWebPage>
#include <QWebSettings>
#include <QWidget>

namespace {

// The engine lays a printed page out that much wider than the paper and then shrinks it.
constexpr double engineShrinks = 1.25;

/** A printer whose inches are larger or smaller, and with them what the engine prints. */
class ScaledPrinter : public QPrinter
{
public:
    explicit ScaledPrinter(double scale)
        : QPrinter(QPrinter::HighResolution)
        , m_scale(scale)
    {
    }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        const int value = QPrinter::metric(metric);
        return metric == PdmDpiX || metric == PdmDpiY ? int(value * m_scale) : value;
    }

private:
    double m_scale;
};

/**
 * Takes their style sheets from a widget and those around it: the style that draws by them needs a
 * widget to draw for, which paper is not, and crashes on the first field of a form.
 */
class WithoutStyleSheets
{
public:
    explicit WithoutStyleSheets(QWidget *widget)
    {
        for (; widget; widget = widget->parentWidget()) {
            if (widget->styleSheet().isEmpty())
                continue;
            m_sheets.append({widget, widget->styleSheet()});
            widget->setStyleSheet({});
        }
    }
    ~WithoutStyleSheets()
    {
        for (const auto &[widget, sheet] : std::as_const(m_sheets))
            widget->setStyleSheet(sheet);
    }
    WithoutStyleSheets(const WithoutStyleSheets &) = delete;
    WithoutStyleSheets &operator=(const WithoutStyleSheets &) = delete;

private:
    QVector<QPair<QWidget *, QString>> m_sheets;
};

QPageLayout layoutOf(const QJsonObject &settings)
{
    const auto mm = [&settings](const char *name) {
        return settings.value(QLatin1String(name)).toDouble() * 10;
    };
    const QPageSize paper(QSizeF(mm("width"), mm("height")), QPageSize::Millimeter, {},
                          QPageSize::ExactMatch);
    return QPageLayout(paper, QPageLayout::Portrait,
                       QMarginsF(mm("left"), mm("top"), mm("right"), mm("bottom")),
                       QPageLayout::Millimeter);
}

} // namespace

QByteArray printToPdf(QWebFrame &frame, const QJsonObject &settings)
{
    QTemporaryFile file(QDir::tempPath() + "/print.XXXXXX");
    ScaledPrinter printer(engineShrinks * settings.value("scale").toDouble());
    printer.setOutputFormat(QPrinter::PdfFormat);
    if (!file.open() || !printer.setPageLayout(layoutOf(settings)) ||
        printer.pageRect(QPrinter::Point).width() < 1 ||
        printer.pageRect(QPrinter::Point).height() < 1)
        return {};
    printer.setOutputFileName(file.fileName());
    QWebSettings &page = *frame.page()->settings();
    const bool backgrounds = page.testAttribute(QWebSettings::PrintElementBackgrounds);
    page.setAttribute(QWebSettings::PrintElementBackgrounds, settings.value("background").toBool());
    {
        const WithoutStyleSheets plain(frame.page()->view());
        frame.print(&printer);
    }
    page.setAttribute(QWebSettings::PrintElementBackgrounds, backgrounds);
    return file.readAll();
}
