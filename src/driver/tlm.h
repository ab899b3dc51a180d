/* The logger driver library, libtlm: a C ABI. Every entry point returns a small integer code;
 * 0 is success and a negative value a driver failure. */
#ifndef TORVANE_TLM_H
#define TORVANE_TLM_H

#include <stdint.h>

#if defined(_WIN32)
#define TLM_API __declspec(dllexport)
#elif defined(__GNUC__)
#define TLM_API __attribute__((visibility("default")))
#else
#define TLM_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Size of the header that a logging file carries: the logger's setting record at logging time. */
#define TLM_LOG_HEADER_SIZE 82

/* Driver results of the link entry points. Codes are never reused for another meaning, except
 * by the transfer's own results below. */
#define TLM_OK 0
#define TLM_ERR_NOT_CONNECTED (-1) /* no logger answers at the endpoint */
#define TLM_ERR_OPEN_FAILED (-2)   /* a logger answered but the link could not be set up */
#define TLM_ERR_TIMEOUT (-3)       /* an exchange got no answer in time; worth another try */
#define TLM_ERR_PROTOCOL (-4)      /* an answer that does not fit the request */
#define TLM_ERR_ARGUMENT (-5)      /* a null pointer or a length the call cannot take */
#define TLM_ERR_BUSY (-6)          /* the logger is busy with another request; try again */
#define TLM_ERR_LINK_LOST (-7)     /* the link broke during the exchange */
#define TLM_ERR_NOT_OPEN (-16)     /* the status record holds no open link */
#define TLM_ERR_SEQUENCE (-17)     /* a transfer call out of order */
#define TLM_ERR_SENSE (-32)        /* the logger refused the command; bytSense says why */

/* TLM_ERR_NOT_CONNECTED and TLM_ERR_OPEN_FAILED come from TLM_Open alone. Every other link entry
 * point returns TLM_OK, a code the logger gave (TLM_ERR_BUSY, TLM_ERR_SENSE, or a result of its
 * own), or TLM_ERR_TIMEOUT, TLM_ERR_PROTOCOL, TLM_ERR_ARGUMENT, TLM_ERR_LINK_LOST or
 * TLM_ERR_NOT_OPEN. The transfer calls GetTheLogFile_start and GetTheLogFile_end also have results
 * of their own, at the values that callers have always tested for; those values are also codes of
 * the link, so each call's note says which meaning a value has there. */
#define TLM_TRANSFER_FILE_FAILED (-1)  /* the caller's file cannot be created or completed */
#define TLM_TRANSFER_NO_SUCH_FILE (-2) /* _start: the logger has no such file */
#define TLM_TRANSFER_END_FAILED (-2)   /* _end: the logger or the link failed the end */
#define TLM_TRANSFER_ENDED_EARLY (-3)  /* _end: ended before the last block; counts as success */

/* Logger states, as held in TlmStatus.bytState. */
#define TLM_STATE_INITIALIZING 0
#define TLM_STATE_IDLE 1
#define TLM_STATE_ACQUIRING 2
#define TLM_STATE_SENDING 3
#define TLM_STATE_WRITING_FLASH 4
#define TLM_STATE_THROTTLE_INIT 5
#define TLM_STATE_SUSPENSION_INIT 6
#define TLM_STATE_READY 7
#define TLM_STATE_SERVICE 208
#define TLM_STATE_BROKEN 240

/* Sense codes the logger gives in TlmStatus.bytSense. */
#define TLM_SENSE_CLEAN 0
#define TLM_SENSE_NOT_IN_THIS_STATE 2 /* the logger's state does not take the command */
#define TLM_SENSE_BAD_ARGUMENT 3      /* a record or value the logger cannot take */
#define TLM_SENSE_STOPPED_ON_ERROR 4  /* the logger has stopped on an error (bytError) */
#define TLM_SENSE_FILE_NOT_FOUND 7

/* TlmStatus.bytFlags bit sampled at the start of a download. */
#define TLM_FLAG_DOWNLOAD 0x02

