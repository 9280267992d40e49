// The library file's bytes: header and records, written and read back.
#include <gtest/gtest.h>

#include <string>

#include "library/format.h"

using namespace vantrel::library;

namespace {

std::string Hex(std::string_view bytes) {
    static const char* d = "0123456789ABCDEF";
    std::string s;
    for (unsigned char c : bytes) s += std::string(s.empty() ? "" : " ") + d[c >> 4] + d[c & 15];
    return s;
}

// The library of the format's worked example: Demo, remarks Hi, 1.e4 from
// "Test game" and 1...e5 with the comment "Open game".
std::string DemoBytes() {
    std::string out;
    EncodeHeader({1, -1, "Demo", 2, 1, 2, "Hi"}, out);
    EncodeRecord({1, 0, true, "e4: Test game", "", std::string(64, 'A')}, out);
    EncodeRecord({2, 1, false, "e5", "Open game", std::string(64, 'B')}, out);
    return out;
}

}  // namespace

TEST(LibraryFormat, WorkedExampleIsByteExact) {
    const std::string bytes = DemoBytes();
    ASSERT_EQ(bytes.size(), 206u);
    EXPECT_EQ(Hex(bytes.substr(0, 26)),
              "01 00 FF FF 04 00 44 65 6D 6F 02 00 00 00 01 00 00 00 02 00 00 00 02 00 48 69");
    EXPECT_EQ(Hex(bytes.substr(26, 27)),
              "01 00 00 00 00 00 00 00 FF FF 0D 00 65 34 3A 20 54 65 73 74 20 67 61 6D 65 00 00");
    EXPECT_EQ(bytes.substr(53, 64), std::string(64, 'A'));
    EXPECT_EQ(Hex(bytes.substr(117, 25)), "02 00 00 00 01 00 00 00 00 00 02 00 65 35 09 00 4F 70 65 6E 20 67 61 6D 65");
    EXPECT_EQ(bytes.substr(142, 64), std::string(64, 'B'));
}

TEST(LibraryFormat, ReaderRoundTripsAndDropsAPartialTail) {
    const std::string bytes = DemoBytes();
    for (size_t cut = 0; cut <= 206; ++cut) {
        LibraryReader r;
        r.OpenBytes(bytes.substr(0, cut));
        LibraryHeader h;
        EXPECT_EQ(r.ReadHeader(h), cut >= 26) << cut;
        EXPECT_EQ(h.version, cut < 2 ? 0 : 1) << cut;  // an empty read leaves version at 0
        int records = 0;
        for (LibraryNodeRecord rec; r.ReadRecord(rec);) ++records;
        EXPECT_EQ(records, cut >= 206 ? 2 : cut >= 117 ? 1 : 0) << cut;
    }
    LibraryReader r;
    r.OpenBytes(bytes);
    LibraryHeader h;
    LibraryNodeRecord n1, n2;
    ASSERT_TRUE(r.ReadHeader(h) && r.ReadRecord(n1) && r.ReadRecord(n2));
    EXPECT_EQ(h.book + "|" + h.LibRemarks + "|" + std::to_string(h.RecCount), "Demo|Hi|2");
    EXPECT_TRUE(n1.new_branch);
    EXPECT_EQ(n1.description, "e4: Test game");
    EXPECT_EQ(n2.remarks, "Open game");
    EXPECT_EQ(n2.parent, 1);
    EXPECT_EQ(n2.BoardLayout, std::string(64, 'B'));
}

TEST(LibraryFormat, LayoutIsBlankFilledOrCutTo64AndAnyNonZeroBoolIsTrue) {
    std::string out;
    EncodeRecord({7, 0, false, "x", "", "RNB"}, out);
    EXPECT_EQ(out.substr(out.size() - 64), "RNB" + std::string(61, ' '));
    out.clear();
    EncodeRecord({7, 0, false, "x", "", std::string(70, 'Q')}, out);
    EXPECT_EQ(out.size(), 78u + 1u);
    out[8] = 0x02;  // new_branch = 2
    out[9] = 0x00;
    std::string file;
    EncodeHeader({1, 5, "B", 1, 0, 0, ""}, file);
    LibraryReader r;
    r.OpenBytes(file + out);
    LibraryHeader h;
    LibraryNodeRecord rec;
    ASSERT_TRUE(r.ReadHeader(h) && r.ReadRecord(rec));
    EXPECT_TRUE(rec.new_branch);
}
