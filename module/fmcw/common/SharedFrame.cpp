#include "fmcw/common/SharedFrame.h"

#include <QDebug>

SharedFrame makeSharedFrame(const Vrn* vrn, vrn_Frame_R_t* frame)
{
    if (!frame)
        return SharedFrame();
    return SharedFrame(frame, [vrn](const vrn_Frame_R_t* owned) {
        if (!vrn || !vrn->frame_r_destroy)
            return;
        if (vrn_Error_t error = vrn->frame_r_destroy(const_cast<vrn_Frame_R_t*>(owned)))
            qCritical() << "Cannot destroy frame" << error;
    });
}