/* Kinds of TSInitialize. */
#define TLM_INIT_THROTTLE_CLOSED 0
#define TLM_INIT_THROTTLE_OPEN 1
#define TLM_INIT_FRONT_SUSPENSION 2
#define TLM_INIT_REAR_SUSPENSION 3
#define TLM_INIT_COMMIT_THROTTLE 4

/* Codes of ServiceModeCtrl. */
#define TLM_SERVICE_INITIAL_CONFIGURATION 3
#define TLM_SERVICE_TEST1 6
#define TLM_SERVICE_TEST2 7
#define TLM_SERVICE_HEAT_RUN2 8
#define TLM_SERVICE_HEAT_RUN3 9

#define TLM_SPECIAL_DATA_SIZE 94
#define TLM_ERROR_INFO_SIZE 1022
#define TLM_DETONATION_ROWS 20
#define TLM_DETONATION_COLUMNS 20

/* Records are little-endian and packed on 2-byte boundaries; every one is filled by the library
 * in memory that the caller owns. */
#pragma pack(push, 2)

/* Given to every link entry point, which fills it on each call. */
typedef struct TlmStatus {
    uint8_t bytDriver[16]; /* the library's link data; unchanged from TLM_Open to TLM_Close */
    uint8_t bytSense;      /* sense code of the last exchange; 0 is clean */
    uint8_t bytState;      /* TLM_STATE_... */
    uint8_t bytError;      /* non-zero: the logger has stopped on an error */
    uint8_t bytStatus3;
    uint8_t bytFlags; /* TLM_FLAG_DOWNLOAD */
    uint8_t bytStatus5;
    uint8_t bytStatus6;
    uint8_t bytReserved;
} TlmStatus;

/* One file held in the logger. */
typedef struct TlmDownloadEntry {
    int16_t intNumber;  /* file number in the logger */
    int16_t intDone;    /* non-zero: downloaded before */
    int32_t lngSeconds; /* measurement time */
    int32_t lngSize;    /* data size in bytes */
} TlmDownloadEntry;

/* Progress of a transfer; after GetTheLogFile_reading lngSize is the bytes taken in that pass. */
typedef TlmDownloadEntry TlmTransferBlock;

/* The logger's configuration, 41 words; also the content of SETTING.DAT and the header of a
 * logging file. */
typedef struct TlmSettingData {
    int16_t intSus;
    int16_t intNeTime;
    int16_t intThTime;
    int16_t intVfwTime;
    int16_t intVrwTime;
    int16_t intDeto1Time;
    int16_t intDeto2Time;
    int16_t intVbTime;
    int16_t intVmTime[4];
    int16_t intPulseF;
    int16_t intPulseR;
    int16_t intCmF;
    int16_t intCmR;
    int16_t intStartTh;
    int16_t intStartNe;
    int16_t intEngine;
    int16_t intShift;
    int16_t intThClose;
    int16_t intThOpen;
    int16_t intFrZero;
    int16_t intRrZero;
    int16_t intMinute;
    int16_t intHour;
    int16_t intDay;
    int16_t intMonth;
    int16_t intYear;
    int16_t intReserved29[6];
    int16_t intProgram;
    int16_t intLapOn;
    int16_t intLaf;
    int16_t intReserved38[2];
    int16_t intReserved40;
} TlmSettingData;

/* One live reading. */
typedef struct TlmSignalCondition {
    int16_t intNe;  /* r/min */
    int16_t intVfw; /* km/h */
    int16_t intVrw; /* km/h */
    int16_t intTh;  /* raw, 10 bits */
    int16_t intVb;  /* raw, 10 bits */
    int16_t intVm[4];
    int16_t intDeto1; /* counts since the last reading */
    int16_t intDeto2;
    int16_t intLap; /* lap pulses since the last reading */
} TlmSignalCondition;

/* The logger's identity. */
typedef struct TlmSpecialData {
    uint8_t bytHead[34];
    uint8_t bytProgramName[28]; /* text up to the first NUL */
    uint8_t bytProgramNo[8];    /* decimal text up to the first NUL */
    uint8_t bytTail[24];
} TlmSpecialData;

