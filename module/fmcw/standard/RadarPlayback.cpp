#include "fmcw/standard/RadarPlayback.h"

#include "fmcw/common/SharedFrame.h"
#include "fmcw/standard/IRadarConfiguration.h"
#include "fmcw/standard/IRadarDataProcessing.h"
#include "sdk/vrn.h"

#include <QDebug>
#include <cstring>

RadarPlayback::RadarPlayback(const Vrn* vrn, IRadarConfiguration* configuration, IRadarDataProcessing* processing,
                             QObject* parent)
    : ReplayPlayback(parent)
    , m_vrn(vrn)
    , m_configuration(configuration)
    , m_processing(processing)
{
}

RadarPlayback::~RadarPlayback() = default;

quint32 RadarPlayback::floatsPerChannel(const RadarRecordingHeader& header) const
{
    return header.chirpsPerFrame * header.samplesPerChirp;
}

bool RadarPlayback::loadConfiguration(const QByteArray& document, QString& error)
{
    if (!m_configuration || !m_configuration->loadRecordingDocument(document, error))
        return false;
    m_configuration->setPlaybackActive(true);
    return true;
}

void RadarPlayback::attach()
{
    if (m_processing)
        m_processing->setDataProvider(this);
}

RadarFrameResult RadarPlayback::getNextFrame(const RadarDeviceConfiguration&)
{
    return nextRecord() ? makeFrame(row()) : RadarFrameResult();
}

RadarFrameResult RadarPlayback::makeFrame(const RadarFrameRecord& row)
{
    const RadarRecordingHeader& recorded = header();
    vrn_Frame_R_t* frame = nullptr;
    if (!m_vrn || m_vrn->frame_r_create(channels(), recorded.chirpsPerFrame, recorded.samplesPerChirp, &frame)
        || !frame) {
        qCritical() << "Cannot create a frame for playback";
        return RadarFrameResult();
    }
    SharedFrame shared = makeSharedFrame(m_vrn, frame);
    const float* source = row.samples.data();
    for (quint32 channel = 0; channel < frame->num_rx; ++channel) {
        vrn_Matrix_R_s* matrix = frame->rx_data[channel];
        for (quint32 chirp = 0; chirp < matrix->rows; ++chirp) {
            std::memcpy(matrix->data + size_t(chirp) * matrix->stride, source, matrix->cols * sizeof(float));
            source += matrix->cols;
        }
    }
    return RadarFrameResult { true, shared.get(), shared };
}
