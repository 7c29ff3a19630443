// The Doppler spectrum of a synthetic complex frame: a tone turning forward
// (a target closing in) lies right of 0 Hz, one turning backward left of
// it, at its frequency and with its amplitude; the I/Q chart shows the
// samples as they came.

#include "zp7/ZP7SDopplerSpectrumChartData.h"
#include "zp7/ZP7STimeDomainChartData.h"

#include <QPolygonF>
#include <QtTest>

#include <cmath>

namespace {

constexpr quint32 kSamples = 128;
constexpr float kPrtS = 500e-6f;

// One channel of `amplitude` e^{j 2 pi f n PRT} around the ADC's mid-scale.
ZP7SFrame toneFrame(double frequencyHz, double amplitude)
{
    auto* data = new vrn_Complex_t[kSamples];
    for (quint32 n = 0; n < kSamples; ++n) {
        const double phase = 2.0 * M_PI * frequencyHz * double(n) * double(kPrtS);
        data[n] = { float(0.5 + amplitude * std::cos(phase)), float(0.5 + amplitude * std::sin(phase)) };
    }
    auto* matrix = new vrn_Matrix_C_s { 1, kSamples, kSamples, data };
    auto* frame = new vrn_Corvix_Frame_C_t { 1, new vrn_Matrix_C_s*[1] { matrix } };
    return ZP7SFrame(frame, [](const vrn_Corvix_Frame_C_t* f) {
        delete[] f->channel_data[0]->data;
        delete f->channel_data[0];
        delete[] f->channel_data;
        delete f;
    });
}

// The settings for a frame of kSamples pulses.
ZP7SDopplerTransform::Settings settings(quint32 fftSize, const QString& window = QString(), float attenuationDb = 0.0f)
{
    ZP7SDopplerTransform::Settings settings;
    settings.samples = kSamples;
    settings.fftSize = fftSize;
    settings.windowType = window;
    settings.attenuationDb = attenuationDb;
    return settings;
}

QPointF peakOf(const ISeriesChartData& data)
{
    QPointF peak(0.0, -1e30);
    std::unique_ptr<ISeriesChartData::Iterator> points = data.iterator(0);
    while (points && points->hasNext()) {
        const QPointF point = points->next();
        if (point.y() > peak.y())
            peak = point;
    }
    return peak;
}

}

class TestZP7SDopplerSpectrum : public QObject
{
    Q_OBJECT

private slots:
    void toneLiesAtItsSignedFrequency_data()
    {
        QTest::addColumn<QString>("window");
        QTest::addColumn<double>("frequency");
        QTest::newRow("closing in, Blackman-Harris") << "Blackmann Harris" << 312.5;
        QTest::newRow("moving away, Blackman-Harris") << "Blackmann Harris" << -312.5;
        QTest::newRow("moving away, Hann") << "Hanning" << -125.0;
        QTest::newRow("closing in, Hamming") << "Hamming" << 750.0;
    }

    void toneLiesAtItsSignedFrequency()
    {
        QFETCH(QString, window);
        QFETCH(double, frequency);
        ZP7SDopplerSpectrumChartData spectrum;
        QVERIFY(spectrum.configure(settings(256, window), kPrtS));
        // The PRT is a float: the axis is exact to its precision.
        QVERIFY(qAbs(spectrum.axisMin() + 1000.0) < 1e-3);
        QVERIFY(qAbs(spectrum.axisStep() - 2000.0 / 256.0) < 1e-5);

        spectrum.update(toneFrame(frequency, 0.1));
        QCOMPARE(spectrum.seriesCount(), 1u);
        const QPointF peak = peakOf(spectrum);
        QVERIFY2(qAbs(peak.x() - frequency) < 0.01, qPrintable(QString::number(peak.x())));
        // A normalised window keeps the tone's amplitude: 0.1 is -20 dB.
        QVERIFY2(qAbs(peak.y() + 20.0) < 0.1, qPrintable(QString::number(peak.y())));
    }

    void chebyshevWindowHoldsItsSideLobes_data()
    {
        QTest::addColumn<float>("attenuation");
        QTest::newRow("60 dB") << 60.0f;
        QTest::newRow("80 dB") << 80.0f;
    }

    void chebyshevWindowHoldsItsSideLobes()
    {
        QFETCH(float, attenuation);
        ZP7SDopplerSpectrumChartData spectrum;
        QVERIFY(spectrum.configure(settings(1024, QStringLiteral("Chebyshev"), attenuation), kPrtS));
        spectrum.update(toneFrame(250.0, 0.1));
        const QPointF peak = peakOf(spectrum);
        QVERIFY2(qAbs(peak.x() - 250.0) < 0.01 && qAbs(peak.y() + 20.0) < 0.1,
                 qPrintable(QStringLiteral("%1 dB at %2 Hz").arg(peak.y()).arg(peak.x())));
        // Beyond the main lobe every bin lies the attenuation below the tone.
        double sideLobe = -1e30;
        std::unique_ptr<ISeriesChartData::Iterator> points = spectrum.iterator(0);
        while (points->hasNext()) {
            const QPointF point = points->next();
            if (qAbs(point.x() - 250.0) > 80.0)
                sideLobe = qMax(sideLobe, point.y());
        }
        QVERIFY2(sideLobe < peak.y() - double(attenuation) + 0.5, qPrintable(QString::number(sideLobe)));
        QVERIFY2(sideLobe > peak.y() - double(attenuation) - 3.0, qPrintable(QString::number(sideLobe)));
    }

    void refusedSettingsGiveNoSpectrum_data()
    {
        QTest::addColumn<quint32>("fftSize");
        QTest::addColumn<float>("prt");
        QTest::newRow("FFT shorter than the frame") << 64u << kPrtS;
        QTest::newRow("FFT not a power of two") << 200u << kPrtS;
        QTest::newRow("no pulse repetition time") << 256u << 0.0f;
    }

    void refusedSettingsGiveNoSpectrum()
    {
        QFETCH(quint32, fftSize);
        QFETCH(float, prt);
        ZP7SDopplerSpectrumChartData spectrum;
        QVERIFY(!spectrum.configure(settings(fftSize), prt));
        spectrum.update(toneFrame(100.0, 0.1));
        QCOMPARE(spectrum.seriesCount(), 0u);
    }

    void timeDomainShowsIAndQ()
    {
        ZP7STimeDomainChartData data;
        QCOMPARE(data.seriesCount(), 2u);
        QVERIFY(!data.iterator(0));
        const ZP7SFrame frame = toneFrame(500.0, 0.25);
        data.update(frame);
        for (quint32 series = 0; series < 2; ++series) {
            QPolygonF shown, expected;
            for (std::unique_ptr<ISeriesChartData::Iterator> points = data.iterator(series); points && points->hasNext();)
                shown << points->next();
            for (quint32 n = 0; n < kSamples; ++n) {
                const vrn_Complex_t& sample = frame->channel_data[0]->data[n];
                expected << QPointF(n, series == 0 ? sample.re : sample.im);
            }
            QCOMPARE(shown, expected);
        }
        QVERIFY(!data.iterator(2));
    }
};

QTEST_MAIN(TestZP7SDopplerSpectrum)
#include "tst_ZP7SDopplerSpectrum.moc"