/* The stored throttle points: word 0 for 0 %, word 1 for 100 %. */
typedef struct TlmInitData {
    int16_t intThClose;
    int16_t intThOpen;
} TlmInitData;

/* The logger's own detonation counts by engine speed row and throttle column. */
typedef struct TlmDetonationMap {
    uint8_t bytLeading[8];
    uint8_t bytMap1[TLM_DETONATION_ROWS * TLM_DETONATION_COLUMNS];
    uint8_t bytMap2[TLM_DETONATION_ROWS * TLM_DETONATION_COLUMNS];
    int32_t lngRunTime;     /* seconds */
    int32_t lngRunDistance; /* km */
    int16_t intPresent;     /* bit 0: map 1 present, bit 1: map 2 */
} TlmDetonationMap;

#pragma pack(pop)

#ifdef __cplusplus
static_assert(sizeof(TlmStatus) == 24, "TlmStatus is 24 bytes");
static_assert(sizeof(TlmDownloadEntry) == 12, "TlmDownloadEntry is 12 bytes");
static_assert(sizeof(TlmSettingData) == TLM_LOG_HEADER_SIZE, "TlmSettingData is 82 bytes");
static_assert(sizeof(TlmSignalCondition) == 24, "TlmSignalCondition is 24 bytes");
static_assert(sizeof(TlmSpecialData) == TLM_SPECIAL_DATA_SIZE, "TlmSpecialData is 94 bytes");
static_assert(sizeof(TlmInitData) == 4, "TlmInitData is 4 bytes");
static_assert(sizeof(TlmDetonationMap) == 818, "TlmDetonationMap is 818 bytes");
#else
_Static_assert(sizeof(TlmStatus) == 24, "TlmStatus is 24 bytes");
_Static_assert(sizeof(TlmSettingData) == TLM_LOG_HEADER_SIZE, "TlmSettingData is 82 bytes");
_Static_assert(sizeof(TlmDetonationMap) == 818, "TlmDetonationMap is 818 bytes");
#endif

/* The link. Every call but decomp_logfile takes the caller's status record and returns TLM_OK or
 * a TLM_ERR_ code unless its note says otherwise. The endpoint comes from the environment
 * variable TORVANE_LOGGER ("unix:PATH" or "tcp:127.0.0.1:PORT"), by default a socket of this
 * user's (docs/logger-protocol.md). Every exchange has a time-out; no call waits for ever. */

/* Finds the logger and opens a link. TLM_ERR_NOT_CONNECTED when nothing listens,
 * TLM_ERR_OPEN_FAILED when the logger serves another link. A link that status still held is
 * ended first. */
TLM_API int32_t TLM_Open(TlmStatus* status);
/* Ends the link; safe on a link that already broke. TLM_ERR_NOT_OPEN if status holds none. */
TLM_API int32_t TLM_Close(TlmStatus* status);
/* Restarts the logger: it passes through TLM_STATE_INITIALIZING to idle. */
TLM_API int32_t TLM_Reset(TlmStatus* status);
/* Refreshes bytSense to bytStatus6. */
TLM_API int32_t GetStatus(TlmStatus* status);
/* The number of files (zero or more), or a negative driver code. */
TLM_API int32_t GetTheNumberofFiles(TlmStatus* status);
/* Fills count entries, oldest file first. */
TLM_API int32_t GetTheDownloadList(TlmStatus* status, int16_t count, TlmDownloadEntry* entries);
/* Starts writing the logger's file entry->intNumber, as a logging file, to path (created or
 * truncated). TLM_TRANSFER_FILE_FAILED (-1): the file cannot be created, and the logger is not
 * asked. Otherwise the logger's result (TLM_TRANSFER_NO_SUCH_FILE, -2, when it has no such file)
 * or a code of the link, where -3 is TLM_ERR_TIMEOUT; TLM_ERR_SEQUENCE while a transfer runs.
 * On any result but TLM_OK the file is closed and left as it is. */
