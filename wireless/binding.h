// binding.h: the adapter's name out of the driver's answer to the binding query; no Windows header.
#pragma once

#include <stdint.h>
#include <wchar.h>

// The answer starts with a record of five 32-bit words: binding index, name
// offset and length, description offset and length; offsets count from the
// record's start, lengths in bytes of UTF-16LE text.
#define BINDING_RECORD_BYTES 20
#define BINDING_NAME_OFFSET 4
#define BINDING_NAME_LENGTH 8

// The adapter name out of the driver's answer (`size` bytes): the name the
// record points at, cut to what lies inside the answer and fits `chars`
// characters with its terminator; empty when there is none.
void BindingNameFromRecord(const uint8_t *answer, uint32_t size, wchar_t *name, int chars);
