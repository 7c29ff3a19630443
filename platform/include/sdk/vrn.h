/*
 * Radar SDK: records, status codes and the table of entry points.
 *
 * The SDK is a plain C library. An implementation exports one symbol,
 * vrn_entry_points(), returning a table of function pointers (struct Vrn);
 * the host loads the library, takes the table and hands it to its plug-ins,
 * which never load the SDK themselves.
 *
 * Conventions of every entry point:
 *  - Calls that can only succeed or fail return an error text, vrn_Error_t:
 *    NULL on success, otherwise a zero-terminated English sentence.
 *  - Calls whose failures the caller must tell apart (device creation, frame
 *    fetches, temperature) return a vrn_Status_t; status_text() gives the
 *    sentence for any status, also for codes the caller does not know.
 *  - Error texts stay valid until the next SDK call on the same thread.
 *  - Values are returned through out-pointers, written only on success.
 *  - Records handed in are read during the call only; handles are opaque and
 *    must be destroyed with the matching destroy call.
 */
#ifndef VRN_SDK_H
#define VRN_SDK_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define VRN_API_VERSION 1u

typedef const char* vrn_Error_t;

/* ---------------------------------------------------------------- status */

typedef int32_t vrn_Status_t;
enum {
    VRN_STATUS_OK = 0,
    VRN_STATUS_INVALID_ARGUMENT = 0x10001,
    VRN_STATUS_NOT_SUPPORTED = 0x1000c,
    VRN_STATUS_COMMUNICATION_ERROR = 0x11000,
    VRN_STATUS_DEVICE_NOT_FOUND = 0x11001,
    VRN_STATUS_COMMUNICATION_LOST = 0x11002,
    VRN_STATUS_DEVICE_BUSY = 0x11003,
    VRN_STATUS_FRAME_TIMEOUT = 0x1100d,
    VRN_STATUS_FRAME_FETCH_FAILED = 0x1100e,
    VRN_STATUS_FIRMWARE_NOT_SUPPORTED = 0x11010
};

/* ------------------------------------------------------------ identities */

/* Board type as reported by the device list: 32-bit on every platform. */
typedef enum vrn_Device_Shield_Type_t {
    VRN_SHIELD_UNKNOWN = 0,
    VRN_SHIELD_FMCW_512 = 512,
    VRN_SHIELD_FMCW_513 = 513,
    VRN_SHIELD_FMCW_514 = 514,
    VRN_SHIELD_ZP7_768 = 768,
    VRN_SHIELD_FORCE_32BIT = 0x7fffffff
} vrn_Device_Shield_Type_t;

/* Chip family, the key of the SDK's per-chip defaults. */
typedef enum vrn_Device_Type_t {
    VRN_DEVICE_TYPE_UNKNOWN = 0,
    VRN_DEVICE_TYPE_KMR7A = 1,
    VRN_DEVICE_TYPE_KMR7B = 2,
    VRN_DEVICE_TYPE_KMR7C = 3,
    VRN_DEVICE_TYPE_ZP7 = 4,
    VRN_DEVICE_TYPE_FORCE_32BIT = 0x7fffffff
} vrn_Device_Type_t;

#define VRN_UUID_MAX 64
#define VRN_NAME_MAX 32
#define VRN_DESCRIPTION_MAX 128

typedef struct vrn_Device_List_Entry_t {
    vrn_Device_Shield_Type_t shield_type;
    char uuid[VRN_UUID_MAX]; /* zero-terminated */
} vrn_Device_List_Entry_t;

typedef struct vrn_Device_Info_t {
    char name[VRN_NAME_MAX];        /* chip name, e.g. "KMR7A" */
    uint64_t min_rf_frequency_Hz;
    uint64_t max_rf_frequency_Hz;
    uint8_t num_tx_antennas;
    uint8_t num_rx_antennas;
    uint8_t max_tx_power;           /* highest Tx power level, SDK steps */
    uint8_t adc_resolution_bits;
    uint32_t max_sample_rate_Hz;
    vrn_Device_Shield_Type_t shield_type;
} vrn_Device_Info_t;

