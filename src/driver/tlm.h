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

/* Results of decomp_logfile. */
#define TLM_DECOMP_OK 0
#define TLM_DECOMP_NOT_FOUND (-1)   /* the logging file does not exist */
#define TLM_DECOMP_NO_DATA (-2)     /* the file holds no data */
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
