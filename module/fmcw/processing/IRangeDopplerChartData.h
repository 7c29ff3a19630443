#pragma once

#include "fmcw/processing/SharedMatrix.h"

#include <QMetaType>
#include <QtGlobal>

class QPixmap;

// What the range-Doppler image item draws: the newest map as a colour image.
class IRangeDopplerChartData
{
public:
    virtual ~IRangeDopplerChartData() = default;

    // width = Doppler bins, height = range bins, threshold = the lower end of
    // the colour scale in dB as a positive number.
    virtual void setDimensions(quint32 width, quint32 height, quint32 thresholdDb) = 0;
    virtual void setMap(SharedMatrix map) = 0;
    // Leaves `pixmap` as it is and answers false when there is no map of
    // the set dimensions.
    virtual bool render(QPixmap& pixmap) = 0;
};

Q_DECLARE_METATYPE(IRangeDopplerChartData*)