typedef struct vrn_Firmware_Info_t {
    char description[VRN_DESCRIPTION_MAX];
    uint16_t version_major;
    uint16_t version_minor;
    uint16_t version_build;
} vrn_Firmware_Info_t;

/* -------------------------------------------------------- linear algebra */

typedef struct vrn_Complex_t {
    float re;
    float im;
} vrn_Complex_t;

/* Row-major matrix; element (r, c) is data[r * stride + c]. */
typedef struct vrn_Matrix_R_s {
    uint32_t rows;
    uint32_t cols;
    uint32_t stride;
    float* data;
} vrn_Matrix_R_s;

typedef struct vrn_Matrix_C_s {
    uint32_t rows;
    uint32_t cols;
    uint32_t stride;
    vrn_Complex_t* data;
} vrn_Matrix_C_s;

typedef struct vrn_Vector_R_s {
    uint32_t len;
    float* data;
} vrn_Vector_R_s;

/* Real FMCW frame: one matrix per virtual channel, chirps x samples. */
typedef struct vrn_Frame_R_t {
    uint32_t num_rx;
    vrn_Matrix_R_s** rx_data;
} vrn_Frame_R_t;

/* ------------------------------------------------- FMCW device records */

typedef enum vrn_Mimo_Mode_t {
    VRN_MIMO_OFF = 0,
    VRN_MIMO_TDM = 1,
    VRN_MIMO_FORCE_32BIT = 0x7fffffff
} vrn_Mimo_Mode_t;

/* Scene description the metrics translation turns into a device config. */
typedef struct vrn_Metrics_t {
    uint32_t sample_rate_Hz;
    uint32_t rx_mask;
    uint32_t tx_mask;
    uint32_t tx_power_level;
    uint32_t if_gain_dB;
    float range_resolution_m;
    float max_range_m;
    float max_speed_m_s;
    float speed_resolution_m_s;
    float frame_repetition_time_s;
    float center_frequency_Hz;
} vrn_Metrics_t;

typedef struct vrn_Metrics_Limits_t {
    uint32_t sample_rate_Hz_min, sample_rate_Hz_max;
    uint32_t rx_mask_min, rx_mask_max;
    uint32_t tx_mask_min, tx_mask_max;
    uint32_t tx_power_level_min, tx_power_level_max;
    uint32_t if_gain_dB_min, if_gain_dB_max;
    float max_range_m_min, max_range_m_max;
    float range_resolution_m_min, range_resolution_m_max;
    float speed_resolution_m_s_min, speed_resolution_m_s_max;
    float max_speed_m_s_min, max_speed_m_s_max;
    float frame_repetition_time_s_min, frame_repetition_time_s_max;
} vrn_Metrics_Limits_t;

typedef struct vrn_Device_Config_t {
    uint32_t sample_rate_Hz;
    uint32_t tx_mask;          /* first antenna mask: active transmitters */
    uint32_t rx_mask;          /* second antenna mask: active receivers */
    uint32_t tx_power_level;
    uint32_t if_gain_dB;
    uint64_t lower_frequency_Hz;
    uint64_t upper_frequency_Hz;
    uint32_t num_samples_per_chirp;
    uint32_t num_chirps_per_frame;
    float chirp_repetition_time_s;
    float frame_repetition_time_s;
    vrn_Mimo_Mode_t mimo_mode;
} vrn_Device_Config_t;

/* ------------------------------------------------ processing records */

typedef enum vrn_FFT_Type_t {
    VRN_FFT_TYPE_R2C = 1,
    VRN_FFT_TYPE_C2C = 2,
    VRN_FFT_TYPE_FORCE_32BIT = 0x7fffffff
} vrn_FFT_Type_t;

