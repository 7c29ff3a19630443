#include "fmcw/processing/SharedMatrix.h"

#include <QDebug>

SharedMatrix makeSharedMatrix(const Vrn* vrn, vrn_Matrix_R_s* matrix)
{
    if (!matrix)
        return SharedMatrix();
    return SharedMatrix(matrix, [vrn](const vrn_Matrix_R_s* owned) {
        if (!vrn || !vrn->matrix_r_destroy)
            return;
        if (vrn_Error_t error = vrn->matrix_r_destroy(const_cast<vrn_Matrix_R_s*>(owned)))
            qCritical() << "Cannot destroy matrix" << error;
    });
}
