#include "common/SharedVector.h"

#include <QDebug>

SharedVector makeSharedVector(const Vrn* vrn, vrn_Vector_R_s* vector)
{
    if (!vector)
        return SharedVector();
    return SharedVector(vector, [vrn](const vrn_Vector_R_s* owned) {
        if (!vrn || !vrn->vector_r_destroy)
            return;
        if (vrn_Error_t error = vrn->vector_r_destroy(const_cast<vrn_Vector_R_s*>(owned)))
            qCritical() << "Cannot destroy vector" << error;
    });
}
