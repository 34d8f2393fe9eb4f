// support.h: what the unit tests share: a fresh fake device, a clean item key, test windows.
#pragma once

#include <gtest/gtest.h>
#include <string>

#include "item/item.h"
#include "platform/fake/fake.h"

// A folder of this test's own, emptied at every reset.
std::wstring TestRoot();
void DeleteTree(const std::wstring &path);
void DeleteItemKey();
DWORD RegistryDword(LPCWSTR name, DWORD missing = 0xDEADBEEF);

// A plain parent window that records the watermark requests it gets.
HWND CreateParentWindow();
extern int g_watermarkRequests;
extern TODAYDRAWWATERMARKINFO g_lastWatermark;

// Every test on the device starts from a new device, a clean key and an item
// state freshly initialised from it, as the module's attach leaves it.
class DeviceTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    // Runs the start-up again, after the test has set the device and registry.
    void Attach();
    // The item window under a fresh parent, with the host's list item.
    HWND CreateItem(bool enabled = true);

    HWND parent_ = nullptr;
    HWND item_ = nullptr;
    TODAYLISTITEM tli_ = {};
};