typedef enum vrn_Window_Type_t {
    VRN_WINDOW_HAMMING = 0,
    VRN_WINDOW_HANN = 1,
    VRN_WINDOW_BLACKMANHARRIS = 2,
    VRN_WINDOW_CHEBYSHEV = 3,
    VRN_WINDOW_BLACKMAN = 4,
    VRN_WINDOW_FORCE_32BIT = 0x7fffffff
} vrn_Window_Type_t;

typedef enum vrn_Scale_Type_t {
    VRN_SCALE_TYPE_LINEAR = 0,
    VRN_SCALE_TYPE_DECIBEL_10LOG = 10,
    VRN_SCALE_TYPE_DECIBEL_20LOG = 20,
    VRN_SCALE_TYPE_FORCE_32BIT = 0x7fffffff
} vrn_Scale_Type_t;

typedef struct vrn_Window_Config_t {
    vrn_Window_Type_t type;
    uint32_t size;
    float scale;
    float attenuation_dB;      /* side-lobe level of the Chebyshev window */
} vrn_Window_Config_t;

typedef struct vrn_PPFFT_Config_t {
    vrn_FFT_Type_t fft_type;
    uint32_t fft_size;
    uint8_t mean_removal_enabled;
    uint8_t is_normalized_window;
    vrn_Window_Config_t window_config;
} vrn_PPFFT_Config_t;

typedef struct vrn_RS_Config_t {
    float spect_threshold;
    vrn_Scale_Type_t output_scale_type;
    vrn_PPFFT_Config_t fft_config;
    uint32_t num_of_chirps_per_frame;
} vrn_RS_Config_t;

typedef struct vrn_RDM_Config_t {
    float spect_threshold;
    vrn_Scale_Type_t output_scale_type;
    vrn_PPFFT_Config_t range_fft_config;
    vrn_PPFFT_Config_t doppler_fft_config;
} vrn_RDM_Config_t;

typedef struct vrn_Math_Axis_Spec_s {
    double min;
    double max;
    double step;
} vrn_Math_Axis_Spec_s;

typedef enum vrn_Level_t {
    VRN_LEVEL_HIGH = 0,
    VRN_LEVEL_MED = 1,
    VRN_LEVEL_LOW = 2,
    VRN_LEVEL_FORCE_32BIT = 0x7fffffff
} vrn_Level_t;

typedef struct vrn_PresenceSensing_Config_t {
    vrn_Device_Config_t device_config;  /* the frames the algorithm will see */
    float min_detection_range_m;
    float max_detection_range_m;
    float range_hysteresis_percentage;  /* widening of the range gate once present */
    uint32_t absence_confirm_count;     /* quiet frames before absence */
    uint32_t presence_confirm_count;    /* moving frames before presence */
    float range_resolution_m;           /* range bin length, see ps_range_resolution */
    float sensitivity_threshold;        /* motion energy threshold, linear */
} vrn_PresenceSensing_Config_t;

typedef enum vrn_Presence_State_t {
    VRN_PRESENCE_STATE_PRESENCE = 0,
    VRN_PRESENCE_STATE_ABSENCE = 1,
    VRN_PRESENCE_STATE_FORCE_32BIT = 0x7fffffff
} vrn_Presence_State_t;

typedef struct vrn_PresenceSensing_Result_t {
    vrn_Presence_State_t state;
    float target_range_m;        /* range of the strongest motion, 0 when absent */
    float motion_energy;
    uint32_t frame_count;        /* frames processed by the handle so far */
} vrn_PresenceSensing_Result_t;

#define VRN_SEGMENTATION_MAX_TRACKS 50
#define VRN_SEGMENTATION_MAX_SEGMENTS 3

typedef struct vrn_Segmentation_Config_t {
    uint32_t num_samples_per_chirp;
    uint32_t num_chirps_per_frame;
    float bandwidth_Hz;
    float chirp_repetition_time_s;
    float center_frequency_Hz;
    float max_detection_range_m;
    uint8_t enable_hysteresis;
    uint32_t max_num_tracks;
    uint32_t num_segments;
    float segments_degrees[VRN_SEGMENTATION_MAX_SEGMENTS];
    vrn_Level_t detection_sensitivity;
    vrn_Level_t static_target_removal;
} vrn_Segmentation_Config_t;

