// logformat.cpp: a log's file name, its record's fields, the calendar and the byte-count text.
#include "trafficlog/logformat.h"

#include <stdio.h>
#include <string.h>

static uint32_t LittleEndian32(const unsigned char *p)
{
    return (uint32_t)p[0] | (uint32_t)p[1] << 8 | (uint32_t)p[2] << 16 | (uint32_t)p[3] << 24;
}

static void PutLittleEndian32(uint32_t v, unsigned char *p)
{
    for (int i = 0; i < 4; i++)
        p[i] = (unsigned char)(v >> (8 * i));
}

void DecodeTrafficLogRecord(const unsigned char *bytes, TrafficLogFields *fields)
{
    fields->day = (signed char)bytes[0];
    fields->hour = (signed char)bytes[1];
    fields->received = LittleEndian32(bytes + 4);
    fields->transmitted = LittleEndian32(bytes + 8);
}

void EncodeTrafficLogRecord(const TrafficLogFields *fields, unsigned char *bytes)
{
    bytes[0] = (unsigned char)fields->day;
    bytes[1] = (unsigned char)fields->hour;
    bytes[2] = bytes[3] = 0;
    PutLittleEndian32(fields->received, bytes + 4);
    PutLittleEndian32(fields->transmitted, bytes + 8);
}

bool TrafficLogFileName(int year, int month, char *name, size_t size)
{
    int n = snprintf(name, size, "%04d%02d.log", year, month);
    return n > 0 && (size_t)n < size;
}

bool ParseTrafficLogFileName(const char *name, int *year, int *month)
{
    if (strlen(name) != 10 || strcmp(name + 6, ".log") != 0)
        return false;
    int digits[6];
    for (int i = 0; i < 6; i++) {
        if (name[i] < '0' || name[i] > '9')
            return false;
        digits[i] = name[i] - '0';
    }
    int m = digits[4] * 10 + digits[5];
    if (m < 1 || m > 12)
        return false;
    *year = digits[0] * 1000 + digits[1] * 100 + digits[2] * 10 + digits[3];
    *month = m;
    return true;
}

int DaysInMonth(int year, int month)
{
    static const int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month == 2 && ((year % 4 == 0 && year % 100 != 0) || year % 400 == 0))
        return 29;
    return kDays[month - 1];
}

bool IsTrafficLogSlot(int year, int month, int day, int hour)
{
    return day >= 1 && day <= DaysInMonth(year, month) && hour >= 0 && hour <= 23;
}

const char *MonthAbbrevText(int month)
{
    static const char *const kNames[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                           "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    return kNames[month - 1];
}

char *FormatByteCountText(double value, char *text, size_t size)
{
    if (size == 0)
        return text;
    if (value == 0.0)
        snprintf(text, size, "0");
    else if (value < 1048576.0)
        snprintf(text, size, "%.2fKB", value / 1024);
    else if (value < 1073741824.0)
        snprintf(text, size, "%.2fMB", value / 1024 / 1024);
    else
        snprintf(text, size, "%.2fGB", value / 1024 / 1024 / 1024);
    return text;
}
