// The calculators and the chart data on frames of the simulated SDK, loaded
// from the built library the way the workbench loads it: a target placed at
// a known range and speed must show up there.

#include "common/MathAxis.h"
#include "common/RadarFrequencyDomainChartData.h"
#include "common/RadarRangeSpectrumCalculator.h"
#include "common/RangeSpectrumUserSettings.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/PresenceSensingConfig.h"
#include "fmcw/common/RadarAntennas.h"
#include "fmcw/common/RadarConfigurationUtils.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/common/RadarDeviceParameters.h"
#include "fmcw/common/SegmentationConfiguration.h"
#include "fmcw/processing/RadarPresenceSensingCalculator.h"
#include "fmcw/processing/RadarRangeDopplerChartData.h"
#include "fmcw/processing/RadarRangeDopplerMapCalculator.h"
#include "fmcw/processing/RadarSegmentationCalculator.h"
#include "fmcw/processing/RangeDopplerUserSettings.h"
#include "host/IBroker.h"

#include <vrn_sim.h>

#include <QImage>
#include <QLibrary>
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

// One unpaced KMR7A board; `targets` is the JSON list of the scene.
QByteArray benchWith(const QString& targets)
{
    return QStringLiteral(R"({ "boards": [ { "uuid": "%1", "chip": "KMR7A", "pacing": "unpaced",
        "noise": 0.002, "seed": 5, "scene": { "targets": [ %2 ] } } ] })")
        .arg(QLatin1String(kBoard), targets)
        .toUtf8();
}

QString reflector(double range, double speed, double angle = 0.0, double rcs = 1.0)
{
    return QStringLiteral(R"({ "kind": "reflector", "range_m": %1, "speed_m_s": %2, "angle_deg": %3, "rcs_m2": %4 })")
        .arg(range)
        .arg(speed)
        .arg(angle)
        .arg(rcs);
}

// 0.3 m resolution up to 9.6 m, 2.45 m/s in 0.0766 m/s steps: 64 samples
// of 64 chirps.
vrn_Metrics_t sceneMetrics(uint32_t rxMask)
{
    vrn_Metrics_t m {};
    m.sample_rate_Hz = 1000000;
    m.rx_mask = rxMask;
    m.tx_mask = 0x1;
    m.tx_power_level = 31;
    m.if_gain_dB = 33;
    m.range_resolution_m = 0.3f;
    m.max_range_m = 9.6f;
    m.max_speed_m_s = 2.45f;
    m.speed_resolution_m_s = 0.0766f;
    m.frame_repetition_time_s = 0.1f;
    m.center_frequency_Hz = 60.5e9f;
    return m;
}

int popCount(uint32_t mask)
{
    int count = 0;
    for (; mask; mask &= mask - 1)
        ++count;
    return count;
}

}

class TestRadarProcessingSimulator : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanup();

    void rangeSpectrumPeaksAtTheTarget_data();
    void rangeSpectrumPeaksAtTheTarget();
    void rangeDopplerMapPeaksAtRangeAndSpeed_data();
    void rangeDopplerMapPeaksAtRangeAndSpeed();
    void presenceFollowsTheScene_data();
    void presenceFollowsTheScene();
    void segmentationFindsTheAngle_data();
    void segmentationFindsTheAngle();

private:
    // Loads the scene, opens and configures the board; false on any failure.
    bool open(const QString& targets, uint32_t rxMask);
    SharedFrame nextFrame();

    QLibrary m_library { QStringLiteral(VRN_SIM_LIBRARY) };
    const VrnSimControl* m_sim = nullptr;
    SimulatorBroker m_broker;
    vrn_Device_Handle m_device = nullptr;
    vrn_Device_Config_t m_config {};
    uint32_t m_rxMask = 0;
};

void TestRadarProcessingSimulator::initTestCase()
{
    QVERIFY2(m_library.load(), qPrintable(m_library.errorString()));
    auto entry = reinterpret_cast<vrn_entry_points_fn>(m_library.resolve(VRN_ENTRY_POINTS_SYMBOL));
    auto control = reinterpret_cast<vrnsim_control_fn>(m_library.resolve(VRNSIM_CONTROL_SYMBOL));
    QVERIFY(entry && control);
    m_broker.vrn = entry();
    m_sim = control();
}

void TestRadarProcessingSimulator::cleanup()
{
    if (m_device)
        m_broker.vrn->device_destroy(m_device);
    m_device = nullptr;
}

bool TestRadarProcessingSimulator::open(const QString& targets, uint32_t rxMask)
{
    const Vrn* vrn = m_broker.vrn;
    if (const char* error = m_sim->load_bench_json(benchWith(targets).constData())) {
        qWarning() << error;
        return false;
    }
    if (vrn->device_create_by_uuid(kBoard, &m_device) != VRN_STATUS_OK)
        return false;
    const vrn_Metrics_t metrics = sceneMetrics(rxMask);
    m_rxMask = rxMask;
    return !vrn->device_translate_metrics(m_device, &metrics, &m_config)
        && !vrn->device_set_config(m_device, &m_config);
}

