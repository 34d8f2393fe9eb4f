// netbios_test.cpp: the node-status request and the reading of replies; the list's MAC text.
#include "diagnostics/netbios.h"

#include <gtest/gtest.h>

#include <string.h>
#include <string>
#include <vector>

namespace {

std::vector<unsigned char> Reply(const char *name, int count, int length)
{
    std::vector<unsigned char> r(length, 0);
    if (length > 56)
        r[56] = (unsigned char)count;
    for (int i = 0; i < 15 && 57 + i < length; i++)
        r[57 + i] = (unsigned char)(*name ? *name++ : ' ');
    return r;
}

TEST(NodeStatus, RequestIsTheWildcardQuery)
{
    const unsigned char head[] = {0xA2, 0x48, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0x20};
    EXPECT_EQ(0, memcmp(head, NodeStatusRequest, sizeof head));
    EXPECT_EQ(std::string("CK") + std::string(30, 'A'), std::string((const char *)NodeStatusRequest + 13, 32));
    const unsigned char tail[] = {0, 0, 0x21, 0, 1};
    EXPECT_EQ(0, memcmp(tail, NodeStatusRequest + 45, sizeof tail));
}

TEST(NodeStatus, RepliesByLengthCountAndPadding)
{
    struct Case {
        const char *name;
        int count, length;
        bool read;
        const char *want;
    } cases[] = {
        {"SAMBA1", 1, 74, false, ""},                 // one byte short of a name
        {"SAMBA1", 0, 74, false, ""},                 // short, whatever the count says
        {"SAMBA1", 1, 75, true, "SAMBA1"},
        {"SAMBA1", 3, 100, false, ""},                // claims more than it holds
        {"SAMBA1", 3, 111, true, "SAMBA1"},           // 57 + 3 x 18 exactly
        {"SAMBA1", 0, 75, true, "SAMBA1"},
        {"ABC", 1, 75, true, "ABC"},                  // 12 blanks dropped
        {"", 1, 75, true, " "},                       // all blanks: one stays
        {"FIFTEEN-LETTERS", 1, 75, true, "FIFTEEN-LETTERS"},
        {"A B", 1, 75, true, "A B"},                  // a blank inside stays
        {"X", 255, 1024, false, ""},
        {"X", 1, -1, false, ""},                      // a failed receive
        {"X", 1, 0, false, ""},
    };
    for (const Case &c : cases) {
        std::vector<unsigned char> r = Reply(c.name, c.count, c.length > 0 ? c.length : 80);
        char name[NETBIOS_NAME_SIZE];
        memset(name, 'q', sizeof name);
        bool read = ReadNodeStatusName(r.data(), c.length, name);
        EXPECT_EQ(c.read, read) << c.name << " " << c.count << " " << c.length;
        if (read)
            EXPECT_STREQ(c.want, name) << c.name << " " << c.length;
        else
            EXPECT_EQ('q', name[0]);
    }
}

TEST(MacText, ParsesTheListsUpperCaseHex)
{
    struct Case {
        const wchar_t *text;
        bool parsed;
        unsigned char want[6];
    } cases[] = {
        {L"00:1A:2B:3C:4D:5E", true, {0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E}},
        {L"FF:FF:FF:FF:FF:FF", true, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
        {L"00:1A:2B:3C:4D:5e", true, {0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x7E}},   // 'e' is not 14
        {L"", false, {0, 0, 0, 0, 0, 0}},                                    // an empty cell: no MAC
        {L"00:1A:2B:3C:4D:5", false, {0, 0, 0, 0, 0, 0}},
    };
    for (const Case &c : cases) {
        unsigned char mac[6] = {9, 9, 9, 9, 9, 9};
        EXPECT_EQ(c.parsed, ParseMacText(c.text, mac));
        EXPECT_EQ(0, memcmp(c.want, mac, 6)) << c.parsed;
    }
}

} // namespace
