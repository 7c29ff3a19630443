// The range-Doppler calculator and its chart data on frames of the simulated
// SDK, loaded from the built library the way the workbench loads it: a target
// placed at a known range and speed must show up there. (The range spectrum
// is checked end to end through the plug-in.)

#include "SimulatorSdk.h"

#include "common/MathAxis.h"
#include "fmcw/processing/RadarRangeDopplerChartData.h"
#include "fmcw/processing/RadarRangeDopplerMapCalculator.h"
#include "fmcw/processing/RangeDopplerUserSettings.h"
#include "host/IBroker.h"

#include <QImage>
#include <QPixmap>
#include <QtTest>

#include <cmath>

namespace {

const char* const kBoard = "calc-1";

class SimulatorBroker : public IBroker
{
public:
    const Vrn* sdk() const override { return vrn; }
    QString applicationDirectory() const override { return QString(); }
    const Vrn* vrn = nullptr;
};

QString reflector(double range, double speed, double rcs = 1.0)
{
    return QStringLiteral(R"({ "kind": "reflector", "range_m": %1, "speed_m_s": %2, "rcs_m2": %3 })").arg(range).arg(speed).arg(rcs);
}

}

class TestRadarProcessingSimulator : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY2(m_sdk.vrn && m_sdk.sim, qPrintable(m_sdk.loadError()));
        m_broker.vrn = m_sdk.vrn;
    }

    void cleanup()
    {
        if (m_device)
            m_broker.vrn->device_destroy(m_device);
        m_device = nullptr;
    }

    void rangeDopplerMapPeaksAtRangeAndSpeed_data()
    {
        QTest::addColumn<double>("range");
        QTest::addColumn<double>("speed");
        QTest::newRow("2 m receding 1 m/s") << 2.0 << 1.0;
        QTest::newRow("4.5 m approaching 1.5 m/s") << 4.5 << -1.5;
        QTest::newRow("3.3 m receding 0.4 m/s beside a wall") << 3.3 << 0.4;
        QTest::newRow("7.2 m receding 2 m/s beside a wall") << 7.2 << 2.0;
        QTest::newRow("2.5 m approaching 0.3 m/s beside a wall") << 2.5 << -0.3;
    }

    void rangeDopplerMapPeaksAtRangeAndSpeed()
    {
        QFETCH(double, range);
        QFETCH(double, speed);
        // A strong still wall that the Doppler mean removal must take out.
        QVERIFY(open(reflector(range, speed) + ", " + reflector(6.3, 0.0, 10.0)));

        RangeDopplerUserSettings settings;
        settings.updateDeviceParameters(m_config.num_samples_per_chirp, m_config.num_chirps_per_frame);
        MathAxis rangeAxis;
        MathAxis speedAxis;
        const quint64 bandwidth = m_config.upper_frequency_Hz - m_config.lower_frequency_Hz;
        const float centre = float((m_config.upper_frequency_Hz + m_config.lower_frequency_Hz) / 2);
        auto calculator = RadarRangeDopplerMapCalculator::create(m_broker, settings, &rangeAxis, &speedAxis, bandwidth,
                                                                 m_config.frame_repetition_time_s,
                                                                 m_config.chirp_repetition_time_s, centre);
        QVERIFY(calculator);
        QVERIFY(rangeAxis.step() > 0.0);
        QVERIFY(speedAxis.step() > 0.0);

        SharedMatrix map = calculator->processData(nextFrame(), 0);
        QVERIFY(map);
        QCOMPARE(map->rows, settings.rangeFftSize() / 2);
        QCOMPARE(map->cols, settings.dopplerFftSize());
        quint32 best = 0;
        for (quint32 i = 0; i < map->rows * map->stride; ++i) {
            if (i % map->stride < map->cols && map->data[i] > map->data[best])
                best = i;
        }
        const quint32 bestRow = best / map->stride;
        const quint32 bestCol = best % map->stride;
        const double foundRange = rangeAxis.min() + bestRow * rangeAxis.step();
        const double foundSpeed = speedAxis.min() + bestCol * speedAxis.step();
        QVERIFY2(qAbs(foundRange - range) <= 0.15, qPrintable(QString::number(foundRange)));
        QVERIFY2(qAbs(foundSpeed - speed) <= 2 * speedAxis.step() + 0.05, qPrintable(QString::number(foundSpeed)));
        // Receding targets lie right of the zero-speed column.
        QCOMPARE(bestCol > map->cols / 2, speed > 0);

        // The image shows the peak with range 0 at the bottom.
        RadarRangeDopplerChartData chart;
        chart.setDimensions(settings.dopplerFftSize(), settings.rangeFftSize() / 2, quint32(-settings.colorThreshold()));
        chart.setMap(map);
        QPixmap pixmap;
        QVERIFY(chart.render(pixmap));
        const QImage image = pixmap.toImage();
        const quint8* rgb = chart.colorMap().colorOf(map->data[best]);
        QCOMPARE(image.pixel(int(bestCol), image.height() - 1 - int(bestRow)), qRgb(rgb[0], rgb[1], rgb[2]));
    }

private:
    // Loads the scene, opens and configures the board for Rx1 alone; false
    // on any failure.
    bool open(const QString& targets)
    {
        const Vrn* vrn = m_broker.vrn;
        const QByteArray bench = oneBoardBench(kBoard, QStringLiteral("KMR7A"), targets, 0.002, 5);
        if (const char* error = m_sdk.sim->load_bench_json(bench.constData())) {
            qWarning() << error;
            return false;
        }
        if (vrn->device_create_by_uuid(kBoard, &m_device) != VRN_STATUS_OK)
            return false;
        const vrn_Metrics_t metrics = sceneMetrics(0b001);
        return !vrn->device_translate_metrics(m_device, &metrics, &m_config)
            && !vrn->device_set_config(m_device, &m_config);
    }

    SharedFrame nextFrame()
    {
        const Vrn* vrn = m_broker.vrn;
        vrn_Frame_R_t* frame = nullptr;
        if (vrn->frame_r_create(1, m_config.num_chirps_per_frame, m_config.num_samples_per_chirp, &frame))
            return nullptr;
        SharedFrame shared(frame, [vrn](const vrn_Frame_R_t* f) { vrn->frame_r_destroy(const_cast<vrn_Frame_R_t*>(f)); });
        if (vrn->device_get_next_frame(m_device, frame, 1000) != VRN_STATUS_OK)
            return nullptr;
        return shared;
    }

    SimulatorSdk m_sdk;
    SimulatorBroker m_broker;
    vrn_Device_Handle m_device = nullptr;
    vrn_Device_Config_t m_config {};
};

QTEST_MAIN(TestRadarProcessingSimulator)
#include "tst_RadarProcessingSimulator.moc"
