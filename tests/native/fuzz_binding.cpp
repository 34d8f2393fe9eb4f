// fuzz_binding.cpp: libFuzzer target for the adapter's name out of the driver's binding answer.
// fuzz sources: wireless/binding.cpp
// Input: the caller's room in characters (1 + first byte), then the driver's answer.
#include "tests/native/fuzzing.h"
#include "wireless/binding.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < 1)
        return 0;
    size_t chars = 1 + data[0];
    Exact answer(data + 1, size - 1), room(nullptr, chars * sizeof(wchar_t), 0x5A);
    wchar_t *name = room.as<wchar_t>();
    BindingNameFromRecord(answer.bytes, (uint32_t)answer.size, name, (int)chars);
    // Ended in the room: the characters the record points at, which the
    // sanitizer sees lie inside the answer.
    for (size_t i = 0, k = Ended(name, chars); i < k; i++)
        PROMISE(name[i] == (wchar_t)Le16(answer.bytes + Le32(answer.bytes + BINDING_NAME_OFFSET) + 2 * i));
    return 0;
}
