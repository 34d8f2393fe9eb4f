// shared_values.cpp: the parts of the item's state that the store and the wireless layer use, handed to them without the item's header.
#include "item/item.h"
#include "trafficlog/trafficlog.h"
#include "wireless/wireless.h"

// Addresses of fields of a global: fixed before any code runs.
const WCHAR *const TrafficLogFolder = g_item.dataFolder;
const SignalReadings SignalState = {&g_item.signalDbm, g_item.signalHistory, &g_item.signalTiming};
