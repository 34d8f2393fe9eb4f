// netbios_test.cpp: the reading of node-status replies; the list's MAC text.
#include "diagnostics/netbios.h"

#include <gtest/gtest.h>

#include <string.h>
#include <string>

namespace {

TEST(NodeStatus, RepliesByLengthCountAndPadding)
{
    const struct { const char *name; int count, length; const char *want; } cases[] = {   // want null: not read
        {"SAMBA1", 0, 74, nullptr},            // one byte short of a name, whatever the count says
        {"SAMBA1", 1, 75, "SAMBA1"},
        {"SAMBA1", 3, 110, nullptr},           // claims more than it holds
        {"SAMBA1", 3, 111, "SAMBA1"},          // 57 + 3 x 18 exactly
        {"", 1, 75, " "},                      // all blanks: one stays
        {"FIFTEEN-LETTERS", 1, 75, "FIFTEEN-LETTERS"},
        {"A B", 1, 75, "A B"},                 // a blank inside stays
        {"X", 1, -1, nullptr},                 // a failed receive
    };
    for (auto c : cases) {
        // The count at 56, the first name from 57, blank-padded to 15.
        std::string r = std::string(56, '\0') + (char)c.count + c.name + std::string(15 - strlen(c.name), ' ');
        r.resize(c.length > 0 ? c.length : 80, '\0');
        std::string name(NETBIOS_NAME_SIZE, 'q');
        EXPECT_EQ(c.want != nullptr, ReadNodeStatusName((const unsigned char *)r.data(), c.length, &name[0]));
        EXPECT_EQ(c.want ? c.want : "q", name.substr(0, c.want ? strlen(name.c_str()) : 1)) << c.length;
    }
}

TEST(MacText, ParsesTheListsUpperCaseHex)
{
    const struct { const wchar_t *text; bool parsed; unsigned char want[6]; } cases[] = {
        {L"00:1A:2B:3C:4D:5E", true, {0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E}},
        {L"00:1A:2B:3C:4D:5e", true, {0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x7E}},   // 'e' is not 14
        {L"", false, {0, 0, 0, 0, 0, 0}},                                    // an empty cell: no MAC
        {L"00:1A:2B:3C:4D:5", false, {0, 0, 0, 0, 0, 0}},
    };
    for (auto c : cases) {
        unsigned char mac[6] = {9, 9, 9, 9, 9, 9};
        EXPECT_TRUE(ParseMacText(c.text, mac) == c.parsed && !memcmp(c.want, mac, 6)) << c.text;
    }
}

} // namespace
