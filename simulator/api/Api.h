#pragma once

// The C entry points of the simulated SDK, grouped by file; the table in
// EntryPoints.cpp collects them.

#include <sdk/vrn.h>

#include <memory>
#include <string>

namespace vrnsim {

class Board;

// Common answer of a call on a board that was unplugged.
vrn_Error_t lostText();
// Pulls a board whose bench schedule says so off the bus.
void unplugScheduled(const std::shared_ptr<Board>& board);

namespace device {
vrn_Error_t listGet(vrn_Device_List_Handle* list);
vrn_Error_t listSize(vrn_Device_List_Handle list, uint32_t* count);
vrn_Error_t listEntry(vrn_Device_List_Handle list, uint32_t index, vrn_Device_List_Entry_t* entry);
vrn_Error_t listDestroy(vrn_Device_List_Handle list);
vrn_Status_t createByUuid(const char* uuid, vrn_Device_Handle* device);
vrn_Error_t destroy(vrn_Device_Handle device);
vrn_Error_t metricsLimits(vrn_Device_Handle device, vrn_Metrics_Limits_t* limits);
vrn_Error_t translateMetrics(vrn_Device_Handle device, const vrn_Metrics_t* metrics, vrn_Device_Config_t* config);
vrn_Error_t setConfig(vrn_Device_Handle device, const vrn_Device_Config_t* config);
vrn_Error_t getConfig(vrn_Device_Handle device, vrn_Device_Config_t* config);
vrn_Error_t chirpTime(vrn_Device_Handle device, const vrn_Device_Config_t* config, float* seconds);
vrn_Error_t pulseRepetitionTime(const vrn_Device_Config_t* config, float* seconds);
vrn_Status_t nextFrame(vrn_Device_Handle device, vrn_Frame_R_t* frame, uint16_t timeoutMs);
vrn_Error_t stopAcquisition(vrn_Device_Handle device, uint8_t* stopped);
vrn_Status_t temperature(vrn_Device_Handle device, float* celsius);
vrn_Error_t numRx(vrn_Device_Handle device, uint32_t* count);
vrn_Error_t numTx(vrn_Device_Handle device, uint32_t* count);
vrn_Error_t info(vrn_Device_Handle device, vrn_Device_Info_t* info);
vrn_Error_t firmware(vrn_Device_Handle device, vrn_Firmware_Info_t* info);
vrn_Error_t type(vrn_Device_Handle device, vrn_Device_Type_t* type);
vrn_Error_t txPower(vrn_Device_Handle device, uint32_t antenna, float* dBm);
void fillInfo(const Board& board, vrn_Device_Info_t& info);
void fillFirmware(const Board& board, vrn_Firmware_Info_t& info);
}  // namespace device

namespace cw {
vrn_Error_t create(vrn_Device_Handle device, vrn_CW_Handle* handle);
vrn_Error_t destroy(vrn_CW_Handle handle);
vrn_Error_t defaultConfig(vrn_CW_Handle handle, vrn_CW_Config_t* config);
vrn_Error_t limits(vrn_CW_Handle handle, vrn_CW_Limits_t* limits);
vrn_Error_t setRf(vrn_CW_Handle handle, float hz);
vrn_Error_t getRf(vrn_CW_Handle handle, float* hz);
vrn_Error_t setDac(vrn_CW_Handle handle, uint32_t dac);
vrn_Error_t getDac(vrn_CW_Handle handle, uint32_t* dac);
vrn_Error_t setTxMask(vrn_CW_Handle handle, uint32_t mask);
vrn_Error_t getTxMask(vrn_CW_Handle handle, uint32_t* mask);
vrn_Error_t setTestSignal(vrn_CW_Handle handle, const vrn_Device_Test_Signal_Generator_t* config);
vrn_Error_t getTestSignal(vrn_CW_Handle handle, vrn_Device_Test_Signal_Generator_t* config);
vrn_Error_t setRxMask(vrn_CW_Handle handle, uint32_t mask);
vrn_Error_t getRxMask(vrn_CW_Handle handle, uint32_t* mask);
vrn_Error_t setNumSamples(vrn_CW_Handle handle, uint32_t samples);
vrn_Error_t getNumSamples(vrn_CW_Handle handle, uint32_t* samples);
vrn_Error_t setAdc(vrn_CW_Handle handle, const vrn_Device_ADC_Config_t* config);
vrn_Error_t getAdc(vrn_CW_Handle handle, vrn_Device_ADC_Config_t* config);
vrn_Error_t setBaseband(vrn_CW_Handle handle, const vrn_Device_Baseband_Config_t* config);
vrn_Error_t getBaseband(vrn_CW_Handle handle, vrn_Device_Baseband_Config_t* config);
vrn_Error_t samplingRateLimits(vrn_CW_Handle handle, const vrn_Device_ADC_Config_t* config, uint32_t* minHz,
                               uint32_t* maxHz);
vrn_Error_t startEmission(vrn_CW_Handle handle);
vrn_Error_t stopEmission(vrn_CW_Handle handle);
vrn_Error_t isEmissionActive(vrn_CW_Handle handle, uint8_t* active);
vrn_Status_t temperature(vrn_CW_Handle handle, float* celsius);
vrn_Status_t txPower(vrn_CW_Handle handle, uint32_t antenna, float* dBm);
vrn_Error_t samplesPerAntenna(vrn_CW_Handle handle, uint32_t* samples);
vrn_Status_t capture(vrn_CW_Handle handle, vrn_Frame_R_t* frame);
}  // namespace cw

namespace corvix {
vrn_Status_t createByUuid(const char* uuid, vrn_Corvix_Handle* device);
vrn_Error_t destroy(vrn_Corvix_Handle device);
vrn_Error_t info(vrn_Corvix_Handle device, vrn_Device_Info_t* info);
vrn_Error_t firmware(vrn_Corvix_Handle device, vrn_Firmware_Info_t* info);
vrn_Error_t limits(vrn_Corvix_Handle device, vrn_Corvix_Limits_t* limits);
vrn_Error_t defaultConfig(vrn_Corvix_Handle device, vrn_Corvix_Frame_Config_t* frame,
                          vrn_Corvix_Pulse_Config_t* pulse);
vrn_Error_t getConfig(vrn_Corvix_Handle device, vrn_Corvix_Frame_Config_t* frame, vrn_Corvix_Pulse_Config_t* pulse);
vrn_Error_t setConfig(vrn_Corvix_Handle device, const vrn_Corvix_Frame_Config_t* frame,
                      const vrn_Corvix_Pulse_Config_t* pulse);
vrn_Status_t nextFrame(vrn_Corvix_Handle device, vrn_Corvix_Frame_C_t* frame, uint16_t timeoutMs);
vrn_Error_t stopAcquisition(vrn_Corvix_Handle device);
vrn_Status_t temperature(vrn_Corvix_Handle device, float* celsius);
}  // namespace corvix

namespace rs {
vrn_Error_t create(const vrn_RS_Config_t* config, vrn_RS_Handle* handle);
vrn_Error_t destroy(vrn_RS_Handle handle);
vrn_Error_t run(vrn_RS_Handle handle, const vrn_Matrix_R_s* input, vrn_Vector_R_s* output);
vrn_Error_t runComplex(vrn_RS_Handle handle, const vrn_Matrix_C_s* input, vrn_Vector_R_s* output);
vrn_Error_t distanceAxis(uint32_t fftSize, uint32_t samplesPerChirp, float maxRangeM, vrn_Math_Axis_Spec_s* axis);
vrn_Error_t frequencyAxis(uint32_t fftSize, float sampleRateHz, vrn_Math_Axis_Spec_s* axis);
}  // namespace rs

namespace rdm {
vrn_Error_t create(const vrn_RDM_Config_t* config, vrn_RDM_Handle* handle);
vrn_Error_t destroy(vrn_RDM_Handle handle);
vrn_Error_t run(vrn_RDM_Handle handle, const vrn_Matrix_R_s* input, vrn_Matrix_R_s* output);
vrn_Error_t rangeAxis(vrn_RDM_Handle handle, uint64_t bandwidthHz, vrn_Math_Axis_Spec_s* axis);
vrn_Error_t speedAxis(vrn_RDM_Handle handle, float centerFrequencyHz, float chirpRepetitionTimeS,
                      vrn_Math_Axis_Spec_s* axis);
}  // namespace rdm

namespace ps {
vrn_Error_t defaultConfig(vrn_Device_Type_t type, vrn_PresenceSensing_Config_t* config);
vrn_Error_t rangeResolution(const vrn_Device_Config_t* config, float* meters);
vrn_Error_t create(const vrn_PresenceSensing_Config_t* config, vrn_PresenceSensing_Handle* handle);
vrn_Error_t destroy(vrn_PresenceSensing_Handle handle);
vrn_Error_t inputMatrix(const vrn_Matrix_R_s* channel, const vrn_Matrix_R_s** input);
vrn_Error_t run(vrn_PresenceSensing_Handle handle, const vrn_Matrix_R_s* input,
                vrn_PresenceSensing_Result_t* result);
}  // namespace ps

namespace seg {
vrn_Error_t defaultConfig(vrn_Device_Type_t type, const vrn_Device_Config_t* device,
                          vrn_Segmentation_Config_t* config);
vrn_Error_t create(const vrn_Segmentation_Config_t* config, vrn_Segmentation_Handle* handle);
vrn_Error_t destroy(vrn_Segmentation_Handle handle);
vrn_Error_t run(vrn_Segmentation_Handle handle, const vrn_Frame_R_t* frame, vrn_Segmentation_Result_t* result);
}  // namespace seg

}  // namespace vrnsim
