#include "common/RadarRangeSpectrumCalculator.h"

#include "common/RangeSpectrumUserSettings.h"
#include "host/IBroker.h"

#include <QDebug>

namespace {

const char* const kNoSdk = "No radar SDK is loaded";

}

std::unique_ptr<RadarRangeSpectrumCalculator> RadarRangeSpectrumCalculator::create(
    IBroker& broker, const RangeSpectrumUserSettings& settings)
{
    vrn_RS_Config_t config {};
    settings.copyTo(config);
    Handle handle = createRangeSpectrumHandle(broker, config);
    if (!handle)
        return nullptr;
    return std::unique_ptr<RadarRangeSpectrumCalculator>(
        new RadarRangeSpectrumCalculator(broker, std::move(handle), config));
}

RadarRangeSpectrumCalculator::Handle RadarRangeSpectrumCalculator::createRangeSpectrumHandle(
    IBroker& broker, const vrn_RS_Config_t& config)
{
    const Vrn* vrn = broker.sdk();
    if (!vrn) {
        qCritical() << "Cannot create Range Spectrum handle:" << kNoSdk;
        return nullptr;
    }
    vrn_RS_Handle handle = nullptr;
    if (vrn_Error_t error = vrn->rs_create(&config, &handle)) {
        qCritical() << "Cannot create Range Spectrum handle:" << error;
        return nullptr;
    }
    return Handle(handle, [vrn](vrn_RS_Handle owned) {
        if (vrn_Error_t error = vrn->rs_destroy(owned))
            qCritical() << "Cannot destroy Range Spectrum handle:" << error;
    });
}

RadarRangeSpectrumCalculator::RadarRangeSpectrumCalculator(IBroker& broker, Handle handle,
                                                           const vrn_RS_Config_t& config)
    : m_broker(&broker)
    , m_handle(std::move(handle))
    , m_config(config)
{
}

SharedVector RadarRangeSpectrumCalculator::newSpectrum(const Vrn* vrn)
{
    vrn_Vector_R_s* vector = nullptr;
    if (vrn_Error_t error = vrn->vector_r_create(m_config.fft_config.fft_size / 2, &vector)) {
        qCritical() << "Cannot create Range Spectrum output vector:" << error;
        return nullptr;
    }
    return makeSharedVector(vrn, vector);
}

QVector<SharedVector> RadarRangeSpectrumCalculator::processData(const SharedFrame& frame)
{
    QVector<SharedVector> spectra;
    if (!m_handle) {
        qCritical() << "Cannot calculate Range Spectrum. Cannot get Range Spectrum handle";
        return spectra;
    }
    if (!frame) {
        qCritical() << "Cannot calculate Range Spectrum. Cannot get input frame. Data is NULL";
        return spectra;
    }
    for (quint32 antenna = 0; antenna < frame->num_rx; ++antenna) {
        SharedVector spectrum = processRangeSpectrumForAntenna(frame, antenna);
        if (!spectrum)
            break;
        spectra.append(std::move(spectrum));
    }
    return spectra;
}

SharedVector RadarRangeSpectrumCalculator::processRangeSpectrumForAntenna(const SharedFrame& frame,
                                                                         quint32 antenna)
{
    const Vrn* vrn = m_broker->sdk();
    if (!m_handle || !vrn) {
        qCritical() << "Cannot calculate Range Spectrum. Cannot get Range Spectrum handle";
        return nullptr;
    }
    if (!frame) {
        qCritical() << "Cannot calculate Range Spectrum. Cannot get input frame. Data is NULL";
        return nullptr;
    }
    const vrn_Matrix_R_s* matrix = nullptr;
    vrn_Error_t error = vrn->frame_r_channel(frame.get(), antenna, &matrix);
    SharedVector spectrum;
    if (!error) {
        spectrum = newSpectrum(vrn);
        if (!spectrum)
            return nullptr;
        error = vrn->rs_run(m_handle.get(), matrix, const_cast<vrn_Vector_R_s*>(spectrum.get()));
    }
    if (error) {
        qCritical().noquote() << QStringLiteral("Failed to calculate Range Spectrum data for antenna %1: %2")
                                     .arg(antenna)
                                     .arg(QString::fromUtf8(error));
        return nullptr;
    }
    return spectrum;
}

QVector<SharedVector> RadarRangeSpectrumCalculator::processData(const vrn_Corvix_Frame_C_t* frame)
{
    QVector<SharedVector> spectra;
    if (SharedVector spectrum = processRangeSpectrum(frame))
        spectra.append(std::move(spectrum));
    return spectra;
}

SharedVector RadarRangeSpectrumCalculator::processRangeSpectrum(const vrn_Corvix_Frame_C_t* frame)
{
    const Vrn* vrn = m_broker->sdk();
    if (!m_handle || !vrn) {
        qCritical() << "Cannot calculate Range Spectrum. Cannot get Range Spectrum handle";
        return nullptr;
    }
    if (!frame || frame->num_channels == 0 || !frame->channel_data || !frame->channel_data[0]) {
        qCritical() << "Cannot calculate Range Spectrum. Cannot get input frame. Data is NULL";
        return nullptr;
    }
    SharedVector spectrum = newSpectrum(vrn);
    if (!spectrum)
        return nullptr;
    if (vrn_Error_t error
        = vrn->rs_run_c(m_handle.get(), frame->channel_data[0], const_cast<vrn_Vector_R_s*>(spectrum.get()))) {
        qCritical().noquote()
            << QStringLiteral("Failed to calculate Range Spectrum data for Corvix: %2").arg(QString::fromUtf8(error));
        return nullptr;
    }
    return spectrum;
}

RadarRangeSpectrumCalculator::Axis RadarRangeSpectrumCalculator::calculateDistanceAxis(quint32 fftSize,
                                                                                       quint32 samplesPerChirp,
                                                                                       float maxRangeM)
{
    const Vrn* vrn = m_broker->sdk();
    vrn_Math_Axis_Spec_s axis {};
    vrn_Error_t error = vrn ? vrn->rs_distance_axis(fftSize, samplesPerChirp, maxRangeM, &axis) : kNoSdk;
    if (error) {
        qCritical().noquote() << QStringLiteral("Failed to calculate range axis for range spectrum : ")
                + QString::fromUtf8(error);
        m_axis = vrn_Math_Axis_Spec_s {};
        m_axisValid = false;
        return { false, vrn_Math_Axis_Spec_s {} };
    }
    m_axis = axis;
    m_axisValid = true;
    return { true, axis };
}

RadarRangeSpectrumCalculator::Axis RadarRangeSpectrumCalculator::calculateFrequencyAxis(int fftSize,
                                                                                        float sampleRateHz)
{
    const Vrn* vrn = m_broker->sdk();
    vrn_Math_Axis_Spec_s axis {};
    vrn_Error_t error = nullptr;
    if (!vrn || fftSize <= 0)
        error = "";
    else
        error = vrn->rs_frequency_axis(quint32(fftSize), sampleRateHz, &axis);
    if (error) {
        if (*error == '\0')
            qCritical() << "Error, could not calculate frequency axis for frequency domain";
        else
            qCritical().noquote() << QStringLiteral("Error, could not calculate frequency axis for frequency domain: %1")
                                         .arg(QString::fromUtf8(error));
        return { false, vrn_Math_Axis_Spec_s {} };
    }
    return { true, axis };
}
