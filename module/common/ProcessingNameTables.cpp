#include "common/ProcessingNameTables.h"

#include <QDebug>

namespace {

template<typename Value>
struct Entry {
    const char* name;
    Value value;
};

const Entry<vrn_FFT_Type_t> kFftTypes[] = {
    { "FFT_TYPE_R2C", VRN_FFT_TYPE_R2C },
    { "FFT_TYPE_C2C", VRN_FFT_TYPE_C2C },
};

const Entry<vrn_Window_Type_t> kWindowTypes[] = {
    { "Hamming", VRN_WINDOW_HAMMING },
    { "Hanning", VRN_WINDOW_HANN },
    { "Blackmann Harris", VRN_WINDOW_BLACKMANHARRIS },
    { "Chebyshev", VRN_WINDOW_CHEBYSHEV },
    { "Blackman", VRN_WINDOW_BLACKMAN },
};

const Entry<vrn_Scale_Type_t> kScaleTypes[] = {
    { "SCALE_TYPE_LINEAR", VRN_SCALE_TYPE_LINEAR },
    { "SCALE_TYPE_DECIBEL_10LOG", VRN_SCALE_TYPE_DECIBEL_10LOG },
    { "SCALE_TYPE_DECIBEL_20LOG", VRN_SCALE_TYPE_DECIBEL_20LOG },
};

template<typename Value, size_t N>
QStringList namesOf(const Entry<Value> (&table)[N])
{
    QStringList names;
    for (const auto& entry : table)
        names.append(QString::fromLatin1(entry.name));
    return names;
}

template<typename Value, size_t N>
bool lookUp(const Entry<Value> (&table)[N], const QString& name, Value& value)
{
    for (const auto& entry : table) {
        if (name == QLatin1String(entry.name)) {
            value = entry.value;
            return true;
        }
    }
    return false;
}

}

namespace ProcessingNameTables {

QStringList fftTypeNames()
{
    return namesOf(kFftTypes);
}

QStringList windowTypeNames()
{
    return namesOf(kWindowTypes);
}

QStringList scaleTypeNames()
{
    return namesOf(kScaleTypes);
}

vrn_FFT_Type_t fftType(const QString& name)
{
    vrn_FFT_Type_t value = VRN_FFT_TYPE_R2C;
    if (!lookUp(kFftTypes, name, value))
        qWarning("Current fft type from configuration does not fit into any defined type by SDK");
    return value;
}

vrn_Window_Type_t windowType(const QString& name)
{
    vrn_Window_Type_t value = VRN_WINDOW_BLACKMAN;
    if (!lookUp(kWindowTypes, name, value))
        qWarning("Current window type from configuration does not fit into any defined type by SDK");
    return value;
}

vrn_Scale_Type_t scaleType(const QString& name)
{
    vrn_Scale_Type_t value = VRN_SCALE_TYPE_DECIBEL_20LOG;
    if (!lookUp(kScaleTypes, name, value))
        qWarning("Current output scale type from configuration does not fit into any defined type by SDK");
    return value;
}

}
