// taps.cpp: the strip's hit test and the tools it opens.
#include "item/item.h"

void OnTap(HWND, LPARAM)
{
}
