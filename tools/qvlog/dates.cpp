// dates.cpp: the dates qvlog's command line takes.
#include "tools/qvlog/dates.h"

#include "trafficlog/logformat.h"

// Digits only, exactly `width` of them.
static bool TakeNumber(const char *&p, int width, int *value)
{
    *value = 0;
    for (int i = 0; i < width; i++, p++) {
        if (*p < '0' || *p > '9')
            return false;
        *value = *value * 10 + (*p - '0');
    }
    return true;
}

bool ParseQvlogDate(const char *text, int parts, QvlogDate *date)
{
    const char *p = text;
    date->month = date->day = 1;
    if (!TakeNumber(p, 4, &date->year) || date->year < 1)
        return false;
    if (parts > 1 && (*p++ != '-' || !TakeNumber(p, 2, &date->month) || date->month < 1 || date->month > 12))
        return false;
    if (parts > 2 &&
        (*p++ != '-' || !TakeNumber(p, 2, &date->day) || date->day < 1 ||
         date->day > DaysInMonth(date->year, date->month)))
        return false;
    return *p == 0;
}