typedef struct vrn_Segmentation_Track_t {
    uint32_t id;
    float range_m;
    float angle_deg;
    float speed_m_s;
} vrn_Segmentation_Track_t;

typedef struct vrn_Segmentation_Result_t {
    uint32_t num_tracks;
    vrn_Segmentation_Track_t tracks[VRN_SEGMENTATION_MAX_TRACKS];
    uint32_t num_segments;
    uint8_t segment_occupied[VRN_SEGMENTATION_MAX_SEGMENTS];
} vrn_Segmentation_Result_t;

/* ------------------------------------------------------ CW mode records */

typedef struct vrn_Device_Baseband_Config_t {
    uint32_t gain_amplifier_index;
    uint32_t gain_high_pass_index;
    uint32_t hp_cutoff_index;
    uint32_t aaf_cutoff_index;
} vrn_Device_Baseband_Config_t;

typedef struct vrn_Device_Test_Signal_Generator_t {
    uint32_t mode_index;
    float frequency_Hz;
} vrn_Device_Test_Signal_Generator_t;

typedef struct vrn_Device_ADC_Config_t {
    uint32_t sample_rate_Hz;
    uint32_t tracking_conversions_index;
    uint32_t sample_time_index;
    uint32_t double_msb_time;
    uint32_t oversampling_index;
} vrn_Device_ADC_Config_t;

typedef struct vrn_CW_Config_t {
    float rf_center_frequency_Hz;
    uint32_t dac_value;
    uint32_t tx_mask;
    uint32_t rx_mask;
    uint32_t num_samples;
    vrn_Device_Test_Signal_Generator_t test_signal;
    vrn_Device_ADC_Config_t adc;
    vrn_Device_Baseband_Config_t baseband;
} vrn_CW_Config_t;

typedef struct vrn_CW_Limits_t {
    float rf_center_frequency_Hz_min, rf_center_frequency_Hz_max;
    uint32_t dac_value_min, dac_value_max;
    uint32_t num_samples_min, num_samples_max;
    float test_signal_frequency_Hz_min, test_signal_frequency_Hz_max;
} vrn_CW_Limits_t;

/* ------------------------------------------- pulsed Doppler (ZP7) records */

typedef enum vrn_Corvix_Channel_t {
    VRN_CORVIX_CHANNEL_TX1_RX1 = 0,
    VRN_CORVIX_CHANNEL_TX2_RX2 = 1,
    VRN_CORVIX_CHANNEL_FORCE_32BIT = 0x7fffffff
} vrn_Corvix_Channel_t;

typedef struct vrn_Corvix_Pulse_Config_t {
    vrn_Corvix_Channel_t channel;
    uint8_t tx_power_level;
    uint16_t abb_gain_index;
} vrn_Corvix_Pulse_Config_t;

typedef struct vrn_Corvix_Frame_Config_t {
    uint16_t num_samples;
    float pulse_repetition_time_s;
    float frame_repetition_time_s;
} vrn_Corvix_Frame_Config_t;

typedef struct vrn_Corvix_Limits_t {
    uint8_t tx_power_level_min, tx_power_level_max;
    uint16_t abb_gain_index_min, abb_gain_index_max;
    uint16_t num_samples_min, num_samples_max;
    float pulse_repetition_time_s_min, pulse_repetition_time_s_max;
    float frame_repetition_time_s_min, frame_repetition_time_s_max;
} vrn_Corvix_Limits_t;

/* Complex I/Q frame of the pulsed Doppler chip: one 1 x samples matrix per channel. */
typedef struct vrn_Corvix_Frame_C_t {
    uint32_t num_channels;
    vrn_Matrix_C_s** channel_data;
} vrn_Corvix_Frame_C_t;

