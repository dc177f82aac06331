// SPDX-License-Identifier: Apache-2.0
/*
 * Lets every page that loads be the one on the disk: the engine keeps scripts, styles and pictures
 * in memory and does not look whether a file has changed since. Loaded into the program as a
 * generic plugin of Qt by QT_QPA_GENERIC_PLUGINS=vesprel-fresh-pages.
 */

#include <QCoreApplication>
#include <QEvent>
#include <QGenericPlugin>
#include <QWebSettings>
#include <QWebView>

namespace {

/** Empties the engine's memory whenever a view that is shown begins to load. */
class MemoryCleaner : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *object, QEvent *event) override
    {
        const auto *view =
            event->type() == QEvent::Show ? qobject_cast<QWebView *>(object) : nullptr;
        if (view)
            connect(view, &QWebView::loadStarted, this, &MemoryCleaner::clear,
                    Qt::UniqueConnection);
        return false;
    }

private:
    void clear() { QWebSettings::clearMemoryCaches(); }
};

} // namespace

class FreshPagesPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "fresh_pages.json")

public:
    QObject *create(const QString &, const QString &) override
    {
        // Programs that this one starts load no plugin.
        qunsetenv("QT_QPA_GENERIC_PLUGINS");
        qunsetenv("QT_PLUGIN_PATH");
        auto *cleaner = new MemoryCleaner(qApp);
        qApp->installEventFilter(cleaner);
        return cleaner;
    }
};

#include "fresh_pages.moc"