SharedFrame TestRadarProcessingSimulator::nextFrame()
{
    const Vrn* vrn = m_broker.vrn;
    vrn_Frame_R_t* frame = nullptr;
    if (vrn->frame_r_create(uint32_t(popCount(m_rxMask)), m_config.num_chirps_per_frame,
                            m_config.num_samples_per_chirp, &frame))
        return nullptr;
    SharedFrame shared(frame, [vrn](const vrn_Frame_R_t* f) { vrn->frame_r_destroy(const_cast<vrn_Frame_R_t*>(f)); });
    if (vrn->device_get_next_frame(m_device, frame, 1000) != VRN_STATUS_OK)
        return nullptr;
    return shared;
}

void TestRadarProcessingSimulator::rangeSpectrumPeaksAtTheTarget_data()
{
    QTest::addColumn<double>("range");
    QTest::addColumn<quint32>("fftSize");
    QTest::newRow("1.5 m") << 1.5 << 256u;
    QTest::newRow("4.2 m") << 4.2 << 256u;
    QTest::newRow("7.2 m, FFT 512") << 7.2 << 512u;
}

void TestRadarProcessingSimulator::rangeSpectrumPeaksAtTheTarget()
{
    QFETCH(double, range);
    QFETCH(quint32, fftSize);
    QVERIFY(open(reflector(range, 0.0, 0.0, 5.0), 0b111));

    RangeSpectrumUserSettings settings;
    settings.setFftSize(fftSize);
    settings.updateDeviceParameters(m_config.num_samples_per_chirp, m_config.num_chirps_per_frame);
    auto calculator = RadarRangeSpectrumCalculator::create(m_broker, settings);
    QVERIFY(calculator);
    const auto axis = calculator->calculateDistanceAxis(settings.fftSize(), m_config.num_samples_per_chirp, 9.6f);
    QVERIFY(axis.first);
    QVERIFY(qAbs(axis.second.step - 2 * 9.6 / fftSize) < 1e-4);

    RadarFrequencyDomainChartData chart;
    chart.setAxis(axis.second.min, axis.second.step);
    chart.update(calculator->processData(nextFrame()));
    QCOMPARE(chart.seriesCount(), 3u);
    for (quint32 antenna = 0; antenna < 3; ++antenna) {
        auto points = chart.iterator(antenna);
        QVERIFY(points);
        QPointF peak(0.0, -1e9);
        int count = 0;
        while (points->hasNext()) {
            const QPointF point = points->next();
            ++count;
            if (point.y() > peak.y())
                peak = point;
        }
        QCOMPARE(count, int(fftSize / 2));
        QVERIFY2(qAbs(peak.x() - range) <= 0.15,
                 qPrintable(QStringLiteral("antenna %1 peaks at %2 m").arg(antenna).arg(peak.x())));
    }
}

void TestRadarProcessingSimulator::rangeDopplerMapPeaksAtRangeAndSpeed_data()
{
    QTest::addColumn<double>("range");
    QTest::addColumn<double>("speed");
    QTest::newRow("2 m receding 1 m/s") << 2.0 << 1.0;
    QTest::newRow("4.5 m approaching 1.5 m/s") << 4.5 << -1.5;
    QTest::newRow("3.3 m receding 0.4 m/s beside a wall") << 3.3 << 0.4;
}

void TestRadarProcessingSimulator::rangeDopplerMapPeaksAtRangeAndSpeed()
{
    QFETCH(double, range);
    QFETCH(double, speed);
    // A strong still wall that the Doppler mean removal must take out.
    QVERIFY(open(reflector(range, speed) + ", " + reflector(6.3, 0.0, 0.0, 10.0), 0b001));

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
    quint32 bestRow = 0;
    quint32 bestCol = 0;
    for (quint32 r = 0; r < map->rows; ++r)
        for (quint32 c = 0; c < map->cols; ++c)
            if (map->data[r * map->stride + c] > map->data[bestRow * map->stride + bestCol]) {
                bestRow = r;
                bestCol = c;
            }
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
    const quint8* rgb = chart.colorMap().colorOf(map->data[bestRow * map->stride + bestCol]);
    QCOMPARE(image.pixel(int(bestCol), image.height() - 1 - int(bestRow)), qRgb(rgb[0], rgb[1], rgb[2]));
}