/* --------------------------------------------------------------- handles */

typedef struct vrn_Device_List_s* vrn_Device_List_Handle;
typedef struct vrn_Device_s* vrn_Device_Handle;
typedef struct vrn_RS_s* vrn_RS_Handle;
typedef struct vrn_RDM_s* vrn_RDM_Handle;
typedef struct vrn_PresenceSensing_s* vrn_PresenceSensing_Handle;
typedef struct vrn_Segmentation_s* vrn_Segmentation_Handle;
typedef struct vrn_CW_Controller_s* vrn_CW_Handle;
typedef struct vrn_Corvix_Device_s* vrn_Corvix_Handle;

/* ---------------------------------------------------- the entry points */

typedef struct Vrn {
    uint32_t api_version;   /* VRN_API_VERSION of the implementation */
    uint32_t struct_size;   /* sizeof(struct Vrn) of the implementation */

    const char* (*status_text)(vrn_Status_t status);

    /* device list */
    vrn_Error_t (*device_list_get)(vrn_Device_List_Handle* list);
    vrn_Error_t (*device_list_size)(vrn_Device_List_Handle list, uint32_t* count);
    vrn_Error_t (*device_list_entry)(vrn_Device_List_Handle list, uint32_t index,
                                     vrn_Device_List_Entry_t* entry);
    vrn_Error_t (*device_list_destroy)(vrn_Device_List_Handle list);

    /* FMCW device life and configuration */
    vrn_Status_t (*device_create_by_uuid)(const char* uuid, vrn_Device_Handle* device);
    vrn_Error_t (*device_destroy)(vrn_Device_Handle device);
    vrn_Error_t (*device_get_metrics_limits)(vrn_Device_Handle device, vrn_Metrics_Limits_t* limits);
    vrn_Error_t (*device_translate_metrics)(vrn_Device_Handle device, const vrn_Metrics_t* metrics,
                                            vrn_Device_Config_t* config);
    vrn_Error_t (*device_set_config)(vrn_Device_Handle device, const vrn_Device_Config_t* config);
    vrn_Error_t (*device_get_config)(vrn_Device_Handle device, vrn_Device_Config_t* config);
    vrn_Error_t (*device_get_chirp_time)(vrn_Device_Handle device, const vrn_Device_Config_t* config,
                                         float* chirp_time_s);
    vrn_Error_t (*config_get_pulse_repetition_time)(const vrn_Device_Config_t* config,
                                                    float* pulse_repetition_time_s);

    /* FMCW acquisition: waits up to timeout_ms for the next frame */
    vrn_Status_t (*device_get_next_frame)(vrn_Device_Handle device, vrn_Frame_R_t* frame,
                                          uint16_t timeout_ms);
    vrn_Error_t (*device_stop_acquisition)(vrn_Device_Handle device, uint8_t* stopped);

    /* FMCW device queries */
    vrn_Status_t (*device_get_temperature)(vrn_Device_Handle device, float* temperature_celsius);
    vrn_Error_t (*device_get_num_rx_antennas)(vrn_Device_Handle device, uint32_t* count);
    vrn_Error_t (*device_get_num_tx_antennas)(vrn_Device_Handle device, uint32_t* count);
    vrn_Error_t (*device_get_info)(vrn_Device_Handle device, vrn_Device_Info_t* info);
    vrn_Error_t (*device_get_firmware_info)(vrn_Device_Handle device, vrn_Firmware_Info_t* info);
    vrn_Error_t (*device_get_type)(vrn_Device_Handle device, vrn_Device_Type_t* type);
    vrn_Error_t (*device_get_tx_power)(vrn_Device_Handle device, uint32_t tx_antenna,
                                       float* power_dBm);

    /* frames, matrices and vectors (allocated and freed by the SDK) */
    vrn_Error_t (*frame_r_create)(uint32_t num_rx, uint32_t num_chirps, uint32_t num_samples,
                                  vrn_Frame_R_t** frame);
    vrn_Error_t (*frame_r_destroy)(vrn_Frame_R_t* frame);
    vrn_Error_t (*frame_r_channel)(const vrn_Frame_R_t* frame, uint32_t index,
                                   const vrn_Matrix_R_s** matrix);
    vrn_Error_t (*matrix_r_create)(uint32_t rows, uint32_t cols, vrn_Matrix_R_s** matrix);
    vrn_Error_t (*matrix_r_clear)(vrn_Matrix_R_s* matrix);
    vrn_Error_t (*matrix_r_destroy)(vrn_Matrix_R_s* matrix);
    vrn_Error_t (*vector_r_create)(uint32_t len, vrn_Vector_R_s** vector);
    vrn_Error_t (*vector_r_destroy)(vrn_Vector_R_s* vector);

    /* range spectrum: first chirp of a channel, positive half of the FFT */
    vrn_Error_t (*rs_create)(const vrn_RS_Config_t* config, vrn_RS_Handle* handle);
    vrn_Error_t (*rs_destroy)(vrn_RS_Handle handle);
    vrn_Error_t (*rs_run)(vrn_RS_Handle handle, const vrn_Matrix_R_s* input, vrn_Vector_R_s* output);
    vrn_Error_t (*rs_run_c)(vrn_RS_Handle handle, const vrn_Matrix_C_s* input, vrn_Vector_R_s* output);
    vrn_Error_t (*rs_distance_axis)(uint32_t fft_size, uint32_t num_samples_per_chirp,
                                    float max_range_m, vrn_Math_Axis_Spec_s* axis);
    vrn_Error_t (*rs_frequency_axis)(uint32_t fft_size, float sample_rate_Hz,
                                     vrn_Math_Axis_Spec_s* axis);

    /* range-Doppler map: (range FFT / 2) rows x (Doppler FFT) columns */
    vrn_Error_t (*rdm_create)(const vrn_RDM_Config_t* config, vrn_RDM_Handle* handle);
    vrn_Error_t (*rdm_destroy)(vrn_RDM_Handle handle);
    vrn_Error_t (*rdm_run)(vrn_RDM_Handle handle, const vrn_Matrix_R_s* input, vrn_Matrix_R_s* output);
    vrn_Error_t (*rdm_range_axis)(vrn_RDM_Handle handle, uint64_t bandwidth_Hz,
                                  vrn_Math_Axis_Spec_s* axis);
    vrn_Error_t (*rdm_speed_axis)(vrn_RDM_Handle handle, float center_frequency_Hz,
                                  float chirp_repetition_time_s, vrn_Math_Axis_Spec_s* axis);

    /* presence sensing */
    vrn_Error_t (*ps_default_config)(vrn_Device_Type_t device_type,
                                     vrn_PresenceSensing_Config_t* config);
    vrn_Error_t (*ps_range_resolution)(const vrn_Device_Config_t* config, float* range_resolution_m);
    vrn_Error_t (*ps_create)(const vrn_PresenceSensing_Config_t* config,
                             vrn_PresenceSensing_Handle* handle);
    vrn_Error_t (*ps_destroy)(vrn_PresenceSensing_Handle handle);
    vrn_Error_t (*ps_input_matrix)(const vrn_Matrix_R_s* channel, const vrn_Matrix_R_s** input);
    vrn_Error_t (*ps_run)(vrn_PresenceSensing_Handle handle, const vrn_Matrix_R_s* input,
                          vrn_PresenceSensing_Result_t* result);

    /* segmentation: the frame holds the Rx1 and Rx3 channels, in that order (rx mask 0b101) */
    vrn_Error_t (*seg_default_config)(vrn_Device_Type_t device_type,
                                      const vrn_Device_Config_t* device_config,
                                      vrn_Segmentation_Config_t* config);
    vrn_Error_t (*seg_create)(const vrn_Segmentation_Config_t* config, vrn_Segmentation_Handle* handle);
    vrn_Error_t (*seg_destroy)(vrn_Segmentation_Handle handle);
    vrn_Error_t (*seg_run)(vrn_Segmentation_Handle handle, const vrn_Frame_R_t* frame,
                           vrn_Segmentation_Result_t* result);

    /* CW test mode of an opened FMCW device */
    vrn_Error_t (*cw_create)(vrn_Device_Handle device, vrn_CW_Handle* handle);
    vrn_Error_t (*cw_destroy)(vrn_CW_Handle handle);
    vrn_Error_t (*cw_get_default_config)(vrn_CW_Handle handle, vrn_CW_Config_t* config);
    vrn_Error_t (*cw_get_limits)(vrn_CW_Handle handle, vrn_CW_Limits_t* limits);
    vrn_Error_t (*cw_set_rf_frequency)(vrn_CW_Handle handle, float frequency_Hz);
    vrn_Error_t (*cw_get_rf_frequency)(vrn_CW_Handle handle, float* frequency_Hz);
    vrn_Error_t (*cw_set_dac_value)(vrn_CW_Handle handle, uint32_t dac_value);
    vrn_Error_t (*cw_get_dac_value)(vrn_CW_Handle handle, uint32_t* dac_value);
    vrn_Error_t (*cw_set_tx_antenna_mask)(vrn_CW_Handle handle, uint32_t tx_mask);
    vrn_Error_t (*cw_get_tx_antenna_mask)(vrn_CW_Handle handle, uint32_t* tx_mask);
    vrn_Error_t (*cw_set_test_signal_generator)(vrn_CW_Handle handle,
                                                const vrn_Device_Test_Signal_Generator_t* config);
    vrn_Error_t (*cw_get_test_signal_generator)(vrn_CW_Handle handle,
                                                vrn_Device_Test_Signal_Generator_t* config);
    vrn_Error_t (*cw_set_rx_antenna_mask)(vrn_CW_Handle handle, uint32_t rx_mask);
    vrn_Error_t (*cw_get_rx_antenna_mask)(vrn_CW_Handle handle, uint32_t* rx_mask);
    vrn_Error_t (*cw_set_num_samples)(vrn_CW_Handle handle, uint32_t num_samples);
    vrn_Error_t (*cw_get_num_samples)(vrn_CW_Handle handle, uint32_t* num_samples);
    vrn_Error_t (*cw_set_adc_config)(vrn_CW_Handle handle, const vrn_Device_ADC_Config_t* config);
    vrn_Error_t (*cw_get_adc_config)(vrn_CW_Handle handle, vrn_Device_ADC_Config_t* config);
    vrn_Error_t (*cw_set_baseband_config)(vrn_CW_Handle handle,
                                          const vrn_Device_Baseband_Config_t* config);
    vrn_Error_t (*cw_get_baseband_config)(vrn_CW_Handle handle, vrn_Device_Baseband_Config_t* config);
    vrn_Error_t (*cw_get_sampling_rate_limits)(vrn_CW_Handle handle,
                                               const vrn_Device_ADC_Config_t* config,
                                               uint32_t* min_rate_Hz, uint32_t* max_rate_Hz);
    vrn_Error_t (*cw_start_emission)(vrn_CW_Handle handle);
    vrn_Error_t (*cw_stop_emission)(vrn_CW_Handle handle);
    vrn_Error_t (*cw_is_emission_active)(vrn_CW_Handle handle, uint8_t* active);
    vrn_Status_t (*cw_get_temperature)(vrn_CW_Handle handle, float* temperature_celsius);
    vrn_Status_t (*cw_get_tx_power)(vrn_CW_Handle handle, uint32_t tx_antenna, float* power_dBm);
    vrn_Error_t (*cw_get_num_samples_per_antenna)(vrn_CW_Handle handle, uint32_t* num_samples);
    /* one chirp of num_samples per enabled Rx antenna */
    vrn_Status_t (*cw_capture_frame)(vrn_CW_Handle handle, vrn_Frame_R_t* frame);

    /* pulsed Doppler (ZP7) device */
    vrn_Status_t (*corvix_create_by_uuid)(const char* uuid, vrn_Corvix_Handle* device);
    vrn_Error_t (*corvix_destroy)(vrn_Corvix_Handle device);
    vrn_Error_t (*corvix_get_device_info)(vrn_Corvix_Handle device, vrn_Device_Info_t* info);
    vrn_Error_t (*corvix_get_firmware_info)(vrn_Corvix_Handle device, vrn_Firmware_Info_t* info);
    vrn_Error_t (*corvix_get_limits)(vrn_Corvix_Handle device, vrn_Corvix_Limits_t* limits);
    vrn_Error_t (*corvix_get_default_config)(vrn_Corvix_Handle device, vrn_Corvix_Frame_Config_t* frame,
                                             vrn_Corvix_Pulse_Config_t* pulse);
    vrn_Error_t (*corvix_get_config)(vrn_Corvix_Handle device, vrn_Corvix_Frame_Config_t* frame,
                                     vrn_Corvix_Pulse_Config_t* pulse);
    vrn_Error_t (*corvix_set_config)(vrn_Corvix_Handle device, const vrn_Corvix_Frame_Config_t* frame,
                                     const vrn_Corvix_Pulse_Config_t* pulse);
    vrn_Error_t (*corvix_frame_c_create)(uint32_t num_channels, uint32_t num_samples,
                                         vrn_Corvix_Frame_C_t** frame);
    vrn_Error_t (*corvix_frame_c_destroy)(vrn_Corvix_Frame_C_t* frame);
    vrn_Status_t (*corvix_get_next_frame)(vrn_Corvix_Handle device, vrn_Corvix_Frame_C_t* frame,
                                          uint16_t timeout_ms);
    vrn_Error_t (*corvix_stop_acquisition)(vrn_Corvix_Handle device);
    vrn_Status_t (*corvix_get_temperature)(vrn_Corvix_Handle device, float* temperature_celsius);
} Vrn;

