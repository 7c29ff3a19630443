/*
 * Control interface of the simulated radar SDK.
 *
 * Besides vrn_entry_points() the simulator exports vrnsim_control(), a second
 * table through which tests and the workbench change the simulated bench:
 * load a bench, plug and unplug boards, watch the board set and inject the
 * failures that real boards produce. A real SDK does not export it, so callers
 * resolve it with dlsym and carry on without it.
 *
 * Functions returning const char* answer NULL on success, otherwise an English
 * sentence that stays valid until the next call on the same thread.
 */
#ifndef VRN_SIM_H
#define VRN_SIM_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define VRNSIM_CONTROL_VERSION 1u

typedef enum VrnSimFaultKind {
    /* the next `count` frame fetches (FMCW, CW capture, ZP7) answer `status`;
       a 0x1100d fault waits for the fetch's timeout first, as a board does */
    VRNSIM_FAULT_FETCH = 1,
    /* the next `count` opens answer `status`; status 0 opens nothing and
       answers success with a null handle */
    VRNSIM_FAULT_OPEN = 2,
    /* reading entry `index` of a device list fails, `count` times */
    VRNSIM_FAULT_LIST_ENTRY = 3,
    /* the next `count` temperature reads answer `status` */
    VRNSIM_FAULT_TEMPERATURE = 4,
    /* the next `count` Tx power reads fail with `status` */
    VRNSIM_FAULT_TX_POWER = 5,
    /* the next `count` frame fetches first hold off for `stall_ms`, as a host
       that falls behind does (a busy bus, a paused process); a board in real
       time goes on producing meanwhile, and frames beyond its FIFO are lost */
    VRNSIM_FAULT_STALL = 6,
    VRNSIM_FAULT_FORCE_32BIT = 0x7fffffff
} VrnSimFaultKind;

typedef struct VrnSimFault {
    VrnSimFaultKind kind;
    int32_t status;
    uint32_t count;  /* 0 = until the faults are cleared */
    uint32_t index;  /* list entry, VRNSIM_FAULT_LIST_ENTRY only */
    uint32_t stall_ms; /* VRNSIM_FAULT_STALL only */
} VrnSimFault;

/* Fired from the thread that changed the board set (any thread). Once
   set_change_callback returns, the previous callback is neither running nor
   called again, so its user data may be released. */
typedef void (*VrnSimChangeCallback)(void* user);

/* Baseboards on the USB bus, as a flashing library sees them. */
typedef void (*VrnSimPortCallback)(const char* port, void* user);
typedef void (*VrnSimFlashStatusCallback)(const char* text, void* user);
typedef void (*VrnSimFlashProgressCallback)(uint64_t done, uint64_t total, void* user);

#define VRNSIM_BOOTLOADER_VENDOR_ID "03EB"
#define VRNSIM_BOOTLOADER_PRODUCT_ID "6124"

typedef struct VrnSimControl {
    uint32_t version;       /* VRNSIM_CONTROL_VERSION */
    uint32_t struct_size;   /* sizeof(VrnSimControl) */

    /* Replace the bench; boards that disappear behave as unplugged. */
    const char* (*load_bench_file)(const char* path);
    const char* (*load_bench_json)(const char* json);  /* NULL: embedded default */
    const char* (*reset)(void);                        /* embedded default, no faults */

    /* Hot-plug: one board object of the bench format ({ "uuid": ..., ... }). */
    const char* (*plug_board)(const char* board_json);
    const char* (*unplug_board)(const char* uuid);
    void (*set_change_callback)(VrnSimChangeCallback callback, void* user);

    /* uuid may be NULL for VRNSIM_FAULT_LIST_ENTRY and for clear_faults (all boards). */
    const char* (*inject_fault)(const char* uuid, const VrnSimFault* fault);
    const char* (*clear_faults)(const char* uuid);

    /* Frames a board dropped because the host fetched too late; 0 for unknown boards. */
    uint64_t (*dropped_frames)(const char* uuid);

    /* Milliseconds a board's CW transmitter has emitted since it was plugged,
       the emission under way included; 0 for unknown boards. Lets a test see
       what a duty-cycle protector really did to the transmitter. */
    uint64_t (*emission_time_ms)(const char* uuid);

    /* Calls `each` with the serial port of every baseboard answering with
       this USB identity now (four upper-case hex digits, e.g. "2F5A"/"0251";
       a board in its bootloader answers as "03EB"/"6124"), in bench order. */
    void (*usb_ports)(const char* vendor_id, const char* product_id, VrnSimPortCallback each, void* user);
    /* Switches the board on `port` into its bootloader: it leaves the device
       list at once and answers as the bootloader after its switching time.
       product_id NULL or "": any board. A board already there is left alone. */
    const char* (*activate_bootloader)(const char* port, const char* product_id);
    /* Erases, writes, verifies and restarts the board in bootloader mode on
       `port` with an image (simulator/flash/FirmwareImage.h); the reports
       arrive on the calling thread during the call, which returns once the
       board runs the image's firmware (or has failed). */
    const char* (*flash_image)(const char* port, const uint8_t* image, uint64_t size,
                               VrnSimFlashStatusCallback status, VrnSimFlashProgressCallback progress, void* user);
    /* Milliseconds per progress step and off the bus while switching modes;
       uuid NULL: every board of the bench. */
    const char* (*set_flash_pace)(const char* uuid, uint32_t step_ms, uint32_t switch_ms);
} VrnSimControl;

typedef const VrnSimControl* (*vrnsim_control_fn)(void);
#define VRNSIM_CONTROL_SYMBOL "vrnsim_control"

const VrnSimControl* vrnsim_control(void);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* VRN_SIM_H */
