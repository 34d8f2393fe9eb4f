// fuzz_binding.cpp: libFuzzer target for the adapter's name out of the driver's binding answer.
// fuzz sources: wireless/binding.cpp
// Input: the caller's room in characters (1 + first byte), then the driver's answer.
#include "tests/native/fuzzing.h"
#include "wireless/binding.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < 1)
        return 0;
    int chars = 1 + data[0];
    Exact answer(data + 1, size - 1);
    Exact room(chars * sizeof(wchar_t), 0x5A);
    wchar_t *name = reinterpret_cast<wchar_t *>(room.bytes);
    BindingNameFromRecord(answer.bytes, (uint32_t)answer.size, name, chars);

    int k = 0;
    while (k < chars && name[k])
        k++;
    PROMISE(k < chars);
    // The characters the record points at, inside the answer and the room.
    size_t count = 0, offset = 0;
    if (answer.size >= BINDING_RECORD_BYTES) {
        offset = Le32(data + 1 + BINDING_NAME_OFFSET);
        size_t length = Le32(data + 1 + BINDING_NAME_LENGTH);
        if (offset < answer.size)
            count = (length < answer.size - offset ? length : answer.size - offset) / 2;
    }
    if (count > (size_t)chars - 1)
        count = chars - 1;
    PROMISE((size_t)k <= count);
    for (int i = 0; i < k; i++)
        PROMISE(name[i] == (wchar_t)Le16(data + 1 + offset + 2 * i));
    PROMISE((size_t)k == count || Le16(data + 1 + offset + 2 * k) == 0);
    return 0;
}