/* The one symbol an SDK library exports. */
typedef const Vrn* (*vrn_entry_points_fn)(void);
#define VRN_ENTRY_POINTS_SYMBOL "vrn_entry_points"

#ifdef __cplusplus
} /* extern "C" */

static_assert(sizeof(vrn_Device_Shield_Type_t) == 4, "shield type is 32-bit");
static_assert(offsetof(vrn_Device_Config_t, sample_rate_Hz) == 0, "device config layout");
static_assert(offsetof(vrn_Device_Config_t, tx_mask) == 4, "device config layout");
static_assert(offsetof(vrn_Device_Config_t, rx_mask) == 8, "device config layout");
static_assert(offsetof(vrn_Device_Config_t, tx_power_level) == 12, "device config layout");
static_assert(offsetof(vrn_Device_Config_t, if_gain_dB) == 16, "device config layout");
static_assert(offsetof(vrn_Device_Config_t, lower_frequency_Hz) == 24, "device config layout");
static_assert(offsetof(vrn_Device_Config_t, upper_frequency_Hz) == 32, "device config layout");
static_assert(offsetof(vrn_Device_Config_t, num_samples_per_chirp) == 40, "device config layout");
static_assert(offsetof(vrn_Device_Config_t, num_chirps_per_frame) == 44, "device config layout");
static_assert(offsetof(vrn_Device_Config_t, chirp_repetition_time_s) == 48, "device config layout");
static_assert(offsetof(vrn_Device_Config_t, frame_repetition_time_s) == 52, "device config layout");
static_assert(offsetof(vrn_Device_Config_t, mimo_mode) == 56, "device config layout");
static_assert(sizeof(vrn_Metrics_t) == 11 * 4, "metrics record is eleven 32-bit members");
static_assert(sizeof(vrn_Metrics_Limits_t) == 20 * 4, "limits record is twenty 32-bit members");
#endif

#endif /* VRN_SDK_H */
