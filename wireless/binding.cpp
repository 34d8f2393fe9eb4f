// binding.cpp: the adapter's name out of the driver's answer to the binding query.
#include "wireless/binding.h"

static uint32_t ReadWord(const uint8_t *p)
{
    return (uint32_t)p[0] | (uint32_t)p[1] << 8 | (uint32_t)p[2] << 16 | (uint32_t)p[3] << 24;
}

void BindingNameFromRecord(const uint8_t *answer, uint32_t size, wchar_t *name, int chars)
{
    if (chars < 1)
        return;
    name[0] = 0;
    if (size < BINDING_RECORD_BYTES)
        return;
    uint32_t offset = ReadWord(answer + BINDING_NAME_OFFSET);
    uint32_t length = ReadWord(answer + BINDING_NAME_LENGTH);
    if (offset >= size)
        return;
    if (length > size - offset)
        length = size - offset;
    uint32_t count = length / 2;
    if (count > (uint32_t)chars - 1)
        count = (uint32_t)chars - 1;
    const uint8_t *text = answer + offset;
    for (uint32_t i = 0; i < count; i++)
        name[i] = (wchar_t)(text[2 * i] | text[2 * i + 1] << 8);
    name[count] = 0;
}
