// datepicker.h: a date picker's display format, shown as the device shows it.
#pragma once

#include <windows.h>

// Sets `format` on a date picker that already holds its date; call it again
// whenever the date changes. The device's picker shows the format itself.
// Wine's draws the abbreviated month ("MMM") wrongly ("embe" for Nov), so on
// a desktop the month goes in as quoted text, formatted here as the device's
// picker formats it.
void SetDatePickerFormat(HWND picker, LPCWSTR format);
