// fuzzing.h: what the native fuzz targets share: exact-size blocks, the check that stops a run, files read as programs read them.
#pragma once

#include <algorithm>

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

// A part of the input (from `from`), or an output buffer (filled), in a heap
// block of exactly its size: a step past either end is caught by the address
// sanitizer, also where the input itself goes on.
struct Exact {
    unsigned char *bytes;
    size_t size;
    Exact(const void *from, size_t n, int fill = 0)
        : bytes((unsigned char *)(from ? memcpy(malloc(n), from, n) : memset(malloc(n), fill, n))), size(n) {}
    ~Exact() { free(bytes); }
    Exact(const Exact &) = delete;
    template <class T> T *as() { return reinterpret_cast<T *>(bytes); }
};

// A promise of the parser under test that did not hold: libFuzzer keeps the
// input as a crash.
#define PROMISE(c) ((c) ? (void)0 : (fprintf(stderr, "broken promise: %s (%s:%d)\n", #c, __FILE__, __LINE__), abort()))

inline uint32_t Le16(const unsigned char *p) { return p[0] | p[1] << 8; }
inline uint32_t Le32(const unsigned char *p) { return Le16(p) | Le16(p + 2) << 16; }

// The length of a text written into `room` characters, which must end inside them.
template <class C> size_t Ended(const C *text, size_t room)
{
    size_t k = std::find(text, text + room, C()) - text;
    PROMISE(k < room);
    return k;
}

// A file as a program reads it: in reads of `piece` bytes, and record by
// record through one buffer kept over the whole file, so that a short last
// record lies over the start of the one before it (zeros when there is none).
struct File {
    const unsigned char *bytes;
    size_t size, record, piece;
    // Each record as that buffer holds it, in a block of its own, and its offset.
    template <class F> void Records(F visit) const
    {
        Exact laid(nullptr, record);
        for (size_t at = 0; at < size; at += record)
            visit(static_cast<unsigned char *>(memcpy(laid.bytes, bytes + at, std::min(record, size - at))), at);
    }
    // Each read, in a block of its own, and its offset.
    template <class F> void Reads(F read) const
    {
        for (size_t at = 0; at < size; at += piece)
            read(Exact(bytes + at, std::min(piece, size - at)), at);
    }
};
