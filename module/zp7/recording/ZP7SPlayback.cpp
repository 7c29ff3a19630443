#include "zp7/recording/ZP7SPlayback.h"

#include "sdk/vrn.h"
#include "zp7/ZP7SDataProcessing.h"
#include "zp7/config/ZP7SConfig.h"

#include <QDebug>

ZP7SPlayback::ZP7SPlayback(const Vrn* vrn, ZP7SConfig* config, ZP7SDataProcessing* processing, QObject* parent)
    : ReplayPlayback(parent)
    , m_vrn(vrn)
    , m_config(config)
    , m_processing(processing)
{
}

ZP7SPlayback::~ZP7SPlayback() = default;

bool ZP7SPlayback::loadConfiguration(const QByteArray& document, QString& error)
{
    if (!m_config || !m_config->loadRecordingDocument(document, error))
        return false;
    m_config->setPlaybackActive(true);
    return true;
}

void ZP7SPlayback::attach()
{
    if (m_processing)
        m_processing->setDataProvider(this);
}

ZP7SFrameResult ZP7SPlayback::getNextFrame(const ZP7SDeviceConfig&)
{
    if (!nextRecord())
        return ZP7SFrameResult();
    ZP7SFrame frame = makeFrame(row());
    return ZP7SFrameResult { frame != nullptr, frame };
}

ZP7SFrame ZP7SPlayback::makeFrame(const RadarFrameRecord& row) const
{
    vrn_Corvix_Frame_C_t* created = nullptr;
    if (!m_vrn || m_vrn->corvix_frame_c_create(channels(), header().samplesPerChirp, &created) || !created) {
        qCritical() << "Cannot create a pulsed-Doppler frame for playback";
        return ZP7SFrame();
    }
    const Vrn* vrn = m_vrn;
    ZP7SFrame frame(created, [vrn](const vrn_Corvix_Frame_C_t* done) {
        if (vrn_Error_t error = vrn->corvix_frame_c_destroy(const_cast<vrn_Corvix_Frame_C_t*>(done)))
            qCritical() << "Cannot release a played-back frame:" << error;
    });
    // The record holds each channel's samples as I, Q pairs.
    const float* source = row.samples.data();
    for (quint32 channel = 0; channel < created->num_channels; ++channel) {
        vrn_Matrix_C_s* matrix = created->channel_data[channel];
        for (quint32 r = 0; r < matrix->rows; ++r) {
            vrn_Complex_t* out = matrix->data + size_t(r) * matrix->stride;
            for (quint32 c = 0; c < matrix->cols; ++c) {
                out[c].re = *source++;
                out[c].im = *source++;
            }
        }
    }
    return frame;
}