TLM_API int32_t GetTheLogFile_start(TlmStatus* status, TlmDownloadEntry* entry, const char* path,
                                    TlmTransferBlock* block);
/* Moves one block to the file: 0 more to come, positive the file is complete, else a code of the
 * link (-3 is TLM_ERR_TIMEOUT) or TLM_ERR_SEQUENCE without a running transfer. bytSense
 * TLM_SENSE_FILE_NOT_FOUND: the file is not there. */
TLM_API int32_t GetTheLogFile_reading(TlmStatus* status, TlmTransferBlock* block);
/* Ends the transfer. 0 and TLM_TRANSFER_ENDED_EARLY (-3, also the answer after a start that
 * failed) are success; TLM_TRANSFER_FILE_FAILED (-1): the file could not be completed on disk;
 * TLM_TRANSFER_END_FAILED (-2): the logger failed the end, or the link did. A time-out here is
 * never -3: link failures are folded into -2. TLM_ERR_SEQUENCE when no transfer was started. The
 * file is left as written: keeping or deleting a partial file is the caller's choice. */
TLM_API int32_t GetTheLogFile_end(TlmStatus* status, TlmTransferBlock* block);
/* Clears every logging file in the logger. */
TLM_API int32_t InitializeLogFile(TlmStatus* status);
TLM_API int32_t GetTheDetonationMap(TlmStatus* status, TlmDetonationMap* map);
/* Takes a sensor zero or span point from the live reading: TLM_INIT_... */
TLM_API int32_t TSInitialize(TlmStatus* status, int16_t kind);
/* index is always 0. */
TLM_API int32_t GetTheInitData(TlmStatus* status, int32_t index, TlmInitData* data);
TLM_API int32_t SendTheSettingData(TlmStatus* status, const TlmSettingData* setting);
TLM_API int32_t GetTheSettingData(TlmStatus* status, TlmSettingData* setting);
TLM_API int32_t GetTheSignalCondition(TlmStatus* status, TlmSignalCondition* signal);
TLM_API int32_t GetTheSpecialData(TlmStatus* status, TlmSpecialData* special);
/* The identity record as bytes; length is TLM_SPECIAL_DATA_SIZE. */
TLM_API int32_t GetTheSpecialData_raw(TlmStatus* status, uint8_t* buffer, int32_t length);
/* The logger's error log as bytes; length is TLM_ERROR_INFO_SIZE. */
TLM_API int32_t GetTheErrorInfo(TlmStatus* status, uint8_t* buffer, int32_t length);
/* 1 stops acquisition so that other commands may run; 0 gives the logger back to it. */
TLM_API int32_t LoggingControl(TlmStatus* status, int32_t value);
/* Starts a service function: TLM_SERVICE_... */
TLM_API int32_t ServiceModeCtrl(TlmStatus* status, int16_t code);

/* Results of decomp_logfile. */
#define TLM_DECOMP_OK 0
#define TLM_DECOMP_NOT_FOUND (-1)    /* the logging file does not exist */
#define TLM_DECOMP_NO_DATA (-2)      /* the file holds no data */
#define TLM_DECOMP_WRITE_FAILED (-3) /* a deployed stream could not be written */
#define TLM_DECOMP_ACCESS_ERROR (-4) /* a read failed, or the file is damaged */

/* Deploys the logging file at logPath into one stream file per recorded stream in tempPath
 * (a folder; a trailing separator is optional): "<stream>-<fileNumber as 000>.tmp". The 82-byte
 * header goes to header. byteCount receives the number of stream bytes written; deployCount the
 * number of stream files written. Either pointer may be null. On failure no stream of this call
 * is left behind and the logging file is never changed. */
TLM_API int16_t decomp_logfile(const char* logPath, const char* tempPath, int16_t fileNumber,
                               uint8_t* header, int32_t* byteCount, int32_t* deployCount);

#ifdef __cplusplus
}
#endif

#endif
