#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "chess/board.h"
#include "library/format.h"
#include "library/loader.h"

using namespace vantrel::library;

namespace {

std::string Hex(std::string_view bytes) {
    static const char* d = "0123456789ABCDEF";
    std::string s;
    for (unsigned char c : bytes) {
        if (!s.empty()) s += ' ';
        s += d[c >> 4];
        s += d[c & 15];
    }
    return s;
}

std::string Layout(char fill) { return std::string(64, fill); }

// The library of the format's worked example: Demo, remarks Hi, 1.e4 from
// "Test game" and 1...e5 with the comment "Open game".
std::string DemoBytes(const std::string& layout1, const std::string& layout2) {
    std::string out;
    LibraryHeader h;
    h.version = 1;
    h.flag = -1;
    h.book = "Demo";
    h.RecCount = 2;
    h.MinIndex = 1;
    h.MaxIndex = 2;
    h.LibRemarks = "Hi";
    EncodeHeader(h, out);
    EncodeRecord({1, 0, true, "e4: Test game", "", layout1}, out);
    EncodeRecord({2, 1, false, "e5", "Open game", layout2}, out);
    return out;
}

}  // namespace

TEST(LibraryFormat, WorkedExampleIsByteExact) {
    const std::string a = Layout('A'), b = Layout('B');
    const std::string bytes = DemoBytes(a, b);
    ASSERT_EQ(bytes.size(), 206u);
    EXPECT_EQ(Hex(bytes.substr(0, 26)),
              "01 00 FF FF 04 00 44 65 6D 6F 02 00 00 00 01 00 00 00 02 00 00 00 02 00 48 69");
    EXPECT_EQ(Hex(bytes.substr(26, 27)),
              "01 00 00 00 00 00 00 00 FF FF 0D 00 65 34 3A 20 54 65 73 74 20 67 61 6D 65 00 00");
    EXPECT_EQ(bytes.substr(53, 64), a);
    EXPECT_EQ(Hex(bytes.substr(117, 25)),
              "02 00 00 00 01 00 00 00 00 00 02 00 65 35 09 00 4F 70 65 6E 20 67 61 6D 65");
    EXPECT_EQ(bytes.substr(142, 64), b);
}

TEST(LibraryFormat, ReaderRoundTripsAndDropsAPartialTail) {
    std::string bytes = DemoBytes(Layout('A'), Layout('B'));
    for (size_t cut = 0; cut <= 206; ++cut) {
        LibraryReader r;
        r.OpenBytes(bytes.substr(0, cut));
        LibraryHeader h;
        const bool whole = r.ReadHeader(h);
        EXPECT_EQ(whole, cut >= 26) << cut;
        if (cut < 2) {
            EXPECT_EQ(h.version, 0) << "an empty read leaves version at 0";
        }
        int records = 0;
        LibraryNodeRecord rec;
        while (r.ReadRecord(rec)) ++records;
        EXPECT_EQ(records, cut >= 206 ? 2 : cut >= 117 ? 1 : 0) << cut;
    }
    LibraryReader r;
    r.OpenBytes(bytes);
    LibraryHeader h;
    ASSERT_TRUE(r.ReadHeader(h));
    EXPECT_EQ(h.book, "Demo");
    EXPECT_EQ(h.LibRemarks, "Hi");
    EXPECT_EQ(h.RecCount, 2);
    LibraryNodeRecord n1, n2;
    ASSERT_TRUE(r.ReadRecord(n1));
    ASSERT_TRUE(r.ReadRecord(n2));
    EXPECT_TRUE(n1.new_branch);
    EXPECT_EQ(n1.description, "e4: Test game");
    EXPECT_EQ(n2.remarks, "Open game");
    EXPECT_EQ(n2.parent, 1);
    EXPECT_EQ(n2.BoardLayout, Layout('B'));
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
    ASSERT_TRUE(r.ReadHeader(h));
    ASSERT_TRUE(r.ReadRecord(rec));
    EXPECT_TRUE(rec.new_branch);
}

TEST(LibraryFormat, WriterWritesWhatEncodeGives) {
    auto path = std::filesystem::temp_directory_path() / "vantrel_writer_test.vnb";
    {
        // An older, longer file is replaced whole.
        std::ofstream(path, std::ios::binary) << std::string(1000, 'z');
    }
    LibraryWriter w;
    ASSERT_TRUE(w.Open(path.string()));
    LibraryHeader h{1, -1, "Demo", 2, 1, 2, "Hi"};
    ASSERT_TRUE(w.WriteHeader(h));
    ASSERT_TRUE(w.WriteRecord({1, 0, true, "e4: Test game", "", Layout('A')}));
    ASSERT_TRUE(w.WriteRecord({2, 1, false, "e5", "Open game", Layout('B')}));
    ASSERT_TRUE(w.Close());
    std::ifstream in(path, std::ios::binary);
    std::string got((std::istreambuf_iterator<char>(in)), {});
    EXPECT_EQ(got, DemoBytes(Layout('A'), Layout('B')));
    std::filesystem::remove(path);
}
