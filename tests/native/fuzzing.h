// fuzzing.h: what the native fuzz targets share: parts of the input in blocks of their own size, and the check that stops a run.
#pragma once

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

// A part of the input, or an output buffer, in a heap block of exactly its
// size: a read or write past its end is caught by the address sanitizer,
// also where the input itself goes on.
struct Exact {
    unsigned char *bytes;
    size_t size;
    explicit Exact(size_t n, int fill = 0) : bytes(static_cast<unsigned char *>(malloc(n))), size(n)
    {
        memset(bytes, fill, n);
    }
    Exact(const unsigned char *from, size_t n) : Exact(n) { memcpy(bytes, from, n); }
    ~Exact() { free(bytes); }
    Exact(const Exact &) = delete;
    Exact &operator=(const Exact &) = delete;
};

// A promise of the parser under test that did not hold: libFuzzer keeps the
// input as a crash.
#define PROMISE(condition)                                                                     \
    do {                                                                                       \
        if (!(condition)) {                                                                    \
            fprintf(stderr, "broken promise: %s (%s:%d)\n", #condition, __FILE__, __LINE__); \
            abort();                                                                           \
        }                                                                                      \
    } while (0)

inline uint32_t Le32(const unsigned char *p)
{
    return (uint32_t)p[0] | (uint32_t)p[1] << 8 | (uint32_t)p[2] << 16 | (uint32_t)p[3] << 24;
}

inline unsigned Le16(const unsigned char *p)
{
    return (unsigned)p[0] | (unsigned)p[1] << 8;
}

// The record at `at` of a file read record by record into one buffer of
// `record` bytes kept over the whole file: a short last record lies over the
// start of the one before it (zeros when there is none).
inline void LaidRecord(const unsigned char *file, size_t size, size_t at, size_t record, unsigned char *out)
{
    memset(out, 0, record);
    if (at >= record)
        memcpy(out, file + at - record, record);
    memcpy(out, file + at, size - at < record ? size - at : record);
}
