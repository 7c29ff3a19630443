#include "WorkbenchItems.h"

#include "SeriesChart.h"

#include "common/ISeriesChartData.h"

#include <QQmlEngine>
#include <QUrl>

// Resource initialisers live in the global namespace; the resources are in a
// static library, which the linker would otherwise leave out.
static void initialiseWorkbenchItemResources()
{
    Q_INIT_RESOURCE(workbench_items);
}

void registerWorkbenchItems(const QVector<QColor>& palette)
{
    initialiseWorkbenchItemResources();
    qRegisterMetaType<ISeriesChartData*>("ISeriesChartData*");
    SeriesChart::setDefaultColors(palette);
    qmlRegisterType<SeriesChart>("Workbench", 1, 0, "SeriesChart");
    qmlRegisterType(QUrl(QStringLiteral("qrc:/workbench/items/ChartView.qml")), "Workbench", 1, 0, "ChartView");
}