void TestRadarProcessingSimulator::presenceFollowsTheScene_data()
{
    QTest::addColumn<QString>("targets");
    QTest::addColumn<int>("firstPresentFrame"); // 0: never within the run

    const QString walking = QStringLiteral(
        R"({ "kind": "person", "range_m": 2.0, "speed_m_s": 0.8, "min_range_m": 1.0, "max_range_m": 3.0 })");
    const QString breathing = QStringLiteral(R"({ "kind": "person", "range_m": 1.8, "speed_m_s": 0.0 })");
    const QString far = QStringLiteral(
        R"({ "kind": "person", "range_m": 6.5, "speed_m_s": 0.8, "min_range_m": 6.0, "max_range_m": 7.0 })");
    QTest::newRow("walking person") << walking << 3;
    QTest::newRow("person only breathing") << breathing << 3;
    QTest::newRow("empty room") << QString() << 0;
    QTest::newRow("person beyond the maximum range") << far << 0;
    QTest::newRow("still wall") << reflector(2.5, 0.0, 0.0, 5.0) << 0;
}

void TestRadarProcessingSimulator::presenceFollowsTheScene()
{
    QFETCH(QString, targets);
    QFETCH(int, firstPresentFrame);
    QVERIFY(open(targets, 0b001));

    RadarConfigurationUtils utils(m_broker.vrn, false);
    RadarDeviceConfiguration configuration;
    configuration.deviceInfo()->setDeviceType(VRN_DEVICE_TYPE_KMR7A);
    utils.parseDeviceConfig(configuration.parameters(), m_config);
    const vrn_Metrics_t metrics = sceneMetrics(0b001);
    configuration.metrics()->setSampleRateHz(metrics.sample_rate_Hz);
    configuration.metrics()->setTxPowerLevel(metrics.tx_power_level);
    configuration.metrics()->setIfGainDB(metrics.if_gain_dB);
    configuration.metrics()->rx()->setMask(0b001);
    PresenceSensingConfig& presence = *configuration.presenceSensing();
    presence.setMinDetectionRange(0.5f);
    presence.setMaxDetectionRange(4.0f);
    presence.setRangeHysteresisPercentage(10.0f);
    presence.setPresenceConfirmCount(3);
    presence.setAbsenceConfirmCount(10);

    auto calculator = RadarPresenceSensingCalculator::create(m_broker, utils, configuration);
    QVERIFY(calculator);
    // Twelve frames: the presence must be confirmed after exactly three.
    for (int frame = 1; frame <= 12; ++frame) {
        SharedPresenceResult result = calculator->process(nextFrame());
        QVERIFY(result);
        const bool present = result->state == VRN_PRESENCE_STATE_PRESENCE;
        const bool expected = firstPresentFrame != 0 && frame >= firstPresentFrame;
        QVERIFY2(present == expected, qPrintable(QStringLiteral("frame %1").arg(frame)));
    }
}

void TestRadarProcessingSimulator::segmentationFindsTheAngle_data()
{
    QTest::addColumn<double>("angle");
    QTest::addColumn<quint32>("rxMask");
    QTest::newRow("-40 degrees, Rx1 and Rx3") << -40.0 << 0b101u;
    QTest::newRow("-15 degrees, Rx1 and Rx3") << -15.0 << 0b101u;
    QTest::newRow("straight ahead, Rx1 and Rx3") << 0.0 << 0b101u;
    QTest::newRow("25 degrees, all three receivers") << 25.0 << 0b111u;
    QTest::newRow("40 degrees, all three receivers") << 40.0 << 0b111u;
}

void TestRadarProcessingSimulator::segmentationFindsTheAngle()
{
    QFETCH(double, angle);
    QFETCH(quint32, rxMask);
    // A target walking away, so static-target removal keeps it.
    QVERIFY(open(reflector(3.0, 0.6, angle, 2.0), rxMask));

    vrn_Segmentation_Config_t defaults {};
    QCOMPARE(m_broker.vrn->seg_default_config(VRN_DEVICE_TYPE_KMR7A, &m_config, &defaults), nullptr);
    SegmentationConfiguration user;
    user.setFromSdk(defaults, true);
    auto calculator = RadarSegmentationCalculator::create(
        m_broker, user, m_config.num_samples_per_chirp, m_config.num_chirps_per_frame,
        float(m_config.upper_frequency_Hz - m_config.lower_frequency_Hz), m_config.chirp_repetition_time_s,
        float((m_config.upper_frequency_Hz + m_config.lower_frequency_Hz) / 2));
    QVERIFY(calculator);

    RadarSegmentationResult result;
    for (int frame = 0; frame < 8; ++frame) {
        result = calculator->process(nextFrame());
        QVERIFY(result.trackedObjects && result.segments);
    }
    QVERIFY(!result.trackedObjects->isEmpty());
    const RadarTrackedObject& track = result.trackedObjects->first();
    QVERIFY2(qAbs(track.angle - angle) <= 5.0, qPrintable(QString::number(track.angle)));
    // Eight frames of 0.1 s at 0.6 m/s: the last one was taken 0.42 m further.
    QVERIFY2(qAbs(track.distance - 3.42) <= 0.3, qPrintable(QString::number(track.distance)));
    QCOMPARE(result.segments->size(), int(defaults.num_segments));
}

QTEST_MAIN(TestRadarProcessingSimulator)
#include "tst_RadarProcessingSimulator.moc"
