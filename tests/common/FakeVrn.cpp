#include "FakeProcessingVrn.h"

FakeProcessingVrn::FakeProcessingVrn()
{
    current() = this;
    table.api_version = VRN_API_VERSION;
    table.struct_size = sizeof(Vrn);

    table.frame_r_create = [](uint32_t num_rx, uint32_t chirps, uint32_t samples,
                              vrn_Frame_R_t** frame) -> vrn_Error_t {
        auto* created = new vrn_Frame_R_t { num_rx, new vrn_Matrix_R_s*[num_rx] };
        for (uint32_t i = 0; i < num_rx; ++i)
            created->rx_data[i] = new vrn_Matrix_R_s { chirps, samples, samples, new float[chirps * samples]() };
        ++current()->framesAlive;
        *frame = created;
        return nullptr;
    };
    table.frame_r_destroy = [](vrn_Frame_R_t* frame) -> vrn_Error_t {
        for (uint32_t i = 0; i < frame->num_rx; ++i) {
            delete[] frame->rx_data[i]->data;
            delete frame->rx_data[i];
        }
        delete[] frame->rx_data;
        delete frame;
        --current()->framesAlive;
        return nullptr;
    };
    table.frame_r_channel = [](const vrn_Frame_R_t* frame, uint32_t index,
                               const vrn_Matrix_R_s** matrix) -> vrn_Error_t {
        if (index >= frame->num_rx)
            return "no such channel";
        *matrix = frame->rx_data[index];
        return nullptr;
    };
    table.vector_r_create = [](uint32_t len, vrn_Vector_R_s** vector) -> vrn_Error_t {
        *vector = new vrn_Vector_R_s { len, new float[len]() };
        ++current()->vectorsAlive;
        return nullptr;
    };
    table.vector_r_destroy = [](vrn_Vector_R_s* vector) -> vrn_Error_t {
        delete[] vector->data;
        delete vector;
        --current()->vectorsAlive;
        return nullptr;
    };
    table.matrix_r_create = [](uint32_t rows, uint32_t cols, vrn_Matrix_R_s** matrix) -> vrn_Error_t {
        *matrix = new vrn_Matrix_R_s { rows, cols, cols, new float[rows * cols]() };
        ++current()->matricesAlive;
        return nullptr;
    };
    table.matrix_r_destroy = [](vrn_Matrix_R_s* matrix) -> vrn_Error_t {
        delete[] matrix->data;
        delete matrix;
        --current()->matricesAlive;
        return nullptr;
    };

    table.rs_create = [](const vrn_RS_Config_t* config, vrn_RS_Handle* handle) -> vrn_Error_t {
        FakeProcessingVrn& f = *current();
        f.rsConfig = *config;
        if (f.rsCreateError)
            return f.rsCreateError;
        *handle = reinterpret_cast<vrn_RS_Handle>(&f);
        return nullptr;
    };
    table.rs_destroy = [](vrn_RS_Handle) -> vrn_Error_t {
        ++current()->rsDestroyCalls;
        return current()->rsDestroyError;
    };
    table.rs_run = [](vrn_RS_Handle, const vrn_Matrix_R_s* input, vrn_Vector_R_s* output) -> vrn_Error_t {
        FakeProcessingVrn& f = *current();
        if (const char* error = f.rsRunErrors.value(f.rsRuns++, nullptr))
            return error;
        for (uint32_t k = 0; k < output->len; ++k)
            output->data[k] = input->data[0] + float(k);
        return nullptr;
    };
    table.rs_run_c = [](vrn_RS_Handle, const vrn_Matrix_C_s* input, vrn_Vector_R_s* output) -> vrn_Error_t {
        FakeProcessingVrn& f = *current();
        if (const char* error = f.rsRunErrors.value(f.rsRuns++, nullptr))
            return error;
        for (uint32_t k = 0; k < output->len; ++k)
            output->data[k] = input->data[0].re;
        return nullptr;
    };
    table.rs_distance_axis = [](uint32_t, uint32_t, float, vrn_Math_Axis_Spec_s* axis) -> vrn_Error_t {
        if (current()->axisError)
            return current()->axisError;
        *axis = current()->axis;
        return nullptr;
    };
    table.rs_frequency_axis = [](uint32_t fft, float rate, vrn_Math_Axis_Spec_s* axis) -> vrn_Error_t {
        if (current()->axisError)
            return current()->axisError;
        *axis = { 0.0, rate / 2.0, double(rate) / fft };
        return nullptr;
    };

    table.rdm_create = [](const vrn_RDM_Config_t* config, vrn_RDM_Handle* handle) -> vrn_Error_t {
        FakeProcessingVrn& f = *current();
        f.rdmConfig = *config;
        if (f.rdmCreateError)
            return f.rdmCreateError;
        *handle = reinterpret_cast<vrn_RDM_Handle>(&f);
        return nullptr;
    };
    table.rdm_destroy = [](vrn_RDM_Handle) -> vrn_Error_t { return current()->rdmDestroyError; };
    table.rdm_run = [](vrn_RDM_Handle, const vrn_Matrix_R_s* input, vrn_Matrix_R_s* output) -> vrn_Error_t {
        if (current()->rdmRunError)
            return current()->rdmRunError;
        for (uint32_t i = 0; i < output->rows * output->cols; ++i)
            output->data[i] = input->data[0];
        return nullptr;
    };
    table.rdm_range_axis = [](vrn_RDM_Handle, uint64_t bandwidth, vrn_Math_Axis_Spec_s* axis) -> vrn_Error_t {
        current()->lastBandwidth = bandwidth;
        if (current()->rangeAxisError)
            return current()->rangeAxisError;
        *axis = { 0.0, 12.0, 0.1 };
        return nullptr;
    };
    table.rdm_speed_axis = [](vrn_RDM_Handle, float centre, float chirpTime,
                              vrn_Math_Axis_Spec_s* axis) -> vrn_Error_t {
        current()->lastCenterFrequency = centre;
        current()->lastChirpTime = chirpTime;
        if (current()->speedAxisError)
            return current()->speedAxisError;
        *axis = { -2.5, 2.5, 0.02 };
        return nullptr;
    };

    table.ps_default_config = [](vrn_Device_Type_t, vrn_PresenceSensing_Config_t* config) -> vrn_Error_t {
        *config = current()->psDefaults;
        return nullptr;
    };
    table.ps_range_resolution = [](const vrn_Device_Config_t*, float* resolution) -> vrn_Error_t {
        *resolution = 0.0375f;
        return nullptr;
    };
    table.ps_create = [](const vrn_PresenceSensing_Config_t* config,
                         vrn_PresenceSensing_Handle* handle) -> vrn_Error_t {
        FakeProcessingVrn& f = *current();
        f.psConfig = *config;
        if (f.psCreateError)
            return f.psCreateError;
        *handle = reinterpret_cast<vrn_PresenceSensing_Handle>(&f);
        return nullptr;
    };
    table.ps_destroy = [](vrn_PresenceSensing_Handle) -> vrn_Error_t {
        ++current()->psDestroyCalls;
        return current()->psDestroyError;
    };
    table.ps_input_matrix = [](const vrn_Matrix_R_s* channel, const vrn_Matrix_R_s** input) -> vrn_Error_t {
        if (current()->psInputMissing)
            return "no input";
        *input = channel;
        return nullptr;
    };
    table.ps_run = [](vrn_PresenceSensing_Handle, const vrn_Matrix_R_s* input,
                      vrn_PresenceSensing_Result_t* result) -> vrn_Error_t {
        FakeProcessingVrn& f = *current();
        const int run = f.psRuns++;
        if (const char* error = f.psRunErrors.value(run, nullptr))
            return error;
        result->state = VRN_PRESENCE_STATE_PRESENCE;
        result->motion_energy = input->data[0];
        result->frame_count = uint32_t(run + 1);
        return nullptr;
    };

    table.seg_create = [](const vrn_Segmentation_Config_t* config, vrn_Segmentation_Handle* handle) -> vrn_Error_t {
        FakeProcessingVrn& f = *current();
        f.segConfig = *config;
        if (f.segCreateError)
            return f.segCreateError;
        *handle = reinterpret_cast<vrn_Segmentation_Handle>(&f);
        return nullptr;
    };
    table.seg_destroy = [](vrn_Segmentation_Handle) -> vrn_Error_t { return nullptr; };
    table.seg_run = [](vrn_Segmentation_Handle, const vrn_Frame_R_t* frame,
                       vrn_Segmentation_Result_t* result) -> vrn_Error_t {
        FakeProcessingVrn& f = *current();
        f.segInputMarkers.clear();
        for (uint32_t i = 0; i < frame->num_rx; ++i)
            f.segInputMarkers.append(frame->rx_data[i]->data[0]);
        if (f.segRunError)
            return f.segRunError;
        *result = f.segResult;
        return nullptr;
    };
}

SharedFrame FakeProcessingVrn::newFrame(uint32_t channels, uint32_t chirps, uint32_t samples)
{
    vrn_Frame_R_t* frame = nullptr;
    table.frame_r_create(channels, chirps, samples, &frame);
    for (uint32_t c = 0; c < channels; ++c) {
        vrn_Matrix_R_s* m = frame->rx_data[c];
        for (uint32_t i = 0; i < chirps * samples; ++i)
            m->data[i] = 10.0f * float(c + 1);
    }
    const Vrn* vrn = &table;
    return SharedFrame(frame, [vrn](const vrn_Frame_R_t* f) { vrn->frame_r_destroy(const_cast<vrn_Frame_R_t*>(f)); });
}
